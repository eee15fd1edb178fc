#include "data/store_loading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_database.h"

namespace ondrel {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

// Tuesday.
const Date kTuesday = Date::of(2026, 11, 24, 17, 0);

class StoreTablesOf : public ::testing::Test {
 protected:
  StoreTablesOf() {
    database.attachTo(apartment);
    database.answer("from Store where", tableOf({"defaultProcessingDays"}, {{3}}));
  }

  void cutOff(const Variant& time, int days) {
    database.answer("IsNull(addDaysAfter", tableOf({"addDaysAfter", "addAfterTime"}, {{days, time}}));
  }
  int extraDaysAt(Date written) {
    loadStoreDays(apartment, 1, written);
    return apartment.store.calendar.cutoffExtraDays;
  }

  FakeDatabase database;
  Apartment apartment;
};

TEST_F(StoreTablesOf, AskInThisOrder) {
  loadStoreDays(apartment, 7, kTuesday);
  std::vector<std::string> statements = database.take();
  std::erase_if(statements, [](const std::string& entry) { return entry.front() == '<'; });
  EXPECT_THAT(
      statements,
      ElementsAre(
          "Select IsNull(defaultProcessingDays,0) as defaultProcessingDays  from Store where storeId=7",
          "Select IsNull(addDaysAfter,0) as addDaysAfter, IsNull(addAfterTime,'') as addAfterTime from  "
          "StoreHour where storeId=7 And dayOfWeek = '2'",
          "Select firstDay, duration from StoreHoliday where storeid=7",
          "Select defaultpickuptime  from store where storeId=7",
          "Select dayOfWeek, storeOpen, defaultPickupTime  from StoreHour where storeId=7"));
  EXPECT_EQ(apartment.store.defaultProcessingDays, 3);
  database.answer("from StoreHoliday", tableOf({"firstDay", "duration"}, {{kTuesday, 1}}));
  for (int times = 0; times < 2; ++times) loadStoreHolidays(apartment, 7);
  EXPECT_EQ(apartment.store.calendar.holidays.size(), 1u);
}

TEST_F(StoreTablesOf, HoursReplaceOnlyWhatTheySay) {
  database.answer("Select defaultpickuptime", tableOf({"defaultpickuptime"}, {{"5:00 PM"}}));
  EXPECT_EQ(extraDaysAt(kTuesday), 0);
  EXPECT_TRUE(apartment.store.calendar.isOpen(kTuesday)) << "a store without hours";
  EXPECT_THAT(apartment.store.defaultPickupTimes, Each(std::string("5:00 PM")));
  database.answer("Select dayOfWeek",
                  tableOf({"dayOfWeek", "storeOpen", "defaultPickupTime"},
                          {{5, true, "6:00 PM"}, {6, true, Variant::null()}, {7, false, Variant::null()}}));
  loadStoreHours(apartment, 1);
  EXPECT_EQ(apartment.store.defaultPickupTimes[5], "6:00 PM");
  EXPECT_EQ(apartment.store.defaultPickupTimes[6], "5:00 PM");
  EXPECT_FALSE(apartment.store.calendar.dayOpen[7]);
  EXPECT_TRUE(apartment.store.calendar.dayOpen[6]);
}

TEST_F(StoreTablesOf, TheCutOffIsStrictAndToTheMinute) {
  cutOff("17:00", 2);
  EXPECT_EQ(extraDaysAt(Date::of(2026, 11, 24, 17, 0, 59)), 0) << "in the very minute";
  EXPECT_EQ(extraDaysAt(Date::of(2026, 11, 24, 17, 1)), 2);
  cutOff("   ", 2);
  EXPECT_EQ(extraDaysAt(Date::of(2026, 11, 24, 23, 0)), 0) << "blanks are no cut-off";
}

TEST_F(StoreTablesOf, ADepartmentIsFoundAndTheFilterCleared) {
  EXPECT_TRUE(departmentValue(apartment, 1, "name").isEmpty()) << "nothing is loaded";
  database.answer("from Department", tableOf({"departmentID", "name"}, {{1, "Dry Cleaning"}, {2, "Shirts"}}));
  loadDepartments(apartment, 1, 9);
  EXPECT_EQ(departmentValue(apartment, 2, "name").text(), "Shirts");
  EXPECT_TRUE(departmentValue(apartment, 3, "name").isEmpty());
  EXPECT_EQ(apartment.store.storeDepartments->recordCount(), 2);
}

}  // namespace
}  // namespace ondrel
