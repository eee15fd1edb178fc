#include <fmt/format.h>

#include <limits>

#include "base/array.h"
#include "data/store_loading.h"
#include "invoice/invoice.h"
#include "invoice/splitting/department_groups.h"

namespace ondrel {
namespace {

const std::string kCountedLines = filterOf(&LineKind::isArticle);

std::int32_t orOne(const Recordset& line, Column column) {
  return line.isNull(column) ? 1 : line.integer(column);
}

bool isSold(const Recordset& line) {
  return line.isNull(col::saleOnly) || line.flag(col::saleOnly);
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

// Pieces of the department by the invoice as it stands. A sold item is one piece a unit, whatever its pack; a line
// without a pack takes that of the line before.
std::int32_t standingPieces(Lines& lines, std::int32_t department) {
  std::int32_t total = 0, pack = 0;
  lines.each(kCountedLines, [&](const Recordset& line) {
    if (!isEqual(line.value(col::deptId), department)) return;
    const bool sold = isSold(line);
    if (!sold && !line.isNull(col::pkgQuantity)) pack = line.integer(col::pkgQuantity);
    total = inRange(std::int64_t{total} + product(line.integer(col::quantity), sold ? 1 : pack));
  });
  return total;
}

}  // namespace

Variant Invoice::getDepartmentPieceCount(Variant& departmentID) {
  const std::string ofDepartment =
      fmt::format("(deptID={0} AND {1}) OR (deptID={0} AND {2})", departmentID.toText(), ofKind(kind::charge),
                  ofKind(kind::garment));
  std::int32_t pieces = 0;
  for (auto line = lines_.peek(ofDepartment); line;
       line.next())
    pieces =
        inRange(std::int64_t{pieces} + product(orOne(*line, col::quantity), orOne(*line, col::pkgQuantity)));
  return pieces;
}

// A sold item is one piece a unit, whatever its pack.
Variant Invoice::getTotalItemCount() {
  std::int32_t pieces = 0;
  lines_.each(kCountedLines, [&](const Recordset& line) {
    const std::int32_t pack = isSold(line) ? 1 : orOne(line, col::pkgQuantity);
    pieces = inRange(std::int64_t{pieces} + product(orOne(line, col::quantity), pack));
  });
  return pieces;
}

Variant Invoice::getLineCount() {
  return lines_.where(kCountedLines)->recordCount();
}

Variant Invoice::isOverMaxDepartmentItems() {
  Recordset& departments = loadedDepartments(*apartment_, className());
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

Variant Invoice::checkAllowableItemCountPerDept(const std::string& selItemID, std::int32_t selItemQty,
                                                std::int32_t selItemPkgQty, std::int32_t selItemDeptId,
                                                const std::string& userAction) {
  std::int32_t current = 0;
  const bool isOnInvoice = userAction != "getItemDetails" && lines_.any("");
  if (isOnInvoice) {
    if (const LineSet line = lines_.where("lineNumber='" + selItemID + "'")) {
      if (!line->isNull(col::deptId)) selItemDeptId = line->integer(col::deptId);
      if (!line->isNull(col::pkgQuantity)) selItemPkgQty = line->integer(col::pkgQuantity);
      if (!line->isNull(col::quantity)) current = line->integer(col::quantity);
    }
  }
  const std::int32_t total = standingPieces(lines_, selItemDeptId);
  const std::int32_t added = product(inRange(std::int64_t{selItemQty} - current), selItemPkgQty);
  const std::vector<Variant> answer = {inRange(std::int64_t{added} + total), selItemDeptId};
  return ObjectRef(std::make_shared<Array>(answer, 1));
}

}  // namespace ondrel
