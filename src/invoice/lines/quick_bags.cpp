#include "invoice/lines/quick_bags.h"

#include <fmt/format.h>

#include "data/values.h"

namespace ondrel {

bool hasBag(Lines& lines, const Variant& deptId) {
  return lines.any(fmt::format("{} and deptId = {}", ofKind(kind::department), sqlNumber(deptId)));
}

Variant bagNote(Lines& lines, const Variant& deptId) {
  const LineSet bag =
      lines.where(fmt::format("deptId='{}' AND {}", deptId.joined(), ofKind(kind::department)));
  return bag ? bag->value(col::notes) : Variant();
}

void changeBag(Lines& lines, const Variant& deptId, const Variant& change) {
  const LineSet bag =
      lines.where(fmt::format("{} AND deptId={}", ofKind(kind::department), sqlNumber(deptId)));
  if (bag) bag->setValue(col::quantity, bag->value(col::quantity) + change);
}

void takeFromBag(Lines& lines, const Variant& deptId, const Variant& quantity, const Variant& pkgQuantity) {
  changeBag(lines, deptId, -1 * (Variant(integerOrOne(quantity)) * integerOrOne(pkgQuantity)));
}

}  // namespace ondrel
