#pragma once

#include <span>
#include <string_view>

namespace ondrel::sql {

// What kind of value a function gives.
enum class ResultRule { Text, Integer, Number, Date, First, Common };

// A scalar or aggregate function of the dialect. `arguments` has one letter an argument, the last one
// standing for all that follow: a any, t text, n number, d date. A date function takes its part as a
// name in front, which is passed on as a number.
struct FunctionRow {
  std::string_view name;
  std::string_view arguments;
  int least;
  int most;
  ResultRule result;
  int fixedPart = -1;  // year(x) is datepart(year, x)
  bool takesPart = false;
};

std::span<const FunctionRow> dialectFunctions();
// Row of that name; -1 when there is none.
int findFunction(std::string_view name);

enum class DatePart {
  Year,
  Quarter,
  Month,
  DayOfYear,
  Day,
  Week,
  Weekday,
  Hour,
  Minute,
  Second,
  Millisecond
};
// Part by any of its names (day, dd, d, ...); -1 when it is none.
int findDatePart(std::string_view name);

}  // namespace ondrel::sql
