#include "invoice/pricing_story.h"

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
      {.what = "beside a VIP discount only the coupon that suffers it", .customer = 2, .entries = {{301, 2}},
       .offers = {{"CU", 2, 2}, {"CU", 1, 5}}, .kinds = "VI CU", .made = {"VI  Laundry: 4", "CU 1 Laundry: 5"}},
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
    for (const char* pass : {"first", "again"}) {
      EXPECT_THAT(made(each.kinds), ::testing::UnorderedElementsAreArray(each.made)) << pass;
      EXPECT_TRUE(filterIsClear());
      invoice().invoiceDoneAgain();
    }
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

// ---------------------------------------------------------------- VIP discounts

class VipTest : public PricingTest {};

TEST_F(VipTest, WhoQualifies) {
  struct {
    const char* who;
    int customer, priceList;
    bool qualified;
  } const cases[] = {
      {"125.50 in the window", 2, 1, true},
      {"exactly the least spending", 3, 1, false},
      {"an expired date does not count", 4, 1, true},
      {"not marked", 1, 1, false},
      {"260.00 in the year", 14, 2, true},
      {"nobody has spent nothing", 999, 1, false},
      {"a list without the rule", 2, 3, false},
      {"an unknown list", 2, 77, false},
  };
  for (const auto& [who, customer, priceList, qualified] : cases)
    EXPECT_EQ(begin(customer, priceList).isVIPQualified().toBoolean(), qualified) << who;

  begin(4).isVIPQualified();
  EXPECT_EQ(invoice().vipExpiryDate, Date::of(2026, 5, 31));
  EXPECT_TRUE(invoice().isVipValidWithOtherOffer().toBoolean());
  EXPECT_FALSE(begin(14, 2).isVipValidWithOtherOffer().toBoolean());
  EXPECT_FALSE(Invoice().isVipValidWithOtherOffer().toBoolean());
}

// Straight 10 percent beside a coupon of 5.00. The coupon is spread over all 35.25, the VIP discount over what
// is open to it.
//
// | line            | amount | VIP  | own  | taxable | coupon share   | own      | taxable | 2 %    | State  | City    |
// |-----------------|--------|------|------|---------|----------------|----------|---------|--------|--------|---------|
// | bag             |  20.00 | 2.00 | 2.00 |   18.00 | 2.836879       | 2.836879 |   15.16 |        |        |         |
// | pants           |   8.00 | 1.10 | 0.80 |    7.20 | 1.560284 of 11 | 1.134752 |    6.07 | 0.1214 | 0.3642 | 0.15175 |
// | stain treatment |   3.00 |      | 0.30 |    2.70 |                | 0.425532 |    2.27 |        | 0.1362 | 0.05675 |
// | necktie         |   4.25 |      |      |    4.25 | 0.602837       | 0.602837 |    3.65 |        | 0.2190 | 0.09125 |
// | fee             |   0.12 |      |      |         |                |          |    0.12 |        | 0.0072 |         |
TEST_F(VipTest, StraightBesideACoupon) {
  enter({{301}, {101, 1, "Stain Treatment"}, {112}}, 2);
  offer("CU", 1, "5 Off 25", 5);
  finish();
  EXPECT_THAT(goods(), ElementsAre("Wash and Fold Bag 20: taxable 15.16, tax 0, surcharge 0",
                                   "Pants 8: taxable 6.07, tax 0.516, surcharge 0.1214",
                                   "Stain Treatment 3: taxable 2.27, tax 0.193, surcharge 0",
                                   "Necktie 4.25: taxable 3.65, tax 0.3103, surcharge 0"));
  EXPECT_THAT(made(), UnorderedElementsAre("VI  Laundry: 2", "VI  Dry Cleaning: 1.1", "CU 1 Laundry: 2.8369",
                                           "CU 1 Dry Cleaning: 2.1631", "SU 1 Dry Cleaning: 0.12",
                                           "TA 1 Dry Cleaning: 0.73", "TA 2 Dry Cleaning: 0.3"));
  EXPECT_DOUBLE_EQ(invoice().getInvoiceAmountToPay(), 28.30);
}

// Smart: 5.00 for every 50.00 of 149.00 is 10.00. The list does not let it stand beside others, so the coupon goes.
//
// | line        | price | share | taxable | 1 %   | State  |
// |-------------|-------|-------|---------|-------|--------|
// | 5 suits     | 70.00 |  4.70 |   65.30 | 0.653 | 3.918  |
// | 3 overcoats | 45.00 |  3.02 |   41.98 |       | 2.5188 |
// | 4 coveralls | 24.00 |  1.61 |   22.39 |       |        |
// | 2 sets      | 10.00 |  0.67 |    9.33 |       |        |
TEST_F(VipTest, SmartSharesByPriceAndRemovesCoupons) {
  enter({{2103, 5}, {2106, 3}, {2204, 4}, {2203, 2}}, 14, 2);
  offer("CU", 51, "Corporate 5 Percent", 7.45);
  finish();
  EXPECT_THAT(goods(), ElementsAre("Suit 2-Piece 70: taxable 65.3, tax 3.918, surcharge 0.653",
                                   "Overcoat 45: taxable 41.98, tax 2.5188, surcharge 0",
                                   "Coverall 24: taxable 22.39, tax 0, surcharge 0",
                                   "Uniform Set 10: taxable 9.33, tax 0, surcharge 0"));
  EXPECT_THAT(made(), UnorderedElementsAre("VI  Corporate Cleaning: 7.72", "VI  Uniforms: 2.28",
                                           "SU 1 Corporate Cleaning: 0.65", "TA 1 Corporate Cleaning: 6.44"));
  EXPECT_DOUBLE_EQ(invoice().getInvoiceAmountToPay(), 146.09);
  invoice().ticketLogItems->moveLast();
  EXPECT_EQ(invoice().ticketLogItems->text(LogColumn::itemLogType), "D");
  EXPECT_EQ(invoice().ticketLogItems->text(LogColumn::itemName), "Corporate 5 Percent");
  EXPECT_EQ(invoice().ticketLogItems->number(LogColumn::amount), -7.45);
}

// ---------------------------------------------------------------- prepay

class PrepayTest : public PricingTest {};

// | line            | prepay a unit | discount | State                                  | City          |
// |-----------------|---------------|----------|----------------------------------------|---------------|
// | 3 pants 24.00   | 0.50          | 1.50     | 1.44, fee of 0.48: 0.0288, off -0.09   | 0.60 - 0.04   |
// | 3 shirts 7.50   | 0.25          | 0.75     | 0.45, off -0.045 to -0.04              |               |
TEST_F(PrepayTest, ANegativeChargeADepartmentLowersTheTaxes) {
  enter({{101, 3}, {201, 3}});
  finish();
  const auto without = made();
  EXPECT_THAT(made("TA"),
              UnorderedElementsAre("TA 1 Dry Cleaning: 1.47", "TA 2 Dry Cleaning: 0.6", "TA 1 Shirts: 0.45"));
  EXPECT_EQ(invoice().getPrepayDiscount().toDouble(), 2.25);

  prepay(true);
  EXPECT_TRUE(invoice().isPrepayEnabled().toBoolean());
  EXPECT_THAT(goods(), UnorderedElementsAre("Pants 24: taxable 24, tax 2.04, surcharge 0.48",
                                            "Shirt on Hanger 7.5: taxable 7.5, tax 0.45, surcharge 0.3",
                                            "Prepay Discount -1.5: taxable -1.5, tax -0.13, surcharge 0",
                                            "Prepay Discount -0.75: taxable -0.75, tax -0.04, surcharge 0"));
  EXPECT_THAT(made("TA"), UnorderedElementsAre("TA 1 Dry Cleaning: 1.38", "TA 2 Dry Cleaning: 0.56",
                                               "TA 1 Shirts: 0.41"));
  prepay(false);
  EXPECT_EQ(made(), without);
  EXPECT_THAT(goods(), ::testing::SizeIs(2));
}

// To be prepaid: tuxedos 25 % of 22.00, two of these; other items ask for none.
TEST_F(PrepayTest, GarmentsAndUpchargesEarnRedosAndColorsDoNot) {
  begin();
  const int suit = item(103, 2);
  upcharge(suit, "Hand Finish");
  color(suit, "White");
  setColumn("itemType='CO'", LineColumn::prepay, 5);
  EXPECT_EQ(invoice().getPrepayDiscount().toDouble(), 4);
  Variant cleaning = 1, shirts = 2;
  EXPECT_EQ(invoice().getDepartmentPrepayDiscount(cleaning).toDouble(), 4);
  EXPECT_EQ(invoice().getDepartmentPrepayDiscount(shirts).toDouble(), 0);
  invoice().addRedoItem(102, 1);
  EXPECT_EQ(invoice().getPrepayDiscount().toDouble(), 4);
  item(114, 2);
  setColumn("lineItemId=103", minimumPrepay, Variant::null());
  EXPECT_DOUBLE_EQ(invoice().getMinimumPrepay().toDouble(), 11);
  EXPECT_TRUE(filterIsClear());
}

// The figure of the invoice asks whether the offers on it stand beside others, that of a department does not;
// the lines ask both.
TEST_F(PrepayTest, OffersThatShutOutThePrepayDiscount) {
  struct {
    const char* what;
    bool oneDiscount;
    int coupon;
    double invoice, department;
  } const cases[] = {{"no coupon", true, 0, 1, 1},
                     {"a coupon beside others", false, 3, 1, 1},
                     {"a coupon alone", false, 2, 0, 1},
                     {"one discount only", true, 3, 0, 0}};
  for (const auto& [what, oneDiscount, coupon, ofInvoice, ofDepartment] : cases) {
    execute(fmt::format("update miscsetup set oneDiscountPerInvoice = {:d} where storeid = 1", oneDiscount));
    enter({{101, 2}});
    if (coupon > 0) offer("CU", coupon, "Coupon", 1);
    Variant cleaning = 1;
    EXPECT_EQ(invoice().getPrepayDiscount().toDouble(), ofInvoice) << what;
    EXPECT_EQ(invoice().getDepartmentPrepayDiscount(cleaning).toDouble(), ofDepartment) << what;
    prepay(true);
    EXPECT_EQ(each("itemName='Prepay Discount'")->recordCount(), ofInvoice > 0 ? 1 : 0) << what;
  }
}

}  // namespace
}  // namespace ondrel
