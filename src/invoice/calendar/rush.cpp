#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"

namespace ondrel {

using enum LineColumn;

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
  removeRushUpcharges();
  const RecordsetRef departments = storeDepartments().clone();
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

void Invoice::removeRushUpcharges() {
  const RecordsetRef tiers = queryDatabase(
      *apartment_, fmt::format(" select * from rushupcharge where storeid = '{}'", storeNumber));
  for (; !tiers->eof(); tiers->moveNext()) {
    const std::string filter = fmt::format("itemType='UP' and itemName = '{}'",
                                           escapeSqlValue(tiers->value("upchargeName").joined()));
    takeBackUpcharges(filter);
    deleteFilteredLines(filter);
  }
}

// The garments' sums of upcharges give up the amounts of the lines that pass the filter.
void Invoice::takeBackUpcharges(std::string_view filter) {
  const RecordsetRef upcharges = lineItems->clone();
  upcharges->setFilter(filter);
  for (; !upcharges->eof(); upcharges->moveNext()) {
    if (!findLine(upcharges->integer(parentLineNumber)) || lineItems->isNull(upchargeTotal)) continue;
    const double left = lineItems->number(upchargeTotal) - upcharges->number(lineItemTotal);
    lineItems->setValue(upchargeTotal, ondrel::round2(left, 2));
  }
}

}  // namespace ondrel
