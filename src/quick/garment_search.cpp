#include "quick/garment_search.h"

#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/line_access.h"
#include "invoice/line_kinds.h"

namespace ondrel {
using enum SearchColumn;

GarmentSearch::GarmentSearch() : apartment_(Apartment::current()) {
  initInvoice();
}

// A search must never stop the counter: whatever fails leaves the list whole.
template <class Operation>
void GarmentSearch::guarded(Operation operation) {
  try {
    operation();
  } catch (const Error&) {
    if (lineItems && lineItems->isOpen()) lineItems->clearFilter();
  }
}

void GarmentSearch::initInvoice() {
  currentLineNumber = 1;
  lineItems = Recordset::create(kSearchLayout);
}

void GarmentSearch::clearInvoice() {
  initInvoice();
}

// ---------------------------------------------------------------- garments

Variant GarmentSearch::addItem(const Variant& priceListItemId, const Variant& pieces) {
  Variant result;
  guarded([&] {
    const RecordsetRef row = queryDatabase(
        *apartment_, fmt::format("Select priceListItemId, departmentId, itemName  From PriceListItem Where "
                                 "priceListItemId ={}",
                                 priceListItemId.toLong()));
    if (row->eof()) return;
    if (findItemLine(row->integer("priceListItemId"))) {
      const Variant added = pieces.isNumeric() ? Variant(pieces.toDouble()) : Variant(1);
      result = lineItems->value(lineNumber);
      lineItems->setValue(quantity, lineItems->value(quantity) + added);
      lineItems->clearFilter();
    } else {
      lineItems->clearFilter();
      result = currentLineNumber;
      addItemLine(*row, pieces);
    }
  });
  return result;
}

bool GarmentSearch::findItemLine(std::int32_t item) {
  lineItems->setFilter(fmt::format("lineItemId={} And itemType='IT'", item));
  return !lineItems->eof();
}

void GarmentSearch::addItemLine(const Recordset& row, const Variant& pieces) {
  lineItems->addNew({{lineNumber, currentLineNumber},
                     {parentLineNumber, -1},
                     {deptId, row.value("departmentId")},
                     {itemType, kind::garment},
                     {lineItemId, row.value("priceListItemId")},
                     {itemName, row.value("itemName")},
                     {quantity, integerOrOne(pieces)}});
  ++currentLineNumber;
}

// ---------------------------------------------------------------- what hangs on them

GarmentSearch::ParentItem GarmentSearch::getParentItem(const Variant& line) {
  ParentItem result;
  if (findLine(*lineItems, line)) result = {lineItems->value(lineItemId), lineItems->value(deptId)};
  lineItems->clearFilter();
  return result;
}

void GarmentSearch::addDescription(std::string_view kind, const Variant& parent, const Variant& id,
                                   const Variant& pieces) {
  guarded([&] {
    const ParentItem item = getParentItem(parent);
    lineItems->addNew({{lineNumber, currentLineNumber},
                       {parentLineNumber, parent},
                       {deptId, item.deptId},
                       {itemType, kind},
                       {lineItemId, id},
                       {itemName, ""},
                       {quantity, integerOrOne(pieces)},
                       {parentId, item.lineItemId}});
    ++currentLineNumber;
  });
}

void GarmentSearch::addUpcharge(const Variant& parent, const Variant& upchargeId, const Variant& pieces) {
  addDescription(kind::upcharge, parent, upchargeId, pieces);
}

void GarmentSearch::addColor(const Variant& parent, const Variant& colorId, const Variant& pieces) {
  addDescription(kind::color, parent, colorId, pieces);
}

void GarmentSearch::addPattern(const Variant& parent, const Variant& patternId, const Variant& pieces) {
  addDescription(kind::pattern, parent, patternId, pieces);
}

void GarmentSearch::addBrand(const Variant& parent, const Variant& brandId, const Variant& pieces) {
  addDescription(kind::brand, parent, brandId, pieces);
}

// ---------------------------------------------------------------- lines

void GarmentSearch::changeQuantity(const Variant& newQuantity, const Variant& lineNo) {
  guarded([&] { setLineValue(*lineItems, lineNo, quantity, newQuantity); });
}

void GarmentSearch::deleteItem(const Variant& lineNo) {
  guarded([&] { deleteLine(*lineItems, lineNo); });
}

Variant GarmentSearch::getItemIdForLineNo(const Variant& lineNo) {
  Variant result;
  guarded([&] {
    if (findLine(*lineItems, lineNo)) result = lineItems->value(lineItemId);
    lineItems->clearFilter();
  });
  return result;
}

Variant GarmentSearch::getTotalItemCount() {
  Variant result;
  guarded([&] { result = sumOfLines(*lineItems, "itemType='IT' OR itemType='AC'", quantity); });
  return result;
}

}  // namespace ondrel
