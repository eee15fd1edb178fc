#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/splitting/department_groups.h"

namespace ondrel {
namespace {

// The garments' sums of upcharges give up the amounts of the lines that pass the filter.
void takeBackAmounts(Lines& lines, std::string_view filter) {
  lines.each(filter, [&](const Recordset& upcharge) {
    const LineSet garment = lines.find(upcharge.integer(col::parentLineNumber));
    if (!garment || garment->isNull(col::upchargeTotal)) return;
    const double left = garment->number(col::upchargeTotal) - upcharge.number(col::lineItemTotal);
    garment->setValue(col::upchargeTotal, round2(left, 2));
  });
}

void removeRushUpcharges(Invoice& invoice) {
  const RecordsetRef tiers =
      queryDatabase(*invoice.apartment(),
                    fmt::format(" select * from rushupcharge where storeid = '{}'", invoice.storeNumber));
  for (; !tiers->eof(); tiers->moveNext()) {
    const std::string rush = fmt::format("{} and itemName = '{}'", ofKind(kind::upcharge),
                                         escapeSqlValue(tiers->value("upchargeName").joined()));
    takeBackAmounts(invoice.lines(), rush);
    invoice.lines().remove(rush);
  }
}

}  // namespace

// Whether the ticket as a whole is promised within the longest of the store's rush tiers.
Variant Invoice::isRush() {
  const RecordsetRef rows = queryDatabase(
      *apartment_, fmt::format(" select isnull(max(daystoprocess), -1) as rushdays from rushupcharge  where "
                               "storeid = '{}'",
                               storeNumber));
  const std::int32_t rushDays = rows->eof() ? 365 : rows->integer("rushdays");
  const std::int32_t days = getDeptDaysToProcess("").toLong();
  return days >= 0 && days <= rushDays;
}

// The tightest tier that covers the days of a department decides its upcharge; with more days than every
// tier it has none. What an earlier run added is taken back first, so that a second one changes nothing.
Variant Invoice::applyRushUpcharge(Variant& groupSimiliarItems) {
  removeRushUpcharges(*this);
  const RecordsetRef departments = loadedDepartments(*apartment_, className()).clone();
  for (; !departments->eof(); departments->moveNext()) {
    const Variant department = departments->value("departmentID");
    const Variant days = getDeptIDDaysToProcess(department);
    if (days.isNull() || days.toLong() < 0) continue;
    const RecordsetRef tiers = queryDatabase(
        *apartment_, fmt::format(" select * from rushupcharge where storeid = '{}'  and daystoprocess >= {}  "
                                 "order by daystoprocess asc ",
                                 storeNumber, days.toLong()));
    if (!tiers->eof()) addUpchargeToAllItems(department, tiers->value("upchargename"), 1, groupSimiliarItems);
  }
  return {};
}

}  // namespace ondrel
