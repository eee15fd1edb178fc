#include "data/recordset/filter_expression.h"

#include <algorithm>
#include <array>

#include "data/recordset/table_columns.h"

namespace ondrel {
namespace {

struct Junction {
  FilterWord word;
  int precedence;
  FilterJoin join;
};

// clang-format off
constexpr std::array<Junction, 2> kJunctions = {{
    {FilterWord::Or,  1, FilterJoin::Or},
    {FilterWord::And, 2, FilterJoin::And},
}};
// clang-format on

constexpr int kMostOpen = 1000;

class Parser {
 public:
  Parser(std::string_view filter, const std::vector<FilterToken>& tokens, const TableColumns& table)
      : filter_(filter), tokens_(tokens), table_(table) {}

  FilterExpression parse() {
    parseJunctions(1);
    if (current().word != FilterWord::End) failFilter(filter_, current());
    return std::move(result_);
  }

 private:
  const FilterToken& current() const { return tokens_[next_]; }
  const FilterToken& take() { return tokens_[next_++]; }

  // Terms joined by junctions that bind at least as tightly as `precedence`.
  void parseJunctions(int precedence) {
    parseTerm();
    while (const Junction* junction = junctionAt(precedence)) {
      ++next_;
      const size_t right = result_.steps.size();
      parseJunctions(junction->precedence + 1);
      join(junction->join, right);
    }
  }

  const Junction* junctionAt(int precedence) const {
    for (const Junction& junction : kJunctions)
      if (junction.word == current().word && junction.precedence >= precedence) return &junction;
    return nullptr;
  }

  void parseTerm() {
    if (current().word != FilterWord::Open) return parseComparison();
    if (++open_ > kMostOpen)
      throw Error(ErrorNumber::InvalidArgument, "Recordset",
                  "Filter cannot be opened: parentheses are nested too deeply");
    ++next_;
    parseJunctions(1);
    --open_;
    if (current().word != FilterWord::Close) failFilter(filter_, current());
    ++next_;
  }

  void parseComparison() {
    FilterStep step;
    step.column = parseColumn();
    if (!current().isComparison()) failFilter(filter_, current());
    step.comparison = take().word;
    parseValue(step);
    result_.steps.push_back(step);
    result_.columns |= std::uint64_t{1} << (step.column % 64);
    result_.depth = std::max(result_.depth, ++pending_);
  }

  int parseColumn() {
    if (current().word != FilterWord::Name) failFilter(filter_, current());
    std::string_view name = take().text;
    if (name.front() == '[') name = name.substr(1, name.size() - 2);
    const int column = table_.find(name);
    if (column < 0) failColumn(name);
    return column;
  }

  void parseValue(FilterStep& step) {
    step.action = FilterAction::Compare;
    step.value = current().word;
    if (current().isLiteral()) {
      step.literal = literals_++;
    } else if (current().word == FilterWord::Null) {
      step.action = nullTest(step.comparison);
    } else if (current().word != FilterWord::True && current().word != FilterWord::False) {
      failFilter(filter_, current());
    }
    ++next_;
  }

  // Null is neither more nor less than anything.
  static FilterAction nullTest(FilterWord comparison) {
    if (comparison == FilterWord::Equal) return FilterAction::TestMissing;
    if (comparison == FilterWord::NotEqual) return FilterAction::TestPresent;
    return FilterAction::Nothing;
  }

  // A right side of one step joins its result by itself.
  void join(FilterJoin join, size_t right) {
    if (right + 1 == result_.steps.size())
      result_.steps.back().join = join;
    else
      result_.steps.push_back({.action = FilterAction::Join, .join = join});
    --pending_;
  }

  std::string_view filter_;
  const std::vector<FilterToken>& tokens_;
  const TableColumns& table_;
  size_t next_ = 0;
  size_t literals_ = 0;
  size_t pending_ = 0;
  int open_ = 0;  // parentheses at one time
  FilterExpression result_;
};

}  // namespace

FilterExpression parseFilter(std::string_view filter, const std::vector<FilterToken>& tokens,
                             const TableColumns& table) {
  return Parser(filter, tokens, table).parse();
}

}  // namespace ondrel
