#include "invoice/tickets/stored_lines.h"

#include <array>

namespace ondrel {
namespace {

using enum LineColumn;

// clang-format off
constexpr std::array<FilledFrom, 17> kCommon = {{
  // line               stored line
  {lineNumber,          "lineItemNumber"},
  {parentLineNumber,    "parentLineNumber"},
  {deptId,              "departmentID"},
  {deptName,            "departmentName"},
  {itemType,            "ticketLineType"},
  {lineItemId,          "lineItemID"},
  {itemName,            "lineItemName"},
  {originalUnitPrice,   "originalUnitPrice"},
  {unitPrice,           "unitPrice"},
  {quantity,            "quantity"},
  {lineItemTotal,       "lineItemTotal"},
  {prepay,              "prepayDiscount"},
  {taxableAmt,          "lineItemTaxableAmount"},
  {daysToProcess,       "daysToProcess"},
  {notes,               "itemNotes"},
  {balance,             "lineItemTotal"},
  {originalLineNumber,  "lineItemNumber"},
}};
// clang-format on

}  // namespace

StoredLines::StoredLines(RecordsetRef rows)
    : rows_(std::move(rows)),
      type_(rows_->column("ticketLineType")),
      number_(rows_->column("lineItemNumber")),
      parent_(rows_->column("parentLineNumber")),
      item_(rows_->column("lineItemID")),
      total_(rows_->column("lineItemTotal")) {}

StoredLines::Filling StoredLines::fillingOf(std::span<const FilledFrom> extra) const {
  Filling filling;
  for (const std::span<const FilledFrom> columns : {std::span<const FilledFrom>(kCommon), extra})
    for (const FilledFrom& each : columns)
      if (rows_->hasColumn(each.stored)) filling.emplace_back(each.line, rows_->column(each.stored));
  return filling;
}

void StoredLines::addLine(Recordset& lines, const Filling& filling) const {
  lines.addNew();
  for (const auto& [line, stored] : filling)
    if (!rows_->isNull(stored)) lines.setValue(line, rows_->value(stored));
}

}  // namespace ondrel
