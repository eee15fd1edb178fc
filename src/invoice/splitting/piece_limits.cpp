#include <fmt/format.h>

#include <limits>

#include "base/array.h"
#include "data/store_loading.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

using enum LineColumn;

constexpr std::string_view kCountedLines = "itemType='IT' OR itemType='AC'";

std::int32_t orOne(const Recordset& line, Column column) {
  return line.isNull(column) ? 1 : line.integer(column);
}

bool isSold(const Recordset& line) {
  return line.isNull(saleOnly) || line.flag(saleOnly);
}

std::int32_t inRange(std::int64_t pieces) {
  using Range = std::numeric_limits<std::int32_t>;
  if (pieces < Range::min() || pieces > Range::max())
    throw Error(ErrorNumber::Overflow, "invoice", "Overflow");
  return static_cast<std::int32_t>(pieces);
}

std::int32_t product(std::int32_t pieces, std::int32_t pack) {
  return inRange(std::int64_t{pieces} * pack);
}

}  // namespace

Variant Invoice::getDepartmentPieceCount(Variant& departmentID) {
  const RecordsetRef lines = lineItems->clone();
  lines->setFilter(
      fmt::format("(deptID={0} AND itemType='AC') OR (deptID={0} AND itemType='IT')", departmentID.toText()));
  std::int32_t pieces = 0;
  for (; !lines->eof(); lines->moveNext())
    pieces = inRange(std::int64_t{pieces} + product(orOne(*lines, quantity), orOne(*lines, pkgQuantity)));
  return pieces;
}

// A sold item is one piece a unit, whatever its pack.
Variant Invoice::getTotalItemCount() {
  std::int32_t pieces = 0;
  lineItems->setFilter(kCountedLines);
  for (; !lineItems->eof(); lineItems->moveNext()) {
    const std::int32_t pack = isSold(*lineItems) ? 1 : orOne(*lineItems, pkgQuantity);
    pieces = inRange(std::int64_t{pieces} + product(orOne(*lineItems, quantity), pack));
  }
  lineItems->clearFilter();
  return pieces;
}

Variant Invoice::getLineCount() {
  lineItems->setFilter(kCountedLines);
  const int count = lineItems->recordCount();
  lineItems->clearFilter();
  return count;
}

Variant Invoice::isOverMaxDepartmentItems() {
  Recordset& departments = storeDepartments();
  departments.clearFilter();
  for (; !departments.eof(); departments.moveNext()) {
    if (!departments.flag("userMaxItem")) continue;
    Variant department = departments.value("departmentID");
    if (getDepartmentPieceCount(department).toLong() > departments.integer("maxItemsInReceipt")) return true;
  }
  return false;
}

// | department's limit | lot of tags | most pieces                    |
// |--------------------|-------------|--------------------------------|
// | unknown, none      |             | -1                             |
// | some               | no          | the limit                      |
// | some               | yes         | the limit, at most the tags    |
Variant Invoice::getDepartmentMaxPieces(Variant& departmentID) {
  const Variant limit = departmentValue(*apartment_, departmentID, "maxItemsInReceipt");
  if (limit.isEmpty() || limit.toLong() >= kNoPieceLimit) return -1;
  return state_.lotId > 0 && limit.toLong() > state_.tagCount ? Variant(state_.tagCount) : limit;
}

Variant Invoice::isManualMaxPiecesEnabled(Variant& departmentID) {
  const Variant byHand = departmentValue(*apartment_, departmentID, "userMaxItem");
  return byHand.isEmpty() ? Variant(false) : byHand;
}

// A sold item is one piece a unit, whatever its pack. A line without a pack takes that of the line before.
Variant Invoice::checkAllowableItemCountPerDept(const std::string& selItemID, std::int32_t selItemQty,
                                                std::int32_t selItemPkgQty, std::int32_t selItemDeptId,
                                                const std::string& userAction) {
  std::int32_t current = 0, total = 0, pack = 0;
  lineItems->clearFilter();
  if (lineItems->recordCount() > 0) {
    if (userAction != "getItemDetails") {
      lineItems->setFilter("lineNumber='" + selItemID + "'");
      if (!lineItems->eof()) {
        if (!lineItems->isNull(deptId)) selItemDeptId = lineItems->integer(deptId);
        if (!lineItems->isNull(pkgQuantity)) selItemPkgQty = lineItems->integer(pkgQuantity);
        if (!lineItems->isNull(quantity)) current = lineItems->integer(quantity);
      }
    }
    lineItems->setFilter(kCountedLines);
    for (; !lineItems->eof(); lineItems->moveNext()) {
      if (!isEqual(lineItems->value(deptId), selItemDeptId)) continue;
      const bool sold = isSold(*lineItems);
      if (!sold && !lineItems->isNull(pkgQuantity)) pack = lineItems->integer(pkgQuantity);
      total = inRange(std::int64_t{total} + product(lineItems->integer(quantity), sold ? 1 : pack));
    }
    lineItems->clearFilter();
  }
  const std::int32_t added = product(inRange(std::int64_t{selItemQty} - current), selItemPkgQty);
  const std::vector<Variant> answer = {inRange(std::int64_t{added} + total), selItemDeptId};
  return ObjectRef(std::make_shared<Array>(answer, 1));
}

}  // namespace ondrel
