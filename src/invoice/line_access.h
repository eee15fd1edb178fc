#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/recordset/recordset.h"

namespace ondrel {

// One line of a table with a column lineNumber, and sums over some: for the lines of every class that has
// them.

// The line of the number passes the filter afterwards; whether there is one. Error 13 for what is no number.
bool findLine(Recordset& lines, const Variant& number);
// Deletes every line that passes the filter, which stays.
void deleteLines(Recordset& lines, std::string_view filter);

// The next clear the filter.

// Deletes the line, if it is there.
void deleteLine(Recordset& lines, const Variant& number);
// Sets a column of the line, if it is there.
void setLineValue(Recordset& lines, const Variant& number, Column column, const Variant& value);
// Text of a column of the line; "" for Null and for an unknown line.
std::string lineText(Recordset& lines, const Variant& number, Column column);
// Sum of a column of whole numbers over the lines that pass the filter ("" for all), Nulls left out. Error 6
// beyond 32 bits.
std::int32_t sumOfLines(Recordset& lines, std::string_view filter, Column column);

}  // namespace ondrel
