#include "automation/classes/class_tables.h"
#include "automation/classes/working_table.h"
#include "quick/garment_search.h"

namespace ondrel {

const ClassTable& garmentSearchClass() {
  using Class = GarmentSearch;
  // clang-format off
  static const ClassTable table("garmentSearch", {
      // ---- properties
      workingTable<&Class::lineItems, kSearchLayout>("lineItems"),
      property("currentLineNumber", &Class::currentLineNumber),
      property("priceListId", &Class::priceListId),
      property("DBConnectionString", &Class::DBConnectionString, &Class::setDBConnectionString),

      // ---- methods
      method("initInvoice", &Class::initInvoice),
      method("clearInvoice", &Class::clearInvoice),
      method("addItem", &Class::addItem, {{"priceListItemId"}, {"quantity"}}),
      method("addUpcharge", &Class::addUpcharge, {{"parentLineNumber"}, {"upchargeId"}, {"quantity"}}),
      method("addColor", &Class::addColor, {{"parentLineNumber"}, {"colorId"}, {"quantity"}}),
      method("addPattern", &Class::addPattern, {{"parentLineNumber"}, {"patternId"}, {"quantity"}}),
      method("addBrand", &Class::addBrand, {{"parentLineNumber"}, {"brandId"}, {"quantity"}}),
      method("changeQuantity", &Class::changeQuantity, {{"newQuantity"}, {"lineNo"}}),
      method("deleteItem", &Class::deleteItem, {{"lineNo"}}),
      method("getItemIdForLineNo", &Class::getItemIdForLineNo, {{"lineNo"}}),
      method("getTotalItemCount", &Class::getTotalItemCount),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
