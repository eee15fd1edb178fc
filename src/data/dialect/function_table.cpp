#include "data/dialect/function_table.h"

#include "data/dialect/lexer.h"

namespace ondrel {
namespace {

constexpr int part(DatePart value) {
  return static_cast<int>(value);
}

// clang-format off
constexpr FunctionRow kFunctions[] = {
    // name                         arguments least most result         engine's name
    {"isnull",                      "aa",  2,  2, ResultRule::First,    "ifnull"},
    {"coalesce",                    "a",   2, 99, ResultRule::Common,   "coalesce"},
    {"nullif",                      "aa",  2,  2, ResultRule::First,    "nullif"},
    {"count",                       "a",   1,  1, ResultRule::Integer,  "count"},
    {"sum",                         "n",   1,  1, ResultRule::First,    "sum"},
    {"avg",                         "n",   1,  1, ResultRule::First,    "avg"},
    {"min",                         "a",   1,  1, ResultRule::First,    "min"},
    {"max",                         "a",   1,  1, ResultRule::First,    "max"},
    {"getdate",                     "",    0,  0, ResultRule::Date,     "getdate"},
    {"current_timestamp",           "",    0,  0, ResultRule::Date,     "getdate"},
    {"datediff",                    "dd",  2,  2, ResultRule::Integer,  "datediff", -1, true},
    {"dateadd",                     "nd",  2,  2, ResultRule::Date,     "dateadd",  -1, true},
    {"datepart",                    "d",   1,  1, ResultRule::Integer,  "datepart", -1, true},
    {"datename",                    "d",   1,  1, ResultRule::Text,     "datename", -1, true},
    {"year",                        "d",   1,  1, ResultRule::Integer,  "datepart", part(DatePart::Year)},
    {"month",                       "d",   1,  1, ResultRule::Integer,  "datepart", part(DatePart::Month)},
    {"day",                         "d",   1,  1, ResultRule::Integer,  "datepart", part(DatePart::Day)},
    {"len",                         "t",   1,  1, ResultRule::Integer,  "len"},
    {"substring",                   "tnn", 3,  3, ResultRule::Text,     "substring_of"},
    {"left",                        "tn",  2,  2, ResultRule::Text,     "left_of"},
    {"right",                       "tn",  2,  2, ResultRule::Text,     "right_of"},
    {"upper",                       "t",   1,  1, ResultRule::Text,     "upper"},
    {"lower",                       "t",   1,  1, ResultRule::Text,     "lower"},
    {"ltrim",                       "t",   1,  1, ResultRule::Text,     "ltrim"},
    {"rtrim",                       "t",   1,  1, ResultRule::Text,     "rtrim"},
    {"replace",                     "ttt", 3,  3, ResultRule::Text,     "replace_in"},
    {"charindex",                   "ttn", 2,  3, ResultRule::Integer,  "charindex"},
    {"abs",                         "n",   1,  1, ResultRule::First,    "abs"},
    {"round",                       "nn",  2,  2, ResultRule::First,    "round_to"},
    {"floor",                       "n",   1,  1, ResultRule::First,    "floor"},
    {"ceiling",                     "n",   1,  1, ResultRule::First,    "ceiling"},
    {"newid",                       "",    0,  0, ResultRule::Text,     "newid"},
    {"scope_identity",              "",    0,  0, ResultRule::Integer,  "last_identity"},
    {"getCustomerCouponUses",       "nn",  2,  2, ResultRule::Integer,  "getCustomerCouponUses"},
    {"getCustomerVisits",           "ndd", 3,  3, ResultRule::Integer,  "getCustomerVisits"},
    {"formatPhone",                 "tt",  2,  2, ResultRule::Text,     "formatPhone"},
    {"pivotTicketRackLocationBrief", "nt", 2,  2, ResultRule::Text,     "pivotTicketRackLocationBrief"},
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

}  // namespace ondrel
