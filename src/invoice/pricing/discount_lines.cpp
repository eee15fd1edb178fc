#include "invoice/pricing/discount_lines.h"

#include <fmt/format.h>

#include "data/values.h"

namespace ondrel {
namespace {

const std::string kDiscounts = ofKinds({kind::coupon, kind::promotion, kind::loyalty, kind::vip});

std::string discountFilter(std::string_view itemType, const Variant& deptId, const Variant& discountId) {
  return fmt::format("lineItemId={} And deptId={} And {}", sqlNumber(discountId), sqlNumber(deptId),
                     ofKind(itemType));
}

}  // namespace

bool hasDiscountLine(Lines& lines, std::string_view itemType, const Variant& deptId,
                     const Variant& discountId) {
  return lines.any(discountFilter(itemType, deptId, discountId));
}

void addToDiscountLine(Lines& lines, const GeneratedLine& discount) {
  {
    const LineSet line = lines.where(discountFilter(discount.itemType, discount.deptId, discount.lineItemId));
    if (line) {
      line->setValue(col::lineItemTotal, line->number(col::lineItemTotal) + discount.amount);
      return;
    }
  }
  addGeneratedLine(lines, discount);  // the page's view stays on it
}

std::vector<std::int32_t> discountIdsOf(Lines& lines, std::string_view itemType) {
  std::vector<std::int32_t> ids;
  lines.each(ofKind(itemType), [&](const Recordset& line) {
    if (!line.isNull(col::lineItemId)) ids.push_back(line.integer(col::lineItemId));
  });
  return ids;
}

bool discountExists(Lines& lines) {
  return lines.any(kDiscounts);
}

}  // namespace ondrel
