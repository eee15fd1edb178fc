#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

using enum LineColumn;

// An item button carries a two-letter kind in front of a number: "it123".
struct ButtonId {
  std::string kind;
  std::string number;

  explicit ButtonId(const Variant& id) {
    const std::string text = id.joined();
    const std::string_view letters = leftCharacters(text, 2);
    kind = toLower(letters);
    number = text.substr(letters.size());
  }
};

Variant firstValue(const RecordsetRef& rows, std::string_view column) {
  return rows->eof() ? Variant() : rows->value(column);
}

}  // namespace

Variant Invoice::addItem2(const Variant& itemId, const Variant& pieces) {
  return addItem(itemId, groupSimilarItems, pieces, 1.0, 0.01);
}

Variant Invoice::addRedoItem(const Variant& itemId, const Variant& pieces) {
  const Variant line = addItem(itemId, groupSimilarItems, pieces, 0, 1);
  setLineToRedo(line);
  return line;
}

Variant Invoice::addPriceListItem(const Variant& id, const Variant& name, const Variant& pieces,
                                  const Variant& parent, const Variant& asRedo) {
  const ButtonId button(id);
  if (button.kind == "it")
    return asRedo.toBoolean() ? addRedoItem(button.number, pieces) : addItem2(button.number, pieces);
  if (button.kind == "up")
    addUpcharge2(parent, getUpchargeNameById(button.number), pieces);
  else
    addDescriptor(parent, name, button.kind, pieces);
  return id;
}

Variant Invoice::removePriceListItem(const Variant& line, const Variant& id) {
  std::string lineKind, number;
  const bool byId = !isEqual(id, 0);
  if (byId) {
    const ButtonId button(id);
    lineKind = button.kind;
    number = button.number;
  } else if (!isEqual(line, 0) && findLine(line)) {
    lineKind = toLower(lineItems->text(itemType));
    number = lineItems->value(lineItemId).joined();
  }
  lineItems->clearFilter();
  if (number.empty()) return line;

  if (lineKind == "it" || lineKind == "ac") {
    deleteItem(line);
    return 0;
  }
  if (lineKind == "cu")
    removeCoupon(line);
  else
    removeDescriptor(line, lineKind == "up" ? getUpchargeNameById(number) : getDescriptorNameById(number),
                     lineKind);
  return line;
}

Variant Invoice::addItemByHeatSeal(const Variant& hsnumber) {
  const RecordsetRef tagged = queryDatabase(
      *apartment_,
      fmt::format(
          "select pricelistitemid, taggeditemid from taggedItem where taggedItemID = (select distinct "
          "taggedItemID from taggedPiece where heatSealID = '{}')",
          escapeSqlValue(hsnumber)));
  if (tagged->eof()) return -1;
  const Variant line = addItem2(tagged->value("pricelistitemid"), 1);
  Variant seal = hsnumber;
  addHeatSeal(line, seal);
  const RecordsetRef descriptors =
      queryDatabase(*apartment_, fmt::format("select * from taggeditemdescriptor where taggeditemid = '{}'",
                                             tagged->value("taggeditemid").joined()));
  for (; !descriptors->eof(); descriptors->moveNext())
    addDescriptor(line, descriptors->value("descriptorname"), descriptors->value("descriptortype"), 1);
  return line;
}

Variant Invoice::getUpchargeNameById(const Variant& id) {
  return firstValue(
      queryDatabase(*apartment_, fmt::format(" select descriptorname from itemdescriptorprice  where "
                                             "itemDescriptorPriceID = '{}'",
                                             escapeSqlValue(id))),
      "descriptorname");
}

Variant Invoice::getDescriptorNameById(const Variant& id) {
  return firstValue(
      queryDatabase(*apartment_, fmt::format(" select name from descriptor  where descriptorID = '{}'",
                                             escapeSqlValue(id))),
      "name");
}

}  // namespace ondrel
