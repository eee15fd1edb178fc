#pragma once

#include <array>

#include "data/recordset/column.h"

namespace ondrel {

// The columns of an invoice's lines, in their order: the names here, the layout below.
// clang-format off
enum class LineColumn : int {
  lineNumber, parentLineNumber, deptId, deptName, itemType, lineItemId, itemName, originalUnitPrice,
  unitPrice, quantity, lineItemTotal, totalTax, totalSurcharge, prepay, taxableAmt, daysToProcess,
  notes, balance, upchargeTotal, colorTotal, patternTotal, discountable, couponable, VIPDiscountable,
  VIPQualified, parentId, saleOnly, chargeTaxCode, pkgQuantity, peNotes, flattenedGroup, dueDate,
  origQuantity, outsideService, priceLater, originalLineNumber, promptResponse, redo, minimumPrepay,
  invoiceNumber, pickedUp, backgroundColor, backgroundImage, heatSeal, requiresHeatSeal, oneShot, split,
};

inline constexpr std::array<ColumnSpec, 47> kLineLayout = {{
  // name                type               size   nullable
  {"lineNumber",         FieldType::Long,      0,  false},  // identity of the line in this invoice
  {"parentLineNumber",   FieldType::Long,      0,  false},  // -1 for a top-level line
  {"deptId",             FieldType::Long,      0,  true},   // Null for a line of no department
  {"deptName",           FieldType::Text,     64,  true},
  {"itemType",           FieldType::Text,     20,  false},  // kind, see line_kinds.h
  {"lineItemId",         FieldType::Long,      0,  true},   // id of the thing the line stands for, by kind
  {"itemName",           FieldType::Text,     64,  true},
  {"originalUnitPrice",  FieldType::Double,    0,  false},  // as first priced, before any override
  {"unitPrice",          FieldType::Double,    0,  false},
  {"quantity",           FieldType::Long,      0,  true},   // pieces
  {"lineItemTotal",      FieldType::Double,    0,  false},
  {"totalTax",           FieldType::Double,    0,  false},
  {"totalSurcharge",     FieldType::Double,    0,  false},
  {"prepay",             FieldType::Double,    0,  false},  // discount a unit for paying at drop-off
  {"taxableAmt",         FieldType::Double,    0,  false},  // part of the amount that taxes apply to
  {"daysToProcess",      FieldType::Long,      0,  true},
  {"notes",              FieldType::Text,    255,  true},   // counter notes
  {"balance",            FieldType::Double,    0,  false},  // still due on the line
  {"upchargeTotal",      FieldType::Double,    0,  true},   // sums over the children of a kind
  {"colorTotal",         FieldType::Double,    0,  true},
  {"patternTotal",       FieldType::Double,    0,  true},
  {"discountable",       FieldType::Boolean,   0,  true},
  {"couponable",         FieldType::Boolean,   0,  true},
  {"VIPDiscountable",    FieldType::Boolean,   0,  true},
  {"VIPQualified",       FieldType::Boolean,   0,  true},
  {"parentId",           FieldType::Long,      0,  true},   // lineItemId of the parent
  {"saleOnly",           FieldType::Boolean,   0,  true},
  {"chargeTaxCode",      FieldType::Long,      0,  true},   // tax code of a charge
  {"pkgQuantity",        FieldType::Long,      0,  true},   // pieces a sold unit
  {"peNotes",            FieldType::Text,    255,  true},   // fixed note of the price-list item
  {"flattenedGroup",     FieldType::Long,      0,  true},   // marks the pieces that came from one line
  {"dueDate",            FieldType::Date,      0,  true},
  {"origQuantity",       FieldType::Long,      0,  false},  // when the ticket was loaded; 0 on a new line
  {"outsideService",     FieldType::Boolean,   0,  false},
  {"priceLater",         FieldType::Boolean,   0,  false},  // price unknown at drop-off
  {"originalLineNumber", FieldType::Long,      0,  false},  // survives renumbering for a split
  {"promptResponse",     FieldType::Text,    255,  true},
  {"redo",               FieldType::Boolean,   0,  false},  // free re-clean
  {"minimumPrepay",      FieldType::Double,    0,  true},
  {"invoiceNumber",      FieldType::Text,     20,  true},   // child invoice that the line went to
  {"pickedUp",           FieldType::Boolean,   0,  false},
  {"backgroundColor",    FieldType::Text,     12,  false},
  {"backgroundImage",    FieldType::Text,    255,  false},
  {"heatSeal",           FieldType::Text,     20,  false},  // empty when none
  {"requiresHeatSeal",   FieldType::Boolean,   0,  false},
  {"oneShot",            FieldType::Boolean,   0,  false},  // not remembered on a tagged garment
  {"split",              FieldType::Boolean,   0,  false},  // marked for moving to a new invoice
}};

// What was done to the ticket at the counter.
enum class LogColumn : int { itemLogType, quantity, deptName, itemName, amount };

inline constexpr std::array<ColumnSpec, 5> kLogLayout = {{
  {"itemLogType", FieldType::Text,    2, false},  // A added, D deleted, C quantity changed, O price overridden
  {"quantity",    FieldType::Long,    0, false},
  {"deptName",    FieldType::Text,   50, false},
  {"itemName",    FieldType::Text,   64, false},
  {"amount",      FieldType::Double,  0, false},  // negative for a deletion
}};
// clang-format on

}  // namespace ondrel
