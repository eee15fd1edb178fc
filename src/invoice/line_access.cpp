#include "invoice/line_access.h"

#include "base/text.h"

namespace ondrel {

bool findLine(Recordset& lines, const Variant& number) {
  lines.setFilter("lineNumber=" + numberText(number.toDouble()));
  return !lines.eof();
}

void deleteLines(Recordset& lines, std::string_view filter) {
  lines.setFilter(filter);
  for (; !lines.eof(); lines.moveNext()) lines.deleteRow();
}

void deleteLine(Recordset& lines, const Variant& number) {
  if (findLine(lines, number)) lines.deleteRow();
  lines.clearFilter();
}

void setLineValue(Recordset& lines, const Variant& number, Column column, const Variant& value) {
  if (findLine(lines, number)) lines.setValue(column, value);
  lines.clearFilter();
}

std::string lineText(Recordset& lines, const Variant& number, Column column) {
  const std::string found = findLine(lines, number) ? lines.text(column) : std::string();
  lines.clearFilter();
  return found;
}

std::int32_t sumOfLines(Recordset& lines, std::string_view filter, Column column) {
  std::int64_t sum = 0;
  lines.setFilter(filter);
  for (; !lines.eof(); lines.moveNext())
    if (!lines.isNull(column)) sum += lines.integer(column);
  lines.clearFilter();
  return Variant(static_cast<double>(sum)).toLong();
}

}  // namespace ondrel
