#pragma once

#include <array>

#include "data/recordset/column.h"

namespace ondrel {

// The lines of a quick drop-off: a department and its pieces, no prices.
enum class QuickColumn : int {
  lineNumber,
  lineItemId,
  itemName,
  itemType,
  quantity,
  deptId,
  deptName,
  daysToProcess,
  notes,
  peNotes,
  dueDate
};

// clang-format off
inline constexpr std::array<ColumnSpec, 11> kQuickLayout = {{
  // name            type             size  nullable
  {"lineNumber",    FieldType::Long,    0, false},
  {"lineItemId",    FieldType::Long,    0, true},
  {"itemName",      FieldType::Text,   64, true},   // the department's name
  {"itemType",      FieldType::Text,   20, false},  // DE
  {"quantity",      FieldType::Long,    0, true},   // pieces
  {"deptId",        FieldType::Long,    0, false},
  {"deptName",      FieldType::Text,   64, true},
  {"daysToProcess", FieldType::Long,    0, true},
  {"notes",         FieldType::Text,  255, true},   // counter notes
  {"peNotes",       FieldType::Text,  255, true},   // fixed note of the department
  {"dueDate",       FieldType::Date,    0, true},
}};

// The garments to search with, and what describes them.
enum class SearchColumn : int {
  lineNumber,
  parentLineNumber,
  deptId,
  itemType,
  lineItemId,
  itemName,
  quantity,
  parentId
};

inline constexpr std::array<ColumnSpec, 8> kSearchLayout = {{
  {"lineNumber",       FieldType::Long,  0, false},
  {"parentLineNumber", FieldType::Long,  0, false},  // -1 for a garment
  {"deptId",           FieldType::Long,  0, true},   // -1 under an unknown line
  {"itemType",         FieldType::Text, 20, false},  // IT, UP, CO, PA, BR
  {"lineItemId",       FieldType::Long,  0, true},   // id of the item, upcharge or descriptor
  {"itemName",         FieldType::Text, 64, true},   // empty for what hangs on a garment
  {"quantity",         FieldType::Long,  0, true},
  {"parentId",         FieldType::Long,  0, true},   // lineItemId of the garment, -1 under an unknown line
}};
// clang-format on

}  // namespace ondrel
