#include "data/recordset/filter.h"

#include <charconv>
#include <cmath>
#include <functional>
#include <optional>

#include "base/date.h"
#include "base/text.h"

namespace ondrel {
namespace {

constexpr size_t kBlock = Table::kBlock;

std::optional<double> numberOf(FilterWord word, std::string_view text) {
  if (word == FilterWord::Text) return parseNumber(text);
  double value = 0;
  if (text.front() == '+') text.remove_prefix(1);
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

// The inner loop has a fixed length, so that the compiler turns it into a few wide instructions.
template <class Cell, class Test>
void scan(const Cell* cells, const std::uint8_t* present, size_t blocks, std::uint8_t* result, Test test) {
  for (const std::uint8_t* end = result + blocks * kBlock; result != end;
       cells += kBlock, present += kBlock, result += kBlock)
    for (size_t k = 0; k < kBlock; ++k) result[k] = static_cast<std::uint8_t>(test(cells[k]) & present[k]);
}

template <class Join>
void join(std::uint8_t* into, const std::uint8_t* other, size_t blocks, Join combine) {
  for (const std::uint8_t* end = into + blocks * kBlock; into != end; into += kBlock, other += kBlock)
    for (size_t k = 0; k < kBlock; ++k) into[k] = static_cast<std::uint8_t>(combine(into[k], other[k]));
}

}  // namespace

void Filter::bind(std::string_view text, Table& table) {
  text_.assign(text);
  shape_ = &table.filters().shapeOf(text_, table, literals_);
  unescaped_.clear();
  operands_.clear();
  columns_ = 0;
  for (const FilterStep& step : shape_->expression.steps) {
    Operand operand;
    if (step.action == FilterAction::Compare) operand = operandOf(step, table.column(step.column));
    if (step.action != FilterAction::And && step.action != FilterAction::Or)
      columns_ |= std::uint64_t{1} << (step.column % 64);
    operands_.push_back(operand);
  }
}

std::string_view Filter::literalText(std::string_view literal) {
  if (literal.front() != '\'' && literal.front() != '#') return literal;
  literal = literal.substr(1, literal.size() - 2);
  if (literal.find('\'') == std::string_view::npos) return literal;
  return unescaped_.emplace_back(replaceAll(literal, "''", "'"));
}

Filter::Operand Filter::operandOf(const FilterStep& step, const ColumnStore& column) {
  Operand operand;
  const bool isWord = step.value == FilterWord::True || step.value == FilterWord::False;
  const std::string_view literal = isWord ? std::string_view() : literals_[step.literal];
  if (isWord)
    operand.text = step.value == FilterWord::True ? "True" : "False";
  else
    operand.text = literalText(literal);

  const auto must = [&](auto value) {
    if (value) return *value;
    failFilter(text_, {step.value, static_cast<size_t>(literal.data() - text_.data()), literal});
  };
  switch (column.storage) {
    case Storage::Integer:
    case Storage::Number:
      operand.number =
          isWord ? (step.value == FilterWord::True ? -1 : 0) : must(numberOf(step.value, operand.text));
      break;
    case Storage::Date:
      operand.number = isWord ? 0 : must(dateOf(step.value, operand.text));
      break;
    case Storage::Flag: {
      const int wanted = isWord ? step.value == FilterWord::True : must(flagOf(step.value, operand.text));
      withComparison(step.comparison, [&](auto holds) {
        for (const int flag : {0, 1}) operand.passes[flag] = holds(flag, wanted);
      });
      break;
    }
    case Storage::Text:
      operand.key = foldedKey(operand.text);
      break;
  }
  return operand;
}

const std::uint8_t* Filter::run(const Table& table, size_t first, size_t blocks) const {
  const size_t length = blocks * kBlock;
  const size_t needed = length * shape_->expression.depth;
  if (results_.size() < needed) results_.resize(needed);
  std::uint8_t* top = results_.data();
  const Operand* operand = operands_.data();
  for (const FilterStep& step : shape_->expression.steps) {
    switch (step.action) {
      case FilterAction::And:
        top -= length;
        join(top - length, top, blocks, std::bit_and<>());
        break;
      case FilterAction::Or:
        top -= length;
        join(top - length, top, blocks, std::bit_or<>());
        break;
      default:
        compare(step, *operand, table, first, blocks, top);
        top += length;
    }
    ++operand;
  }
  return results_.data();
}

void Filter::compare(const FilterStep& step, const Operand& operand, const Table& table, size_t first,
                     size_t blocks, std::uint8_t* result) const {
  const ColumnStore& column = table.column(step.column);
  const std::uint8_t* present = column.present.data() + first;
  const auto scanAll = [&](const auto* cells, auto test) {
    scan(cells + first, present, blocks, result, test);
  };

  if (step.action != FilterAction::Compare) {
    const std::uint8_t missing = step.action == FilterAction::TestMissing;
    const std::uint8_t kept = step.action == FilterAction::Nothing ? 0 : 1;
    for (size_t k = 0; k < blocks * kBlock; ++k) result[k] = (present[k] ^ missing) & kept;
    return;
  }
  switch (column.storage) {
    case Storage::Integer:
      return withComparison(step.comparison, [&](auto holds) {
        scanAll(column.integers.data(),
                [&, wanted = operand.number](std::int32_t cell) { return holds(cell, wanted); });
      });
    case Storage::Number:
    case Storage::Date:
      return withComparison(step.comparison, [&](auto holds) {
        scanAll(column.numbers.data(),
                [&, wanted = operand.number](double cell) { return holds(cell, wanted); });
      });
    case Storage::Flag:
      return scanAll(column.flags.data(), [no = operand.passes[0], yes = operand.passes[1]](
                                              std::uint8_t cell) { return cell ? yes : no; });
    case Storage::Text:
      break;
  }
  if (step.comparison == FilterWord::Equal || step.comparison == FilterWord::NotEqual) {
    const bool wholeText = holdsWholeText(operand.key);
    scanAll(column.foldedKeys(), [&](FoldedKey cell) { return cell == operand.key; });
    if (!wholeText)
      for (size_t k = 0; k < blocks * kBlock; ++k)
        if (result[k]) result[k] = equalsIgnoringCase(column.texts[first + k], operand.text);
    if (step.comparison == FilterWord::NotEqual)
      for (size_t k = 0; k < blocks * kBlock; ++k) result[k] = (result[k] ^ 1) & present[k];
    return;
  }
  withComparison(step.comparison, [&](auto holds) {
    for (size_t k = 0; k < blocks * kBlock; ++k)
      result[k] = present[k] && holds(compareIgnoringCase(column.texts[first + k], operand.text), 0);
  });
}

}  // namespace ondrel
