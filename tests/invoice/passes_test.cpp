#include "pricing_story.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using enum LineColumn;

// What surcharges, taxes and discounts make of the lines that were entered.
class PassesTest : public PricingTest {};

// | line                | taxable | State 6 %   | City 2.5 % | surcharge            |
// |---------------------|---------|-------------|------------|----------------------|
// | 2 pants             |   16.00 | 0.96        | 0.40       | 2 % 0.32             |
// | dress               |   14.00 | 0.84        | 0.35       | 2 % of 14 - 2: 0.24  |
// | its small size      |   -2.00 | -0.12       | -0.05      |                      |
// | 3 shirts            |    7.50 | 0.45        |            | 0.10 a piece: 0.30   |
// | alterations charge  |   10.00 | 0.60        |            | 2.00 a piece         |
// | environmental fee   |    0.56 | 0.0336      |            |                      |
TEST_F(PassesTest, FourSourcesMergePerCodeAndDepartment) {
  enter({{101, 2}, {106, 1, "Small Size"}, {201, 3}});
  charge(10, 5);
  finish();
  EXPECT_THAT(goods(), ElementsAre("Pants 16: taxable 16, tax 1.36, surcharge 0.32",
                                   "Dress 14: taxable 14, tax 1.19, surcharge 0.24",
                                   "Small Size -2: taxable -2, tax -0.17, surcharge 0",
                                   "Shirt on Hanger 7.5: taxable 7.5, tax 0.45, surcharge 0.3",
                                   "Extra 10: taxable 10, tax 0.6, surcharge 0"));
  EXPECT_THAT(made(),
              UnorderedElementsAre("SU 1 Dry Cleaning: 0.56", "SU 2 Shirts: 0.3", "SU 6 Alterations: 2",
                                   "TA 1 Dry Cleaning: 1.71", "TA 2 Dry Cleaning: 0.7", "TA 1 Shirts: 0.45",
                                   "TA 1 Alterations: 0.6"));
  EXPECT_DOUBLE_EQ(invoice().getInvoiceAmountToPay(), 51.82);
  EXPECT_DOUBLE_EQ(invoice().getInvoiceAmountToPayBeforeTaxSurcharge(), 45.5);
  EXPECT_TRUE(filterIsClear());
}

struct Charge {
  double amount;
  int department, pieces = 1;
};
struct Offer {
  const char* type;
  int id;
  double amount;
};
struct Case {
  const char* what;
  std::string prepared = {};  // a statement
  int customer = 1, priceList = 1;
  std::vector<Entry> entries = {};
  std::vector<Charge> charges = {};
  std::vector<Offer> offers = {};
  const char* kinds = "SU";
  std::vector<std::string> made = {};
};

TEST_F(PassesTest, WhatTheyMake) {
  const Case cases[] = {
      // clang-format off
      {.what = "a tax is rounded once, on the sum of a department: 0.255 twice is 0.51",
       .entries = {{112}, {112}}, .kinds = "TA",
       .made = {"TA 1 Dry Cleaning: 0.51", "TA 2 Dry Cleaning: 0.21"}},
      {.what = "that of charges each: 4.26 at 6 percent is 0.26; laundry has none",
       .charges = {{4.26, 2}, {4.26, 2}, {5, 3}}, .kinds = "TA", .made = {"TA 1 Shirts: 0.52"}},
      {.what = "a tax line that falls below 0 goes away", .charges = {{10, 2}, {-25, 2}}, .kinds = "TA"},
      {.what = "the next amount starts a new one", .charges = {{10, 2}, {-25, 2}, {20, 2}}, .kinds = "TA",
       .made = {"TA 1 Shirts: 1.2"}},
      {.what = "one that starts below 0 stands", .charges = {{-25, 2}}, .kinds = "TA",
       .made = {"TA 1 Shirts: -1.5"}},
      {.what = "taxes of every store count",
       .prepared = "insert into ItemTax (priceListItemID, taxCode, storeID) values (301, 21, 2)",
       .entries = {{301}}, .kinds = "TA", .made = {"TA 21 Laundry: 1.2"}},
      // Lining 5.00 at 6 percent; the suit 16.00 at 6 and 2.5; the fee of 0.32 at 6.
      {.what = "names match without regard to case",
       .prepared = "insert into ItemDescriptorTax (priceListItemID, descriptorName, descriptorType, taxCode, "
                   "storeID) values (103, 'LINING', 'up', 1, 1)", .entries = {{103, 1, "Lining"}},
       .kinds = "TA", .made = {"TA 1 Dry Cleaning: 1.28", "TA 2 Dry Cleaning: 0.4"}},
      {.what = "0.10 a piece of 2 and 3 shirts; twice a suit of two pieces, besides 2 percent of 32.00",
       .prepared = "insert into ItemSurcharge (priceListItemID, surchargeCode, priceListId) values (103, 2, 1)",
       .entries = {{201, 2}, {202, 3}, {103, 2}},
       .made = {"SU 2 Shirts: 0.5", "SU 2 Dry Cleaning: 0.4", "SU 1 Dry Cleaning: 0.64"}},
      {.what = "1.50 once a department: comforter and bedspread; a bag",
       .prepared = "insert into ItemSurcharge (priceListItemID, surchargeCode, priceListId) values (301, 3, 1)",
       .entries = {{401}, {403, 2}, {301}}, .made = {"SU 3 Household: 1.5", "SU 3 Laundry: 1.5"}},
      {.what = "the rows of two price lists, on one line",
       .prepared = "insert into ItemSurcharge (priceListItemID, surchargeCode, priceListId) values (101, 1, 2)",
       .entries = {{101}}, .made = {"SU 1 Dry Cleaning: 0.24"}},
      // Hand Finish on a suit takes 10 percent of its 8.00. Delicate Care on beads is a fixed amount.
      {.what = "a descriptor is charged by percentage only",
       .entries = {{103, 1, "Hand Finish"}, {106, 1, "Beads"}},
       .made = {"SU 1 Dry Cleaning: 0.6", "SU 4 Dry Cleaning: 0.8"}},
      {.what = "but a fixed amount is booked as 0 where the descriptor already bears something",
       .prepared = "insert into ItemDescriptorSurcharge (priceListItemID, descriptorName, descriptorType, "
                   "surchargeCode, priceListId) values (103, 'Hand Finish', 'UP', 5, 1)",
       .entries = {{103, 1, "Hand Finish"}},
       .made = {"SU 1 Dry Cleaning: 0.32", "SU 4 Dry Cleaning: 0.8", "SU 5 Dry Cleaning: 0"}},
      // Household: charges 0.60 + 1.20 and 0.25 + 0.50, the fee of 1.50 0.09 and 0.0375.
      {.what = "charges by their department: once, a piece though listed twice in a row, 2 percent above 0",
       .prepared = "insert into departmentsurcharge (departmentid, surchargeCode) values (5, 6)",
       .charges = {{10, 4}, {20, 4}, {5, 5, 3}, {10, 1}, {-4, 1}, {8, 3}}, .kinds = "SU TA",
       .made = {"SU 3 Household: 1.5", "SU 6 Alterations: 6", "SU 1 Dry Cleaning: 0.2",
                "TA 1 Household: 1.89", "TA 2 Household: 0.79", "TA 1 Dry Cleaning: 0.37",
                "TA 2 Dry Cleaning: 0.15", "TA 1 Alterations: 0.9"}},
      {.what = "a VIP discount below its first step is one, and shuts out the coupon", .customer = 14,
       .priceList = 2, .entries = {{2103}}, .offers = {{"CU", 51, 0.7}}, .kinds = "VI CU",
       .made = {"VI  Corporate Cleaning: 0"}},
      {.what = "without a step there is none",
       .prepared = "update PriceList set VIPSmartForEveryAmount = 0 where PriceListId = 2", .customer = 14,
       .priceList = 2, .entries = {{2103, 5}}, .offers = {{"CU", 51, 3.5}}, .kinds = "VI CU",
       .made = {"CU 51 Corporate Cleaning: 3.5"}},
      {.what = "nor without a garment that is open to it", .customer = 2, .entries = {{112, 2}},
       .offers = {{"CU", 3, 1.7}}, .kinds = "VI CU", .made = {"CU 3 Dry Cleaning: 1.7"}},
      {.what = "one discount an invoice removes coupons and leaves loyalty alone",
       .prepared = "update miscsetup set oneDiscountPerInvoice = 1 where storeid = 1", .customer = 2,
       .entries = {{301}}, .offers = {{"CU", 1, 5}, {"LY", 31, 5}}, .kinds = "VI CU LY",
       .made = {"VI  Laundry: 2", "LY 31 : 5"}},
      // clang-format on
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    const EmbeddedStore at = store.clone();
    const ApartmentScope scope(apartmentOn(at, clock));
    if (!each.prepared.empty()) at.connect(clock)->execute(each.prepared);
    enter(each.entries, each.customer, each.priceList);
    for (const auto& [amount, department, pieces] : each.charges) charge(amount, department, pieces);
    for (const auto& [type, id, amount] : each.offers) offer(type, id, "Offer", amount);
    finish();
    EXPECT_THAT(made(each.kinds), ::testing::UnorderedElementsAreArray(each.made));
    EXPECT_TRUE(filterIsClear());
  }
}

TEST_F(PassesTest, NoSurchargeOnAnInvoiceThatComesToNothing) {
  enter({{101}});
  charge(0.0, 4);
  finish();
  ASSERT_THAT(made("SU"), UnorderedElementsAre("SU 1 Dry Cleaning: 0.16", "SU 3 Household: 1.5"));
  EXPECT_TRUE(each("itemType='SU'")->isNull(upchargeTotal));
  EXPECT_EQ(each("itemType='SU'")->date(dueDate), invoice().createdDate);
  offer("CU", 1, "Free Pants", 8);
  invoice().invoiceDoneAgain();
  EXPECT_THAT(made(), ElementsAre("CU 1 Dry Cleaning: 8"));
  EXPECT_EQ(invoice().getInvoiceAmountToPay(), 0);
  EXPECT_THAT(goods(), ::testing::Contains("Pants 8: taxable 0, tax 0, surcharge 0.16"));
}

// Tax lines go, surcharge lines stay, and so do the sums on the garments.
TEST_F(PassesTest, OfAnInvoiceThatIsExemptFromNowOn) {
  enter({{101, 2}});
  finish();
  ASSERT_EQ(made().size(), 3u);
  invoice().excludeTaxes = invoice().excludeSurcharges = true;
  item(201);
  invoice().invoiceDoneAgain();
  EXPECT_THAT(made(), ElementsAre("SU 1 Dry Cleaning: 0.32"));
  EXPECT_THAT(goods(), ElementsAre("Pants 16: taxable 16, tax 1.36, surcharge 0.32",
                                   "Shirt on Hanger 2.5: taxable 2.5, tax 0, surcharge 0"));
}

TEST_F(PassesTest, NoStaleLineAfterTheLastTaxedGarment) {
  begin();
  const int pants = item(101);
  item(301);
  finish();
  invoice().deleteItem(pants);
  finish();
  EXPECT_THAT(made(), IsEmpty());
  // The store has no tax at all for what is left, so the sum is not written.
  setColumn("itemType='IT'", totalTax, 5);
  finish();
  EXPECT_THAT(goods(), ElementsAre("Wash and Fold Bag 20: taxable 20, tax 5, surcharge 0"));
}

}  // namespace
}  // namespace ondrel
