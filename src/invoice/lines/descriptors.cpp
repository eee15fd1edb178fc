#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"

namespace ondrel {

using enum LineColumn;

Invoice::DescriptorDisplay Invoice::getDescriptorDisplay(std::string_view name, std::string_view group) {
  const RecordsetRef row = queryDatabase(
      *apartment_,
      fmt::format(
          " select descriptor.color, descriptor.icon, descriptor.price  from descriptor  inner join "
          "descriptorgroup on descriptor.descriptorgroupid = descriptorgroup.descriptorgroupid  where "
          "descriptor.name = '{}'  and descriptorgroup.type = '{}'",
          escapeSqlValue(name), escapeSqlValue(group)));
  if (row->eof()) return {};
  return {row->value("color"), row->value("icon"), row->value("price")};
}

void Invoice::addDescriptor(const Variant& parent, const Variant& name, const Variant& group,
                            const Variant& piecesGiven) {
  if (parent.joined().empty()) return;
  Variant parentPieces = findLine(parent) ? lineItems->value(quantity) : Variant();
  lineItems->clearFilter();
  if (isLess(parentPieces, 0)) parentPieces = 1;
  const Variant pieces = piecesGiven * parentPieces;

  // An upcharge multiplies by the line's quantity once more; stored tickets rely on the squared figure.
  if (equalsIgnoringCase(group.joined(), "UP")) return addUpcharge2(parent, name, pieces);

  executeInTransaction(
      *apartment_,
      fmt::format(
          " update descriptor set descriptor.usagecounter = descriptor.usagecounter + 1  from descriptor  "
          "inner join "
          "descriptorgroup on descriptor.descriptorgroupid = descriptorgroup.descriptorgroupid  where "
          "descriptorgroup.type = '{}' and descriptor.name = '{}'",
          escapeSqlValue(group.joined()), escapeSqlValue(name.joined())));
  if (!findLine(parent)) return;
  addDescriptorLine(parent, name, group, pieces);
  recalculatePrepay();
}

void Invoice::addDescriptorLine(const Variant& parent, const Variant& name, const Variant& group,
                                const Variant& pieces) {
  const Variant found = getDescriptorDisplay(name.joined(), group.joined()).price;
  const double price = found.isNull() ? 0 : found.toDouble();
  const Variant amount = pieces * price;
  // clang-format off
  lineItems->addNew({
      {lineNumber,         currentLineNumber},
      {parentLineNumber,   parent},
      {deptId,             lineItems->value(deptId)},
      {deptName,           lineItems->value(deptName)},
      {itemType,           group},
      {lineItemId,         Variant::null()},
      {itemName,           name},
      {originalUnitPrice,  price},
      {unitPrice,          price},
      {quantity,           pieces},
      {lineItemTotal,      amount},
      {totalTax,           0},
      {totalSurcharge,     0},
      {prepay,             0},
      {taxableAmt,         amount},
      {daysToProcess,      0},
      {notes,              Variant::null()},
      {balance,            0},
      {parentId,           0},
      {peNotes,            ""},
      {originalLineNumber, currentLineNumber},
  });
  // clang-format on
  ++currentLineNumber;
  // Whatever the group, the garment keeps the amount with its upcharges.
  findLine(parent);
  lineItems->setValue(upchargeTotal, lineItems->value(upchargeTotal) + amount);
}

void Invoice::removeDescriptor(const Variant& parent, const Variant& name, const Variant& group) {
  lineItems->setFilter(fmt::format("parentLineNumber={} and itemName='{}' and itemType='{}'", parent.toText(),
                                   escapeSqlValue(name.joined()), escapeSqlValue(group.joined())));
  if (!lineItems->eof()) {
    const double amount = lineItems->number(lineItemTotal);
    for (; !lineItems->eof(); lineItems->moveNext()) lineItems->deleteRow();
    // Of several lines of one name the garment gives up the first one's amount only.
    if (findLine(parent)) lineItems->setValue(upchargeTotal, lineItems->value(upchargeTotal) - amount);
  }
  lineItems->clearFilter();
}

}  // namespace ondrel
