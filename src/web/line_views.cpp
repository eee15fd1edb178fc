#include "web/line_views.h"

#include <algorithm>

#include "base/text.h"

namespace ondrel {

ChildLines::ChildLines(const Recordset& lines, const std::string& sort) {
  const RecordsetRef each = lines.clone();
  if (!sort.empty()) each->setSort(sort);
  for (; !each->eof(); each->moveNext()) {
    const std::int32_t parent = each->integer(col::parentLineNumber);
    if (parent < 0) continue;
    children_.push_back(
        {parent, each->integer(col::lineNumber), each->textView(col::itemType), each->textView(col::itemName),
         each->isNull(col::quantity) ? std::nullopt : std::optional(each->integer(col::quantity)),
         each->number(col::lineItemTotal)});
  }
  const auto byParent = [](const ChildLine& a, const ChildLine& b) { return a.parent < b.parent; };
  if (!std::is_sorted(children_.begin(), children_.end(), byParent))  // as the clerk enters them they are
    std::stable_sort(children_.begin(), children_.end(), byParent);
}

std::span<const ChildLine> ChildLines::of(std::int32_t parent) const {
  const auto first =
      std::lower_bound(children_.begin(), children_.end(), parent,
                       [](const ChildLine& each, std::int32_t line) { return each.parent < line; });
  const auto last =
      std::find_if(first, children_.end(), [&](const ChildLine& each) { return each.parent != parent; });
  return {first, last};
}

std::int32_t childQuantity(std::span<const ChildLine> children, std::string_view name,
                           std::string_view type) {
  for (const ChildLine& each : children)
    if (equalsIgnoringCase(each.name, name) && equalsIgnoringCase(each.type, type))
      return each.quantity.value_or(0);
  return 0;
}

std::vector<LineDepartment> departmentsOf(Recordset& lines) {
  std::vector<LineDepartment> departments;
  for (; !lines.eof(); lines.moveNext()) {
    const Variant id = lines.value(col::deptId);
    const bool known = std::any_of(departments.begin(), departments.end(),
                                   [&](const LineDepartment& each) { return each.id.identicalTo(id); });
    if (!known) departments.push_back({id, lines.value(col::deptName)});
  }
  return departments;
}

}  // namespace ondrel
