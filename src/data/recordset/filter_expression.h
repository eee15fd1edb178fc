#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "data/recordset/filter_tokens.h"

namespace ondrel {

class TableColumns;

enum class FilterAction : std::uint8_t { Compare, TestMissing, TestPresent, Nothing, Join };

// What a step does with the result on top of the stack.
enum class FilterJoin : std::uint8_t { Push, And, Or };

// One step of a filter in postfix order. Compare and the tests make a result, and push it or join it to
// the topmost one; Join joins the two topmost.
struct FilterStep {
  FilterAction action = FilterAction::Nothing;
  FilterJoin join = FilterJoin::Push;
  FilterWord comparison = FilterWord::Equal;
  FilterWord value = FilterWord::Number;  // kind of value that a Compare has: Number, Text, Date, True, False
  int column = 0;
  size_t literal = 0;  // which literal of the text it is, when it is one
};

struct FilterExpression {
  std::vector<FilterStep> steps;
  size_t depth = 0;           // results on the stack at one time, at most
  std::uint64_t columns = 0;  // bit k: column k is looked at, or one with k as the remainder by 64
};

// Parses the words of a filter on the columns of a table:
//
//   either     = both { "or" both }
//   both       = term { "and" term }
//   term       = "(" either ")" | column comparison value
//   comparison = "=" | "<>" | "<" | ">" | "<=" | ">="
//   value      = number | 'text' | #date# | true | false | null
//
// Error 3001 at a word that does not fit, 3265 for a column that the table does not have.
FilterExpression parseFilter(std::string_view filter, const std::vector<FilterToken>& tokens,
                             const TableColumns& table);

}  // namespace ondrel
