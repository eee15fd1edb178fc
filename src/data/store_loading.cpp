#include "data/store_loading.h"

#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"

namespace ondrel {
namespace {

// Days of a store are given only when its row is there.
std::int32_t readDefaultProcessingDays(Apartment& apartment, const Variant& storeId) {
  const RecordsetRef rows = queryDatabase(
      apartment,
      fmt::format(
          "Select IsNull(defaultProcessingDays,0) as defaultProcessingDays  from Store where storeId={}",
          storeId.toText()));
  return rows->eof() ? 0 : rows->integer("defaultProcessingDays");
}

// Minutes of a day: the cut-off is kept to the minute.
int minuteOf(Date time) {
  return time.secondOfDay() / 60;
}

std::int32_t readCutoffExtraDays(Apartment& apartment, const Variant& storeId, Date written) {
  const RecordsetRef rows = queryDatabase(
      apartment,
      fmt::format(
          "Select IsNull(addDaysAfter,0) as addDaysAfter, IsNull(addAfterTime,'') as addAfterTime from  "
          "StoreHour where storeId={} And dayOfWeek = '{}'",
          storeId.toText(), written.weekday()));
  if (rows->eof()) return 0;
  const std::string cutoff(trim(rows->value("addAfterTime").joined()));
  if (cutoff.empty()) return 0;
  const bool late = minuteOf(Variant(cutoff).toDate()) < minuteOf(written);
  return late ? rows->integer("addDaysAfter") : 0;
}

void readDefaultPickupTimes(Apartment& apartment, const Variant& storeId) {
  const RecordsetRef rows = queryDatabase(
      apartment, fmt::format("Select defaultpickuptime  from store where storeId={}", storeId.toText()));
  if (!rows->eof()) apartment.store.defaultPickupTimes.fill(rows->value("defaultpickuptime").joined());
}

}  // namespace

void loadStoreHolidays(Apartment& apartment, const Variant& storeId) {
  const RecordsetRef rows = queryDatabase(
      apartment,
      fmt::format("Select firstDay, duration from StoreHoliday where storeid={}", storeId.toText()));
  auto& holidays = apartment.store.calendar.holidays;
  holidays.clear();
  for (; !rows->eof(); rows->moveNext())
    holidays.push_back({rows->date("firstDay"), rows->integer("duration")});
}

void loadStoreHours(Apartment& apartment, const Variant& storeId) {
  readDefaultPickupTimes(apartment, storeId);
  const RecordsetRef rows = queryDatabase(
      apartment,
      fmt::format("Select dayOfWeek, storeOpen, defaultPickupTime  from StoreHour where storeId={}",
                  storeId.toText()));
  auto& open = apartment.store.calendar.dayOpen;
  if (rows->eof()) open.fill(true);
  // A weekday without a row keeps what it had.
  for (; !rows->eof(); rows->moveNext()) {
    const std::int32_t weekday = rows->integer("dayOfWeek");
    if (weekday < 1 || weekday > 7)
      throw Error(ErrorNumber::SubscriptOutOfRange, "basGlobal", "Subscript out of range");
    open[static_cast<size_t>(weekday)] = rows->flag("storeOpen");
    if (!rows->isNull("defaultPickupTime"))
      apartment.store.defaultPickupTimes[static_cast<size_t>(weekday)] = rows->text("defaultPickupTime");
  }
}

void loadStoreDays(Apartment& apartment, const Variant& storeId, Date written) {
  apartment.store.calendar.cutoffExtraDays = 0;
  const std::int32_t days = readDefaultProcessingDays(apartment, storeId);
  apartment.store.calendar.cutoffExtraDays = readCutoffExtraDays(apartment, storeId, written);
  apartment.store.defaultProcessingDays = days;
  loadStoreHolidays(apartment, storeId);
  loadStoreHours(apartment, storeId);
}

void loadDepartments(Apartment& apartment, const Variant& storeId, const Variant&) {
  apartment.store.storeDepartments = queryDatabase(
      apartment,
      fmt::format(
          "Select departmentID, department.name, splitInvoice, isnull(convert(int, maxItemsInReceipt), 4000000) as "
          "maxItemsInReceipt, userMaxItem, isnull(department.daysToProcess, store.defaultprocessingdays) as "
          "daysToProcess, useHeatSeals, isnull(splitGroup, 0) as splitGroup  from Department  inner join store on "
          "department.storeid = store.storeid  Where department.storeId = {} AND department.disabled=0 Order by "
          "department.displaySequence",
          storeId.toText()));
}

void loadStorePaymentTypes(Apartment& apartment, const Variant& storeId) {
  apartment.store.storePaymentTypes = queryDatabase(
      apartment,
      fmt::format("Select paymentTypeName, doNotOpenCashDrawer from StorePaymentType  Where storeId='{}'",
                  escapeSqlValue(storeId)));
}

Variant departmentValue(Apartment& apartment, const Variant& departmentId, std::string_view column) {
  const RecordsetRef& departments = apartment.store.storeDepartments;
  if (!departments) return {};
  departments->setFilter(fmt::format("departmentId={}", sqlNumber(departmentId)));
  const Variant value = departments->eof() ? Variant() : departments->value(column);
  departments->clearFilter();
  return value;
}

}  // namespace ondrel
