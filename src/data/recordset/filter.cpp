#include "data/recordset/filter.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <functional>
#include <limits>
#include <optional>

#include "base/date.h"
#include "base/text.h"
#include "base/whole_number.h"
#include "data/recordset/table_columns.h"

namespace ondrel {

// Rows of a table that a step works on, and where its result goes.
struct FilterSpan {
  size_t first;
  size_t blocks;
  FilterJoin join;
  std::uint8_t* result;
};

namespace {

constexpr size_t kBlock = TableColumns::kBlock;

// Most numbers are a few digits.
std::optional<std::int32_t> fewDigits(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  if (text.empty() || text.size() > 9) return std::nullopt;
  std::int32_t value = 0;
  for (const char c : text) {
    if (!isDigit(c)) return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return negative ? -value : value;
}

std::optional<double> numberOf(FilterWord word, std::string_view text) {
  if (const auto digits = fewDigits(text)) return *digits;
  if (word == FilterWord::Text) return parseNumber(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::optional<double> dateOf(FilterWord word, std::string_view text) {
  if (word == FilterWord::Number) return numberOf(word, text);
  const auto date = Date::parse(text);
  if (!date) return std::nullopt;
  return date->serial();
}

std::optional<bool> flagOf(FilterWord word, std::string_view text) {
  if (word == FilterWord::Text) {
    if (equalsIgnoringCase(text, "true")) return true;
    if (equalsIgnoringCase(text, "false")) return false;
  }
  const auto number = numberOf(word, text);
  if (!number) return std::nullopt;
  return *number != 0;
}

std::string_view withoutQuotes(std::string_view literal) {
  return literal.front() == '\'' || literal.front() == '#' ? literal.substr(1, literal.size() - 2) : literal;
}

// The comparison of a word as a function object, handed to `use`.
template <class Use>
void withComparison(FilterWord comparison, Use use) {
  switch (comparison) {
    case FilterWord::Equal:
      return use(std::equal_to<>());
    case FilterWord::NotEqual:
      return use(std::not_equal_to<>());
    case FilterWord::Less:
      return use(std::less<>());
    case FilterWord::Greater:
      return use(std::greater<>());
    case FilterWord::NotGreater:
      return use(std::less_equal<>());
    default:
      return use(std::greater_equal<>());
  }
}

bool isAllZero(const std::uint8_t* block) {
  std::uint64_t halves[kBlock / sizeof(std::uint64_t)];
  std::memcpy(halves, block, kBlock);
  return (halves[0] | halves[1]) == 0;
}

// Tests the rows of a span, block by block. The inner loops have a fixed length and work on locals, so
// that the compiler turns them into a few wide instructions. A block that is all 0 is not tested for an
// And: where the first comparison selects, those behind it cost little.
template <FilterJoin kJoin, class Test>
void scanJoining(const FilterSpan& span, Test test) {
  std::uint8_t* result = span.result;
  size_t row = span.first;
  for (size_t block = 0; block < span.blocks; ++block, result += kBlock, row += kBlock) {
    if (kJoin == FilterJoin::And && isAllZero(result)) continue;
    std::uint8_t passes[kBlock];
    for (size_t k = 0; k < kBlock; ++k) passes[k] = static_cast<std::uint8_t>(test(row + k));
    if (kJoin == FilterJoin::And)
      for (size_t k = 0; k < kBlock; ++k) passes[k] &= result[k];
    if (kJoin == FilterJoin::Or)
      for (size_t k = 0; k < kBlock; ++k) passes[k] |= result[k];
    std::memcpy(result, passes, kBlock);
  }
}

template <class Test>
void scan(const FilterSpan& span, Test test) {
  switch (span.join) {
    case FilterJoin::Push:
      return scanJoining<FilterJoin::Push>(span, test);
    case FilterJoin::And:
      return scanJoining<FilterJoin::And>(span, test);
    case FilterJoin::Or:
      return scanJoining<FilterJoin::Or>(span, test);
  }
}

template <class Cell>
void scanValues(const FilterSpan& span, FilterWord comparison, const std::uint8_t* present, const Cell* cells,
                Cell wanted) {
  withComparison(comparison, [&](auto holds) {
    scan(span, [=](size_t row) { return holds(cells[row], wanted) & present[row]; });
  });
}

void scanTexts(const FilterSpan& span, FilterWord comparison, const ColumnStore& column, FoldedKey key,
               std::string_view text) {
  const std::uint8_t* present = column.present.data();
  const bool equal = comparison == FilterWord::Equal;
  if (!equal && comparison != FilterWord::NotEqual)
    return withComparison(comparison, [&](auto holds) {
      scan(span, [&](size_t row) {
        return present[row] && holds(compareIgnoringCase(column.texts[row], text), 0);
      });
    });
  const std::uint32_t *low = column.foldedKeys().low(), *high = column.foldedKeys().high();
  const std::uint32_t wantedLow = FoldedKeyList::lowHalf(key), wantedHigh = FoldedKeyList::highHalf(key);
  const auto sameKey = [=](size_t row) -> bool {
    return (low[row] == wantedLow) & (high[row] == wantedHigh);
  };
  if (holdsWholeText(key))
    return scan(span, [=](size_t row) { return (sameKey(row) == equal) & present[row]; });
  scan(span, [&](size_t row) {
    return present[row] && (sameKey(row) && equalsIgnoringCase(column.texts[row], text)) == equal;
  });
}

}  // namespace

void Filter::bind(std::string_view text, const TableColumns& table, FilterCache& shapes) {
  // Everything is read from the caller's text: reading back what was just copied would make the
  // processor wait for the copy.
  text_.assign(text);
  shape_ = &shapes.shapeOf(text, table, literals_);
  unescaped_.clear();
  const std::vector<FilterStep>& steps = shape_->expression.steps;
  operands_.resize(steps.size());
  for (size_t k = 0; k < steps.size(); ++k)
    if (steps[k].action == FilterAction::Compare)
      setOperand(operands_[k], steps[k], table.column(steps[k].column), text);
}

void Filter::setOperand(Operand& operand, const FilterStep& step, const ColumnStore& column,
                        std::string_view filter) {
  const bool isWord = step.value == FilterWord::True || step.value == FilterWord::False;
  const bool isTrue = step.value == FilterWord::True;
  const std::string_view literal = isWord ? (isTrue ? "True" : "False") : literals_.of(filter, step.literal);
  const std::string_view text = withoutQuotes(literal);
  const auto must = [&](auto value) {
    if (value) return *value;
    failFilter(filter, {step.value, static_cast<size_t>(literal.data() - filter.data()), literal});
  };
  switch (column.storage) {
    case Storage::Integer:
      if (const auto digits = fewDigits(text)) {
        operand.isInteger = true;
        operand.integer = *digits;
        break;
      }
      operand.number = isWord ? -isTrue : must(numberOf(step.value, text));
      if (const auto whole = wholeNumber<std::int32_t>(operand.number)) operand.integer = *whole;
      operand.isInteger = operand.number == operand.integer;
      break;
    case Storage::Number:
      operand.number = isWord ? -isTrue : must(numberOf(step.value, text));
      break;
    case Storage::Date:
      operand.number = isWord ? -isTrue : must(dateOf(step.value, text));
      break;
    case Storage::Flag: {
      const bool wanted = isWord ? isTrue : must(flagOf(step.value, text));
      withComparison(step.comparison, [&](auto holds) {
        for (const bool flag : {false, true}) operand.passes[flag] = holds(flag, wanted);
      });
      break;
    }
    case Storage::Text:
      if (isWord)
        operand.text = text;
      else if (std::find(text.begin(), text.end(), '\'') != text.end())
        operand.text = unescaped_.emplace_back(replaceAll(text, "''", "'"));
      else
        operand.text =
            std::string_view(text_).substr(static_cast<size_t>(text.data() - filter.data()), text.size());
      operand.key = foldedKey(operand.text.size() == text.size() ? text : operand.text);
      break;
  }
}

const std::uint8_t* Filter::run(const TableColumns& table, size_t first, size_t blocks) const {
  const FilterExpression& expression = shape_->expression;
  const size_t length = blocks * kBlock;
  std::uint8_t* const results = table.workingSpace(length * expression.depth);
  std::uint8_t* top = results;  // behind the topmost result
  for (size_t k = 0; k < expression.steps.size(); ++k) {
    const FilterStep& step = expression.steps[k];
    const FilterSpan span{first, blocks, step.join, step.join == FilterJoin::Push ? top : top - length};
    const ColumnStore& column = table.column(step.column);
    const std::uint8_t* present = column.present.data();
    const Operand& operand = operands_[k];
    if (step.join == FilterJoin::Push) top += length;
    switch (step.action) {
      case FilterAction::Compare:
        compare(span, step.comparison, column, operand);
        break;
      case FilterAction::TestMissing:
        scan(span, [=](size_t row) { return present[row] ^ 1; });
        break;
      case FilterAction::TestPresent:
        scan(span, [=](size_t row) { return present[row]; });
        break;
      case FilterAction::Nothing:
        scan(span, [](size_t) { return 0; });
        break;
      case FilterAction::Join: {
        top -= length;
        scan({first, blocks, step.join, top - length}, [=](size_t row) { return top[row - first]; });
      }
    }
  }
  return results;
}

void Filter::compare(const FilterSpan& span, FilterWord comparison, const ColumnStore& column,
                     const Operand& operand) {
  const std::uint8_t* present = column.present.data();
  switch (column.storage) {
    case Storage::Integer:
      if (operand.isInteger)
        return scanValues(span, comparison, present, column.integers.data(), operand.integer);
      return withComparison(comparison, [&](auto holds) {
        scan(span, [=, cells = column.integers.data(), wanted = operand.number](size_t row) {
          return holds(cells[row], wanted) & present[row];
        });
      });
    case Storage::Number:
    case Storage::Date:
      return scanValues(span, comparison, present, column.numbers.data(), operand.number);
    case Storage::Flag:
      return scan(span, [=, cells = column.flags.data(), no = operand.passes[0], yes = operand.passes[1]](
                            size_t row) { return (cells[row] ? yes : no) & present[row]; });
    case Storage::Text:
      return scanTexts(span, comparison, column, operand.key, operand.text);
  }
}

}  // namespace ondrel
