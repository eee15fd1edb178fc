#include "data/dialect/function_table.h"

#include "data/dialect/lexer.h"

namespace ondrel::sql {
namespace {

constexpr int part(DatePart value) {
  return static_cast<int>(value);
}

// clang-format off
constexpr FunctionRow kFunctions[] = {
    // name                         arguments least most result             fixed part
    {"isnull",                      "aa",  2,  2, ResultRule::First},
    {"coalesce",                    "a",   2, 99, ResultRule::Common},
    {"nullif",                      "aa",  2,  2, ResultRule::First},
    {"count",                       "a",   1,  1, ResultRule::Integer},
    {"sum",                         "n",   1,  1, ResultRule::First},
    {"avg",                         "n",   1,  1, ResultRule::First},
    {"min",                         "a",   1,  1, ResultRule::First},
    {"max",                         "a",   1,  1, ResultRule::First},
    {"getdate",                     "",    0,  0, ResultRule::Date},
    {"current_timestamp",           "",    0,  0, ResultRule::Date},
    {"datediff",                    "dd",  2,  2, ResultRule::Integer, -1, true},
    {"dateadd",                     "nd",  2,  2, ResultRule::Date,  -1, true},
    {"datepart",                    "d",   1,  1, ResultRule::Integer, -1, true},
    {"datename",                    "d",   1,  1, ResultRule::Text, -1, true},
    {"year",                        "d",   1,  1, ResultRule::Integer, part(DatePart::Year)},
    {"month",                       "d",   1,  1, ResultRule::Integer, part(DatePart::Month)},
    {"day",                         "d",   1,  1, ResultRule::Integer, part(DatePart::Day)},
    {"len",                         "t",   1,  1, ResultRule::Integer},
    {"substring",                   "tnn", 3,  3, ResultRule::Text},
    {"left",                        "tn",  2,  2, ResultRule::Text},
    {"right",                       "tn",  2,  2, ResultRule::Text},
    {"upper",                       "t",   1,  1, ResultRule::Text},
    {"lower",                       "t",   1,  1, ResultRule::Text},
    {"ltrim",                       "t",   1,  1, ResultRule::Text},
    {"rtrim",                       "t",   1,  1, ResultRule::Text},
    {"replace",                     "ttt", 3,  3, ResultRule::Text},
    {"charindex",                   "ttn", 2,  3, ResultRule::Integer},
    {"abs",                         "n",   1,  1, ResultRule::First},
    {"round",                       "nn",  2,  2, ResultRule::First},
    {"floor",                       "n",   1,  1, ResultRule::First},
    {"ceiling",                     "n",   1,  1, ResultRule::First},
    {"newid",                       "",    0,  0, ResultRule::Text},
    {"scope_identity",              "",    0,  0, ResultRule::Integer},
    {"getCustomerCouponUses",       "nn",  2,  2, ResultRule::Integer},
    {"getCustomerVisits",           "ndd", 3,  3, ResultRule::Integer},
    {"formatPhone",                 "tt",  2,  2, ResultRule::Text},
    {"pivotTicketRackLocationBrief", "nt", 2,  2, ResultRule::Text},
};

struct PartName {
  std::string_view name;
  DatePart part;
};

constexpr PartName kPartNames[] = {
    {"year", DatePart::Year},           {"yy", DatePart::Year},       {"yyyy", DatePart::Year},
    {"quarter", DatePart::Quarter},     {"qq", DatePart::Quarter},    {"q", DatePart::Quarter},
    {"month", DatePart::Month},         {"mm", DatePart::Month},      {"m", DatePart::Month},
    {"dayofyear", DatePart::DayOfYear}, {"dy", DatePart::DayOfYear},  {"y", DatePart::DayOfYear},
    {"day", DatePart::Day},             {"dd", DatePart::Day},        {"d", DatePart::Day},
    {"week", DatePart::Week},           {"wk", DatePart::Week},       {"ww", DatePart::Week},
    {"weekday", DatePart::Weekday},     {"dw", DatePart::Weekday},    {"w", DatePart::Weekday},
    {"hour", DatePart::Hour},           {"hh", DatePart::Hour},
    {"minute", DatePart::Minute},       {"mi", DatePart::Minute},     {"n", DatePart::Minute},
    {"second", DatePart::Second},       {"ss", DatePart::Second},     {"s", DatePart::Second},
    {"millisecond", DatePart::Millisecond}, {"ms", DatePart::Millisecond},
};
// clang-format on

}  // namespace

std::span<const FunctionRow> dialectFunctions() {
  return kFunctions;
}

int findFunction(std::string_view name) {
  for (size_t k = 0; k < std::size(kFunctions); ++k)
    if (sameWord(kFunctions[k].name, name)) return static_cast<int>(k);
  return -1;
}

int findDatePart(std::string_view name) {
  for (const PartName& row : kPartNames)
    if (sameWord(row.name, name)) return static_cast<int>(row.part);
  return -1;
}

}  // namespace ondrel::sql
