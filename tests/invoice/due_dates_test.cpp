#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using enum LineColumn;

// Counted from Tuesday 24 November at shop 1 (closed on Sundays, Thursday 26 and Friday 27 off):
//   days  0 Tue 24   1 Wed 25   2 Sat 28   3 Mon 30   4 Tue 1   5 Wed 2   6 Thu 3   7 Fri 4   14 Sat 12

class DueDates : public InvoiceTest {
 protected:
  std::string due(int line) { return cell(line, dueDate).toDate().midnight().text(); }
  std::string invoiceDue() { return invoice.InvDueDate.midnight().text(); }
};

TEST_F(DueDates, GarmentsPromiseByItemDepartmentAndHour) {
  garment(101);  // cleaning, 3
  garment(201);  // shirts, 2
  garment(501);  // alterations, 4, and one more day from nine o'clock
  EXPECT_EQ(due(1), "11/30/2026");
  EXPECT_EQ(due(2), "11/28/2026");
  EXPECT_EQ(text(3, daysToProcess), "5");
  const auto lateGarment = [&](int minute, int item) {
    clock->set(Date::of(2026, 11, 24, 16, minute));
    Invoice late;
    startTicket(late);
    late.addItem(item, 0, 1, 1.0, 0.01);
    return fmt::format("{} {}", late.lineItems->integer(daysToProcess),
                       late.lineItems->date(dueDate).midnight().text());
  };
  EXPECT_EQ(lateGarment(0, 101), "5 12/2/2026") << "twelve and sixteen have struck: two more";
  EXPECT_EQ(lateGarment(1, 301), "2 11/30/2026") << "laundry, two days and one of the cut-off";
}

TEST_F(DueDates, ANewTicketsFirstPromiseCountsFromTheLastResult) {
  apartment->store.lastCounted = Date::of(2026, 12, 1);
  Invoice second;
  startTicket(second);
  EXPECT_EQ(second.InvDueDate.text(), "12/4/2026");
  Invoice sale;
  sale.counterSaleOnly = true;
  startTicket(sale);
  EXPECT_EQ(sale.InvDueDate.serial(), 0);
}

TEST_F(DueDates, WhatCountsWithoutSettingTheBaseGoesOnFromTheDateReached) {
  garment(101);
  invoice.setAllDepartmentDueDates("12/8/2026");
  invoice.deleteItem(1);
  EXPECT_EQ(invoiceDue(), "12/11/2026") << "the store's three days after Tuesday the 8th";
  garment(101);
  invoice.setAllDepartmentDueDates("11/20/2026");
  EXPECT_EQ(due(2) + " " + invoiceDue(), "11/20/2026 11/24/2026") << "never before the day of writing";
}

TEST_F(DueDates, ByHandForOneDepartment) {
  garment(101);
  garment(102);
  garment(201);
  upcharge(1, "Stain Treatment");
  invoice.setDeptDueDate("Dry Cleaning", "12/4/2026");
  EXPECT_EQ(due(1) + " " + due(2) + " " + due(4), "12/4/2026 12/4/2026 12/4/2026")
      << "whatever hangs on the garments too";
  EXPECT_EQ(due(3), "11/28/2026");
  EXPECT_EQ(invoiceDue(), "12/4/2026");
  EXPECT_EQ(invoice.getDeptDueDate("Dry Cleaning").text(), "12/4/2026");
  EXPECT_EQ(invoice.getDeptDaysToProcess("Dry Cleaning").toLong(), 7);
  EXPECT_EQ(invoice.getDeptDaysToProcess("").toLong(), 7);
  EXPECT_EQ(invoice.getDeptIDDaysToProcess(2).toLong(), 2);
  EXPECT_TRUE(filterIsClear());
  invoice.lineItems->setFilter("lineNumber=3");
  invoice.lineItems->setValue(deptName, "Men's");
  EXPECT_EQ(errorOf([&] { invoice.setDeptDueDate("Men's", "12/5/2026"); }), 3001)
      << "quotes are the caller's";
  invoice.setDeptDueDate("Men''s", "12/5/2026");
  EXPECT_EQ(due(3), "12/5/2026");
  invoice.setLineDueDate(3, "12/7/2026");
  EXPECT_EQ(due(3), "12/7/2026");
  invoice.lineItems->setFilter("lineNumber=3");
  invoice.lineItems->setValue(dueDate, Variant::null());
  EXPECT_EQ(invoice.getDeptIDDaysToProcess(2).toLong(), 0) << "a garment without a date";
}

TEST_F(DueDates, ALineMovesItsWholeDepartment) {
  garment(201);
  garment(202);
  invoice.addChargeLine(Variant(), 5, "Hem", 1, 5);
  upcharge(1, "Heavy Starch");
  invoice.setLineDueDate(4, "12/2/2026");
  EXPECT_EQ(due(1), "11/28/2026") << "an upcharge moves nothing";
  invoice.setLineDueDate(2, "12/2/2026");
  EXPECT_EQ(due(1), "12/2/2026");
  invoice.setLineDueDate(3, "12/3/2026");
  EXPECT_EQ(due(3), "12/3/2026");
  EXPECT_EQ(errorOf([&] { invoice.setLineDueDate(9, "12/2/2026"); }),
            static_cast<int>(ErrorNumber::NoCurrentRecord));
}

TEST_F(DueDates, ADepartmentWithoutLinesRemembersItsDaysOnce) {
  invoice.setDeptIdDueDate(1, "12/2/2026");
  invoice.setDeptIdDueDate("1", "12/4/2026");
  EXPECT_EQ(invoice.getDeptIDDaysToProcess(1).toLong(), 7);
  garment(101);
  garment(102);
  EXPECT_EQ(due(1), "12/4/2026");
  EXPECT_EQ(due(2), "11/30/2026") << "used up by the first";
  EXPECT_EQ(invoice.getDeptIDDaysToProcess(3).toLong(), 2) << "the department's own";
  EXPECT_FALSE(isEqual(apartment->store.storeDepartments->filter(), 0)) << "which stays selected";
  EXPECT_EQ(invoice.getDeptIDDaysToProcess("").toLong(), 7);
}

TEST_F(DueDates, TheTicketsOwnDate) {
  garment(201);
  invoice.setInvoiceDueDate("11/28/2026");  // as it was: nothing set by hand
  invoice.deleteItem(1);
  EXPECT_EQ(invoiceDue(), "12/2/2026") << "the store's three days after Saturday the 28th";
  garment(101);
  invoice.setInvoiceDueDate("12/8/2026");
  EXPECT_EQ(invoice.getDeptDueDate("Household").text(), "12/8/2026") << "a department without lines";
  EXPECT_EQ(invoice.getDeptDaysToProcess("Household").toLong(), 10);
  invoice.calculateInvDueDate();
  EXPECT_EQ(invoiceDue(), "11/30/2026");
  EXPECT_TRUE(invoice.lineItems->eof());
}

TEST_F(DueDates, LateDropOffDaysThatCannotBeReadAreNone) {
  garment(101);
  Variant broken = "1'";
  EXPECT_EQ(invoice.getAdditionalDeptDays(broken).toLong(), 0);
  Variant alterations = 5;
  EXPECT_EQ(invoice.getAdditionalDeptDays(alterations).toLong(), 1);
}

}  // namespace
}  // namespace ondrel
