#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "data/recordset/recordset.h"

namespace ondrel::bench {

// Columns of the line table that the benchmarks of tables work on, in order.
// clang-format off
enum class Line {
  lineNumber, parentLineNumber, deptId, deptName, itemType, lineItemId, itemName, originalUnitPrice, unitPrice,
  quantity, lineItemTotal, totalTax, totalSurcharge, prepay, taxableAmt, daysToProcess, notes, balance,
  upchargeTotal, colorTotal, patternTotal, discountable, couponable, VIPDiscountable, VIPQualified, parentId,
  saleOnly, chargeTaxCode, pkgQuantity, peNotes, flattenedGroup, dueDate, origQuantity, outsideService, priceLater,
  originalLineNumber, promptResponse, redo, minimumPrepay, invoiceNumber, pickedUp, backgroundColor,
  backgroundImage, heatSeal, requiresHeatSeal, oneShot, split, splitGroup
};

inline constexpr std::array<ColumnSpec, 48> kLineColumns = {{
    {"lineNumber",         FieldType::Long},
    {"parentLineNumber",   FieldType::Long},
    {"deptId",             FieldType::Long,      0, true},
    {"deptName",           FieldType::Text,     64, true},
    {"itemType",           FieldType::Text,     20},
    {"lineItemId",         FieldType::Long,      0, true},
    {"itemName",           FieldType::Text,     64, true},
    {"originalUnitPrice",  FieldType::Double},
    {"unitPrice",          FieldType::Double},
    {"quantity",           FieldType::Long,      0, true},
    {"lineItemTotal",      FieldType::Double},
    {"totalTax",           FieldType::Double},
    {"totalSurcharge",     FieldType::Double},
    {"prepay",             FieldType::Double},
    {"taxableAmt",         FieldType::Double},
    {"daysToProcess",      FieldType::Long,      0, true},
    {"notes",              FieldType::Text,    255, true},
    {"balance",            FieldType::Double},
    {"upchargeTotal",      FieldType::Double,    0, true},
    {"colorTotal",         FieldType::Double,    0, true},
    {"patternTotal",       FieldType::Double,    0, true},
    {"discountable",       FieldType::Boolean,   0, true},
    {"couponable",         FieldType::Boolean,   0, true},
    {"VIPDiscountable",    FieldType::Boolean,   0, true},
    {"VIPQualified",       FieldType::Boolean,   0, true},
    {"parentId",           FieldType::Long,      0, true},
    {"saleOnly",           FieldType::Boolean,   0, true},
    {"chargeTaxCode",      FieldType::Long,      0, true},
    {"pkgQuantity",        FieldType::Long,      0, true},
    {"peNotes",            FieldType::Text,    255, true},
    {"flattenedGroup",     FieldType::Long,      0, true},
    {"dueDate",            FieldType::Date,      0, true},
    {"origQuantity",       FieldType::Long},
    {"outsideService",     FieldType::Boolean},
    {"priceLater",         FieldType::Boolean},
    {"originalLineNumber", FieldType::Long},
    {"promptResponse",     FieldType::Text,    255, true},
    {"redo",               FieldType::Boolean},
    {"minimumPrepay",      FieldType::Double,    0, true},
    {"invoiceNumber",      FieldType::Text,     20, true},
    {"pickedUp",           FieldType::Boolean},
    {"backgroundColor",    FieldType::Text,     12},
    {"backgroundImage",    FieldType::Text,    255},
    {"heatSeal",           FieldType::Text,     20},
    {"requiresHeatSeal",   FieldType::Boolean},
    {"oneShot",            FieldType::Boolean},
    {"split",              FieldType::Boolean},
    {"splitGroup",         FieldType::Long,      0, true},
}};
inline constexpr std::array<const char*, 8> kUpcharges = {"Starch", "Pleats", "Silk", "Rush", "Lined", "Beaded", "Stain", "Hand finish"};
inline constexpr std::array<const char*, 8> kGarments  = {"Shirt", "Pants", "Blouse", "Jacket", "Dress", "Coat", "Skirt", "Sweater"};
inline constexpr std::array<const char*, 8> kColors    = {"White", "Black", "Blue", "Red", "Green", "Grey", "Brown", "Navy"};
inline constexpr std::array<const char*, 8> kPatterns  = {"Plain", "Striped", "Checked", "Dotted", "Floral", "Paisley", "Tweed", "Plaid"};
inline constexpr std::array<const char*, 5> kDepts     = {"Laundry", "Dry clean", "Alterations", "Household", "Leather"};
// clang-format on

// A row of the table, one value a column.
using LineRow = std::vector<Variant>;

inline const Variant& cell(const LineRow& row, Line column) {
  return row[static_cast<size_t>(column)];
}

// The same draws on every machine.
class RowDraws {
 public:
  int below(int limit) {
    state_ = state_ * 1664525U + 1013904223U;
    return static_cast<int>((state_ >> 16) % static_cast<std::uint32_t>(limit));
  }

 private:
  std::uint32_t state_ = 12345;
};

// The first `count` rows of the sequence; every table is a beginning of the same one.
inline std::vector<LineRow> lineRows(int count) {
  RowDraws draws;
  std::vector<LineRow> rows;
  int garment = 0;
  for (int line = 1; line <= count; ++line) {
    const int kind = draws.below(10), dept = 1 + draws.below(5), name = draws.below(8),
              cents = 100 + draws.below(1900);
    const int quantity = 1 + draws.below(4), quarter = draws.below(5), tax = draws.below(200),
              surcharge = draws.below(100);
    const int flags = draws.below(4096), days = 1 + draws.below(7), seal = draws.below(2),
              group = draws.below(4);
    const bool isGarment = line == 1 || kind < 5;
    if (isGarment) garment = line;
    const auto bit = [flags](int k) { return (flags >> k & 1) != 0; };
    const auto ofParent = [&](Line column) { return cell(rows[static_cast<size_t>(garment - 1)], column); };
    const auto& names = isGarment ? kGarments : kind < 8 ? kUpcharges : kind == 8 ? kColors : kPatterns;
    const char* type = isGarment ? "IT" : kind < 8 ? "UP" : kind == 8 ? "CO" : "PA";
    const Variant deptId = isGarment ? Variant(dept) : ofParent(Line::deptId);
    const Variant childTotal = isGarment ? Variant(0.0) : Variant::null();
    const double price = cents / 100.0, total = cents * quantity / 100.0;
    const std::string number = std::to_string(line);
    // clang-format off
    rows.push_back({
        line, isGarment ? -1 : garment, deptId, kDepts[static_cast<size_t>(deptId.toLong() - 1)], type,
        1000 + dept * 10 + name, names[static_cast<size_t>(name)], price, price, quantity,
        total, tax / 100.0, surcharge / 100.0, quarter / 4.0, total,
        days, line % 5 == 0 ? Variant("note " + number) : Variant::null(), total, childTotal, childTotal, childTotal,
        bit(0), bit(1), bit(2), bit(3), isGarment ? Variant::null() : ofParent(Line::lineItemId),
        bit(4), Variant::null(), 1, Variant::null(), group,
        Date::of(2024, 6, 10 + days), 0, bit(5), bit(6), line,
        Variant::null(), (flags >> 7 & 7) == 0, Variant::null(), Variant::null(), false,
        "#FFFFFF", "", seal != 0 ? "HS" + number : "", bit(10), bit(11), false, group,
    });
    // clang-format on
  }
  return rows;
}

// A table of the first `count` rows.
inline RecordsetRef lineTable(const std::vector<LineRow>& rows, int count) {
  RecordsetRef table = Recordset::create(kLineColumns);
  for (int row = 0; row < count; ++row) table->appendRow(rows[static_cast<size_t>(row)]);
  table->moveFirst();
  return table;
}

}  // namespace ondrel::bench
