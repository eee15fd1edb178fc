#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"

namespace ondrel {
namespace {

using enum LineColumn;

bool isTrue(const Variant& value) {
  return value.isNumeric() && value.toDouble() != 0;
}

}  // namespace

// What the price list asks for, and whether the garment has it. It has it when its children of the kind are
// as many as its pieces.

bool Invoice::itemForces(const Variant& item, std::string_view column) {
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format(" select {} from pricelistitem where pricelistitemid = {}", column, sqlNumber(item)));
  return !rows->eof() && rows->flag(column);
}

bool Invoice::offersUpcharges(const Variant& item) {
  if (!isTrue(item)) return false;
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format(" select count(*) as cnt from itemdescriptorprice  where descriptorType = 'UP'  and "
                  "disabled = 0  and priceListItemID = {}",
                  item.toText()));
  return !rows->eof() && rows->integer("cnt") > 0;
}

bool Invoice::isDescriptorRequired(const Variant& lineNo, std::string_view column) {
  const Variant item = getLineValue(lineNo, lineItemId);
  return !item.isEmpty() && itemForces(item, column);
}

bool Invoice::coversPieces(const Variant& lineNo, std::string_view lineKind) {
  const std::string line = lineNo.toText();
  const Variant pieces = liColTotal("quantity", fmt::format("lineNumber={} AND itemtype='IT'", line));
  return !isLess(liColTotal("quantity", fmt::format("parentLineNumber={} AND itemtype='{}'", line, lineKind)),
                 pieces);
}

Variant Invoice::isColorRequiredForLine(Variant& lineNo) {
  return isDescriptorRequired(lineNo, "forcecolor");
}

Variant Invoice::isPatternRequiredForLine(Variant& lineNo) {
  return isDescriptorRequired(lineNo, "forcepattern");
}

Variant Invoice::isUpchargeRequiredForLine(Variant& lineNo) {
  return isDescriptorRequired(lineNo, "forceupcharge");
}

Variant Invoice::isColorSetForItem(const Variant& lineNo) {
  return coversPieces(lineNo, kind::color);
}

Variant Invoice::isPatternSetForItem(const Variant& lineNo) {
  return coversPieces(lineNo, kind::pattern);
}

Variant Invoice::isBrandSetForItem(const Variant& lineNo) {
  return coversPieces(lineNo, kind::brand);
}

// An item for which no upcharge is on offer cannot lack one.
Variant Invoice::isUpchargeSetForItem(const Variant& lineNo) {
  return !offersUpcharges(getLineValue(lineNo, lineItemId)) || coversPieces(lineNo, kind::upcharge);
}

}  // namespace ondrel
