#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/store_loading.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"

namespace ondrel {

using enum LineColumn;

// Upcharges, colours and patterns are priced for each item in one table and added by one sequence of steps;
// the rows below hold all that differs.
struct Invoice::PricedDescriptor {
  std::string_view kind;
  LineColumn parentSum;       // what the garment keeps of the amounts
  bool onceOnlyWhenNegative;  // a quantity below 0 means: if the garment has it not yet
  bool rounded;               // the amount goes through cents
  bool hasFlags;              // the price row carries discount flags, prepay and one-shot
  bool logsMerge;             // a merge into a line that stands leaves a log row too
  std::string_view moreColumns;
  std::string_view moreConditions;
};

namespace {

// clang-format off
// kind             parent's sum   once   rounded flags  logs merge  columns and conditions of the price row
constexpr Invoice::PricedDescriptor kUpcharge =
  {kind::upcharge,  upchargeTotal, true,  true,   true,  true,
   ", discountable, vipdiscountable, couponable, prepayDiscount, oneShot", " And disabled = 0"};
constexpr Invoice::PricedDescriptor kColor =
  {kind::color,     colorTotal,    false, false,  false, false, "", ""};
constexpr Invoice::PricedDescriptor kPattern =
  {kind::pattern,   patternTotal,  false, false,  false, false, "", ""};
// clang-format on

std::string priceStatement(const Invoice::PricedDescriptor& descriptor, const Variant& item,
                           const std::string& name) {
  return fmt::format(
      "Select descriptorName, price, IsNull(daysToProcess,0) as daysToProcess,  notes{} From  "
      "ItemDescriptorPrice where priceListItemId='{}' And descriptorName='{}'{} And descriptorType='{}'",
      descriptor.moreColumns, item.joined(), name, descriptor.moreConditions, descriptor.kind);
}

std::string useStatement(const Invoice::PricedDescriptor& descriptor, const Variant& item,
                         const std::string& name) {
  return fmt::format(
      "update ItemDescriptorPrice set usecounter = usecounter + 1 where priceListItemId={} And "
      "descriptorName='{}' And descriptorType='{}'",
      sqlNumber(item), name, descriptor.kind);
}

}  // namespace

void Invoice::addUpcharge(const Variant& parent, const Variant& upchargeId, const Variant& pieces,
                          const Variant& merging, const Variant& multiplier, const Variant& roundOff) {
  addPricedDescriptor(kUpcharge, parent, upchargeId, pieces, merging, multiplier, roundOff);
}

void Invoice::addColor(const Variant& parent, const Variant& colorId, const Variant& pieces,
                       const Variant& merging, const Variant& multiplier, const Variant& roundOff) {
  addPricedDescriptor(kColor, parent, colorId, pieces, merging, multiplier, roundOff);
}

void Invoice::addPattern(const Variant& parent, const Variant& patternId, const Variant& pieces,
                         const Variant& merging, const Variant& multiplier, const Variant& roundOff) {
  addPricedDescriptor(kPattern, parent, patternId, pieces, merging, multiplier, roundOff);
}

// | step | effect                                                                                  |
// |------|-----------------------------------------------------------------------------------------|
// | 1    | the garment is found from whichever of its lines was named; on a re-clean all is free    |
// | 2    | the use is counted, also when nothing is added in the end                               |
// | 3    | a once-only upcharge that stands ends here                                              |
// | 4    | the price row is read; without one only prepay is worked out again                      |
// | 5    | the amount goes into a line of the same name or onto a new one, and into the log        |
// | 6    | the garment's sum, the due date, coupons (when it costs anything) and prepay follow     |
void Invoice::addPricedDescriptor(const PricedDescriptor& descriptor, const Variant& parent,
                                  const Variant& nameGiven, const Variant& quantityGiven,
                                  const Variant& merging, const Variant& multiplierGiven,
                                  const Variant& roundOff) {
  std::int32_t pieces = integerOrOne(quantityGiven);
  const RootLine root = getRootLineInfo(parent.toLong());
  const Variant multiplier = root.redo ? Variant(0) : multiplierGiven;
  const Variant department = departmentValue(*apartment_, root.deptId, "name");
  const std::string name = escapeSqlValue(nameGiven.joined());
  if (countsUse()) executeInTransaction(*apartment_, useStatement(descriptor, root.itemId, name));

  if (descriptor.onceOnlyWhenNegative && pieces < 0) {
    if (findChildLine(root.lineNumber, name, descriptor.kind)) return;
    pieces = 1;
  }
  const RecordsetRef row = queryDatabase(*apartment_, priceStatement(descriptor, root.itemId, name));
  if (!row->eof()) {
    const double price = ondrel::roundTo((row->value("price") * multiplier).toDouble(), roundOff.toDouble());
    const double exact = pieces * price;
    const double amount = descriptor.rounded ? ondrel::round2(exact, 2) : exact;
    const bool merged = !merging.isNull() && merging.toBoolean() &&
                        mergeIntoChild(root, name, descriptor.kind, pieces, amount);
    if (!merged) addChildLine(descriptor, *row, root, department, pieces, price, amount);
    if (!merged || descriptor.logsMerge)
      lines_.log("A", pieces, department, row->value("descriptorName"), amount);

    if (findLine(root.lineNumber))
      lineItems->setValue(descriptor.parentSum, lineItems->value(descriptor.parentSum) + amount);
    lineItems->clearFilter();
    if (!counterSaleOnly) calculateInvDueDate();
    if (isGreater(row->value("price"), 0)) adjustCoupon();
  }
  recalculatePrepay();
}

bool Invoice::mergeIntoChild(const RootLine& root, const std::string& name, std::string_view lineKind,
                             std::int32_t pieces, double amount) {
  const bool found = findChildLine(root.lineNumber, name, lineKind);
  if (found) {
    lineItems->setValue(quantity, lineItems->value(quantity) + pieces);
    lineItems->setValue(lineItemTotal, lineItems->number(lineItemTotal) + amount);
    lineItems->setValue(taxableAmt, lineItems->number(lineItemTotal));
  }
  lineItems->clearFilter();
  return found;
}

void Invoice::addChildLine(const PricedDescriptor& descriptor, const Recordset& row, const RootLine& root,
                           const Variant& department, std::int32_t pieces, double price, double amount) {
  // clang-format off
  lineItems->addNew({
      {lineNumber,         currentLineNumber},
      {parentLineNumber,   root.lineNumber},
      {deptId,             root.deptId},
      {deptName,           department},
      {itemType,           descriptor.kind},
      {lineItemId,         Variant::null()},
      {itemName,           row.value("descriptorName")},
      {originalUnitPrice,  price},
      {unitPrice,          price},
      {quantity,           pieces},
      {lineItemTotal,      amount},
      {totalTax,           0},
      {totalSurcharge,     0},
      {prepay,             descriptor.hasFlags ? row.value("prepayDiscount") : Variant(0)},
      {taxableAmt,         amount},
      {daysToProcess,      row.value("daysToProcess")},
      {notes,              Variant::null()},
      {balance,            amount},
      {parentId,           root.itemId},
      {peNotes,            row.value("notes")},
      {originalLineNumber, currentLineNumber},
  });
  // clang-format on
  if (descriptor.hasFlags) {
    lineItems->setValue(discountable, row.value("discountable"));
    lineItems->setValue(VIPDiscountable, row.value("vipdiscountable"));
    lineItems->setValue(couponable, row.value("couponable"));
    lineItems->setValue(oneShot, row.flag("oneShot"));
  }
  ++currentLineNumber;
}

bool Invoice::findChildLine(std::int32_t parent, std::string_view name, std::string_view lineKind) {
  lineItems->setFilter(
      fmt::format("parentLineNumber={} And itemName='{}' And itemType='{}'", parent, name, lineKind));
  return !lineItems->eof();
}

Invoice::RootLine Invoice::getRootLineInfo(std::int32_t line) {
  RootLine root;
  for (;;) {
    lineItems->setFilter(fmt::format("lineNumber={} and parentLineNumber > 0", line));
    if (lineItems->eof()) break;
    line = lineItems->integer(parentLineNumber);
  }
  if (findLine(line)) {
    root.itemId = lineItems->value(lineItemId);
    root.deptId = lineItems->value(deptId);
    root.lineNumber = line;
    root.redo = lineItems->flag(redo);
  }
  lineItems->clearFilter();
  return root;
}

void Invoice::addUpcharge2(const Variant& parent, const Variant& upchargeId, const Variant& pieces) {
  const Variant linePieces = findLine(parent) ? lineItems->value(quantity) : Variant();
  lineItems->clearFilter();
  addUpcharge(parent, upchargeId, pieces * linePieces, true, 1.0, 0.01);
}

void Invoice::addUpchargeToAllItems(const Variant& deptID, const Variant& upchargeId, const Variant& pieces,
                                    const Variant& merging) {
  // The garments are gathered first, since adding to one moves the filter.
  std::vector<std::int32_t> garments;
  lineItems->setFilter("itemType = 'IT' and deptID = '" + deptID.joined() + "'");
  for (; !lineItems->eof(); lineItems->moveNext()) garments.push_back(lineItems->integer(lineNumber));
  lineItems->clearFilter();

  const std::string given = pieces.joined();
  const Variant perPiece = trim(given).empty() ? Variant(1) : Variant(trim(given));
  for (const std::int32_t garment : garments) {
    const Variant linePieces = liColTotal("quantity", fmt::format("lineNumber={}", garment));
    addUpcharge(garment, upchargeId, perPiece * linePieces, merging, 1.0, 0.01);
  }
}

}  // namespace ondrel
