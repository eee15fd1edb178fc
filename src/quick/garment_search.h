#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/variant.h"
#include "data/apartment.h"
#include "data/recordset/recordset.h"
#include "quick/quick_columns.h"

namespace ondrel {

// A list of garments with what hangs on them, composed as an invoice is, to look for tickets that hold such.
// Nothing is priced, nothing is saved; only an item's name is read from the database.
//
// No operation raises an error: what fails is left out, and the result is what was known until then. A
// quantity that is no number counts as 1.
class GarmentSearch : public Object {
 public:
  GarmentSearch();
  std::string_view className() const override { return "garmentSearch"; }

  RecordsetRef lineItems;              // see quick_columns.h
  std::int32_t currentLineNumber = 1;  // the next free line number
  std::int32_t priceListId = 0;

  const std::string& DBConnectionString() const { return apartment_->DBConnectionString; }
  void setDBConnectionString(const std::string& value) { apartment_->DBConnectionString = value; }

  void initInvoice();
  // Empties the list.
  void clearInvoice();
  // Pieces of an item, onto its line if it has one. Returns the line's number, Empty for an unknown item.
  Variant addItem(const Variant& priceListItemId, const Variant& pieces);
  // What hangs on a garment. Under an unknown line it stands with department and parent -1.
  void addUpcharge(const Variant& parent, const Variant& upchargeId, const Variant& pieces);
  void addColor(const Variant& parent, const Variant& colorId, const Variant& pieces);
  void addPattern(const Variant& parent, const Variant& patternId, const Variant& pieces);
  void addBrand(const Variant& parent, const Variant& brandId, const Variant& pieces);
  void changeQuantity(const Variant& newQuantity, const Variant& lineNo);
  // What hangs on the line stays.
  void deleteItem(const Variant& lineNo);
  // Empty for an unknown line.
  Variant getItemIdForLineNo(const Variant& lineNo);
  // Pieces of the garments.
  Variant getTotalItemCount();

 private:
  struct ParentItem {
    Variant lineItemId = -1, deptId = -1;
  };
  template <class Operation>
  void guarded(Operation operation);
  ParentItem getParentItem(const Variant& line);
  bool findItemLine(std::int32_t item);
  void addItemLine(const Recordset& row, const Variant& pieces);
  void addDescription(std::string_view kind, const Variant& parent, const Variant& id, const Variant& pieces);

  ApartmentRef apartment_;
};

}  // namespace ondrel
