#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/recordset/recordset.h"
#include "invoice/line_columns.h"

namespace ondrel {

using col = LineColumn;

// A line that hangs on another. Its texts are those of the table, which stands still while a panel is written.
struct ChildLine {
  std::int32_t parent = 0;
  std::int32_t number = 0;
  std::string_view type, name;
  std::optional<std::int32_t> quantity;
  double total = 0;
};

// All lines that hang on others, read once, so that a panel does not search the table for each of its lines.
class ChildLines {
 public:
  // In the order of the table, or sorted by `sort`.
  explicit ChildLines(const Recordset& lines, const std::string& sort = {});
  // Those of a line.
  std::span<const ChildLine> of(std::int32_t parent) const;

 private:
  std::vector<ChildLine> children_;  // by parent
};

// Pieces of the first child of that name and type, in any case; 0 without one.
std::int32_t childQuantity(std::span<const ChildLine> children, std::string_view name, std::string_view type);

struct LineDepartment {
  Variant id, name;
};

// The departments of the rows that the table shows, each with the name that its first row has, in the order of
// the first rows. Moves to the end.
std::vector<LineDepartment> departmentsOf(Recordset& lines);

}  // namespace ondrel
