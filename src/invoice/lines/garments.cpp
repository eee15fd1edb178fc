#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/store_loading.h"
#include "data/values.h"
#include "invoice/calendar/department_dates.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"
#include "invoice/lines/quick_bags.h"

namespace ondrel {
namespace {

using enum LineColumn;

// A line a piece: the number -1, True, or the text of that number.
bool asksForLinePerPiece(const Variant& groupSimilarItems) {
  return groupSimilarItems.isNumeric() && groupSimilarItems.toDouble() == -1;
}

bool asksForMerging(const Variant& groupSimilarItems) {
  return !groupSimilarItems.isNull() && groupSimilarItems.toBoolean();
}

double unitPriceOf(const Recordset& row, const Variant& multiplier, const Variant& roundOff) {
  return roundTo((row.value("price") * multiplier).toDouble(), roundOff.toDouble());
}

}  // namespace

Variant Invoice::addItem(const Variant& priceListItemId, const Variant& merging, const Variant& pieces,
                         const Variant& multiplier, const Variant& roundOff) {
  const std::int32_t id = priceListItemId.toLong();
  if (countsUse())
    executeInTransaction(
        *apartment_,
        fmt::format("update pricelistitem set usecounter = usecounter + 1 Where priceListItemId ={}", id));

  std::int32_t line = 0;
  RecordsetRef row = readPriceListItem(
      id, "isnull(daysToProcess,0) as daysToProcess, isNull(qtyInInventory, 1) as quantity, ");
  if (!row->eof()) {
    // In a quick drop-off the days of the department win over the item's.
    const Variant department = row->value("departmentId");
    if (isQuickInvoice() && hasBag(lines_, department))
      row = readPriceListItem(id, getDeptIDDaysToProcess(department).toText() +
                                      " as daysToProcess, isNull(qtyInInventory, 1) as quantity,");
    row->moveFirst();
    line = addToLines(*row, merging, pieces, multiplier, roundOff);
    if (isQuickInvoice()) takeFromBag(lines_, department, pieces, row->value("quantity"));
  }
  recalculatePrepay();
  return line;
}

RecordsetRef Invoice::readPriceListItem(std::int32_t id, std::string_view daysAndQuantity) {
  return queryDatabase(
      *apartment_,
      fmt::format("Select priceListItemId, departmentId, itemName, price, {} discountable,  VIPDiscountable, "
                  "couponable, "
                  "saleOnly, VIPQualified, notes, outsideService, priceLater, prepayDiscount, prepayPercent, "
                  "isnull(imageFileName, '') as imageFileName, '' as color From  PriceListItem Where "
                  "priceListItemId ={}",
                  daysAndQuantity, id));
}

bool Invoice::countsUse() const {
  return state_.itemSortMethod.isNumeric() && state_.itemSortMethod.toDouble() == 1;
}

// | groupSimilarItems | lines                                             |
// |-------------------|---------------------------------------------------|
// | -1, True          | one of quantity 1 for each piece                  |
// | any other true    | into a line of the same item and price, if any    |
// | false             | one                                               |
std::int32_t Invoice::addToLines(Recordset& row, const Variant& merging, const Variant& pieces,
                                 const Variant& multiplier, const Variant& roundOff) {
  if (asksForLinePerPiece(merging)) return addLinePerPiece(row, pieces, multiplier, roundOff);
  if (asksForMerging(merging)) {
    if (findSimilarLine(row, unitPriceOf(row, multiplier, roundOff))) return mergeIntoLine(pieces);
    lineItems->clearFilter();
  }
  const std::int32_t line = currentLineNumber;
  addPriceRowLine(row, pieces.joined(), multiplier, roundOff);
  return line;
}

std::int32_t Invoice::addLinePerPiece(Recordset& row, const Variant& pieces, const Variant& multiplier,
                                      const Variant& roundOff) {
  const std::int32_t firstLine = currentLineNumber;
  const std::int32_t count = pieces.toLong();
  for (std::int32_t piece = 1; piece <= count; ++piece) {
    row.moveFirst();
    lineItems->clearFilter();
    addPriceRowLine(row, "1", multiplier, roundOff);
  }
  return firstLine;
}

// Leaves the filter on the lines of the item and the first one of that price current. Prices are compared by
// the digits they show: a rounded price carries a binary tail, which it loses when the ticket is saved. A line
// with an overridden price is never similar, so a garment priced by hand stays on a line of its own.
bool Invoice::findSimilarLine(Recordset& row, double price) {
  lineItems->setFilter(fmt::format("lineItemId={} And itemType='IT'", row.integer("priceListItemId")));
  const auto isSimilar = [&] {
    const Variant other = lineItems->value(unitPrice);
    return !other.isNull() && shownValue(other.toDouble()) == shownValue(price);
  };
  while (!lineItems->eof() && !isSimilar()) lineItems->moveNext();
  return !lineItems->eof();
}

// Of the current line, whose number is the result.
std::int32_t Invoice::mergeIntoLine(const Variant& pieces) {
  const Variant added = pieces.isNumeric() ? pieces : Variant(1);
  // The log tells the line's amount as it stood before.
  if (!isQuickInvoice())
    lines_.log("A", added, lineItems->value(deptName), lineItems->value(itemName),
               lineItems->value(lineItemTotal));

  lineItems->setValue(quantity, lineItems->value(quantity) + added.toDouble());
  const double total = ondrel::round2(lineItems->number(unitPrice) * lineItems->integer(quantity), 2);
  lineItems->setValue(lineItemTotal, total);
  lineItems->setValue(taxableAmt, total);
  const std::int32_t line = lineItems->integer(lineNumber);
  lineItems->clearFilter();
  adjustCoupon();
  return line;
}

void Invoice::addPriceRowLine(Recordset& row, const Variant& quantityText, const Variant& multiplier,
                              const Variant& roundOff) {
  const std::int32_t pieces = integerOrOne(quantityText);
  const Variant department = row.value("departmentId");
  const Variant name = departmentValue(*apartment_, department, "name");
  const Variant useHeatSeals = departmentValue(*apartment_, department, "useHeatSeals");
  const double price = unitPriceOf(row, multiplier, roundOff);
  const double total = pieces * price;

  // The note of a department's bag goes to its first garment.
  const Variant garments =
      liColTotal("quantity", fmt::format("deptId='{}' AND itemType='IT'", department.joined()));
  const Variant note = garments.toDouble() <= 0 ? bagNote(lines_, department) : Variant::null();

  const Variant percent = row.value("prepayPercent");
  const bool asksPrepay = !percent.isNull() && percent.toDouble() != 0;
  const double leastPrepay = asksPrepay ? roundMoney("lineitem", percent.toDouble() / 100 * price) : 0;

  const Promise promise = promiseTo(*this, department, name, row.value("daysToProcess"));

  // clang-format off
  lineItems->addNew({
      {lineNumber,         currentLineNumber},
      {parentLineNumber,   -1},
      {deptId,             department},
      {deptName,           name},
      {itemType,           kind::garment},
      {lineItemId,         row.value("priceListItemId")},
      {itemName,           row.value("itemName")},
      {originalUnitPrice,  price},
      {unitPrice,          price},
      {quantity,           pieces},
      {lineItemTotal,      total},
      {totalTax,           0},
      {totalSurcharge,     0},
      {prepay,             row.value("prepayDiscount")},
      {taxableAmt,         total},
      {daysToProcess,      promise.days},
      {notes,              note.isEmpty() ? Variant::null() : note},
      {balance,            total},
      {upchargeTotal,      0},
      {colorTotal,         0},
      {patternTotal,       0},
      {discountable,       row.value("discountable")},
      {couponable,         row.value("couponable")},
      {VIPDiscountable,    row.value("VIPDiscountable")},
      {saleOnly,           row.value("saleOnly")},
      {VIPQualified,       row.value("VIPQualified")},
      {pkgQuantity,        row.value("quantity")},
      {peNotes,            row.value("notes")},
      {dueDate,            promise.due},
      {outsideService,     row.value("outsideService")},
      {priceLater,         row.value("priceLater")},
      {originalLineNumber, currentLineNumber},
      {minimumPrepay,      leastPrepay},
      {backgroundColor,    row.value("color")},
      {backgroundImage,    row.value("imageFileName")},
      {requiresHeatSeal,   !useHeatSeals.isNull() && useHeatSeals.toBoolean()},
  });
  // clang-format on
  if (!isQuickInvoice()) lines_.log("A", pieces, name, row.value("itemName"), total);
  ++currentLineNumber;
  calculateInvDueDate();
}

}  // namespace ondrel
