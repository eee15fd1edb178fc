#include "invoice/offer_fixture.h"
#include "invoice/pricing/offer_queries.h"

namespace ondrel {
namespace {

using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pointwise;

// Cleaning: two pants, 16.00, with an upcharge of 1.50; shirts: five for 12.50. Seven pieces, 30.00.
class Coupons : public OfferTest {
 protected:
  Coupons() {
    pants = add({.department = 1, .price = 16.00, .pieces = 2, .item = 101});
    addUpcharge(pants, 1.50);
    shirts = add({.department = 2, .price = 12.50, .pieces = 5, .item = 201});
  }

  int pants = 0, shirts = 0;
};

TEST_F(Coupons, Amounts) {
  struct {
    const char* name;
    std::vector<OfferRow> rows;
    double amount;  // 0 for none
  } const cases[] = {
      // clang-format off
      {"flat",                        {{.amount = 5.0}},                                                5.00},
      {"flat, larger than the rest",  {{.amount = 50.0}},                                              30.00},
      {"flat, once for all rows",     {{.amount = 5.0, .department = 1}, {.amount = 5.0, .department = 2}}, 5.00},
      {"percentage",                  {{.percent = 10.0}},                                              3.00},
      {"of a department",             {{.percent = 10.0, .department = 1}},                             1.75},
      {"of two departments",          {{.percent = 10.0, .department = 1}, {.percent = 10.0, .department = 2}}, 3.00},
      {"of all, and shirts again",    {{.percent = 10.0}, {.percent = 10.0, .department = 2}},          4.25},
      {"of an item",                  {{.percent = 10.0, .department = 2, .item = 201}},                1.25},
      {"to cents, half up",           {{.percent = 0.35, .department = 1}},                             0.06},
      {"less than a cent",            {{.percent = 0.01}},                                              0.00},
      {"capped",                      {{.percent = 20.0, .most = 4.0}},                                 4.00},
      {"capped in rows and in sum",   {{.percent = 20.0, .department = 1, .most = 3.0},
                                       {.percent = 20.0, .department = 2, .most = 3.0}},                3.00},
      {"capped at nothing",           {{.percent = 20.0, .most = 0.0}},                                 0.00},
      {"a negative cap is none",      {{.percent = 20.0, .most = -1.0}},                                6.00},
      {"per unit",                    {{.amount = 0.5, .perUnit = true}},                               3.50},
      {"per unit of departments",     {{.amount = 0.5, .department = 1, .perUnit = true},
                                       {.amount = 0.5, .department = 2, .perUnit = true}},              3.50},
      {"both: the fixed one, once",   {{.percent = 10.0, .amount = 2.0, .perUnit = true}},              2.00},
      {"neither",                     {{}},                                                             0.00},
      {"department not there",        {{.amount = 5.0, .department = 3}},                               0.00},
      {"least pieces just met",       {{.amount = 5.0, .department = 2, .leastPieces = 5}},             5.00},
      {"least pieces missed",         {{.amount = 5.0, .department = 2, .leastPieces = 6}},             0.00},
      {"least amount just met",       {{.amount = 5.0, .department = 1, .leastAmount = 17.5}},          5.00},
      {"least amount missed",         {{.amount = 5.0, .department = 1, .leastAmount = 17.51}},         0.00},
      {"both: only the pieces count", {{.amount = 5.0, .department = 1, .leastPieces = 2, .leastAmount = 99.0}}, 5.00},
      // clang-format on
  };
  for (auto [name, rows, amount] : cases) {
    SCOPED_TRACE(name);
    for (OfferRow& row : rows) row.id = 7;
    answerCoupons(rows);
    invoice->getQualifyingCoupons();
    EXPECT_EQ(invoice->addCoupon(7).toBoolean(), amount > 0);
    std::vector<std::string> expected;
    if (amount > 0) expected = {"7 : " + numberText(amount)};
    EXPECT_EQ(lines("CU"), expected);
    invoice->removeCoupon(invoice->currentLineNumber - 1);
  }
}

TEST_F(Coupons, GarmentsThatTakeNoCouponsCountForTheirItemOnly) {
  const int suit = add({.department = 1, .price = 40.00, .pieces = 2, .item = 103, .couponable = false});
  addUpcharge(suit, 4.00);
  answerCoupons({{.id = 1, .percent = 10.0},
                 {.id = 2, .percent = 10.0, .department = 1},
                 {.id = 3, .percent = 10.0, .department = 1, .item = 103}});
  invoice->getQualifyingCoupons();
  for (const int id : {1, 2, 3}) invoice->addCoupon(id);
  EXPECT_THAT(lines("CU"), ElementsAre("1 : 3", "2 : 1.75", "3 : 4"))
      << "the item row takes the suit without its upcharge";
}

TEST_F(Coupons, WhatIsAskedAndChosen) {
  answerCoupons(
      {{.id = 4, .amount = 1.0}, {.id = 7, .percent = 10.0}, {.id = 7, .percent = 10.0, .department = 2}});
  EXPECT_EQ(invoice->getDisplayCouponRst()->recordCount(), 0) << "nothing was asked yet";
  EXPECT_FALSE(invoice->addCoupon(7).toBoolean());
  invoice->getQualifyingCoupons();
  EXPECT_THAT(
      statements(),
      ElementsAre("GetProbableCoupons  '3','7',30,'16'",
                  "select count(*) as nrows from ticketlineitem  where ticketlinetype in ('PR', 'CU')  and "
                  "ticketnumber = '700' and lineitemid = '4'",
                  "select * from DiscountDepartmentRule where discountid = '4'",
                  HasSubstr("lineitemid = '7'"), HasSubstr("discountid = '7'"), HasSubstr("lineitemid = '7'"),
                  HasSubstr("discountid = '7'")));

  const RecordsetRef choices = invoice->getDisplayCouponRst();
  EXPECT_EQ(choices->recordCount(), 2) << "one row a discount";
  EXPECT_EQ(choices->text("discountName"), "Offer 4");
  EXPECT_FALSE(invoice->addCoupon(99).toBoolean());
  EXPECT_TRUE(invoice->addCoupon("7").toBoolean());
  EXPECT_THAT(log(), ElementsAre("A 1 Coupon: Offer 7 -4.25"));
  EXPECT_TRUE(filterIsClear());
}

TEST_F(Coupons, Rules) {
  const Variant none = Variant::null();
  struct {
    const char* name;
    int department;
    Variant leastPieces, leastAmount;
    int onTicket, offered;
  } const cases[] = {
      {"amount met, upcharge included", 1, none, 17.5, 0, 1},
      {"pieces missed", 2, 6, none, 0, 0},
      {"both asked, one missed", 2, 5, 20.0, 0, 0},
      {"a department the store lacks", 8, none, none, 0, 0},
      {"already on the ticket", 1, none, 99.0, 1, 1},
  };
  answerCoupons({{.id = 9, .amount = 3.0}});
  for (const auto& [name, department, pieces, amount, onTicket, offered] : cases) {
    database.answer("DiscountDepartmentRule", tableOf({"departmentid", "MinPieceCount", "MinQualAmount"},
                                                      {{department, pieces, amount}}));
    database.answer("as nrows", tableOf({"nrows"}, {{onTicket}}));
    invoice->getQualifyingCoupons();
    EXPECT_EQ(invoice->getDisplayCouponRst()->recordCount(), offered) << name;
  }
}

TEST_F(Coupons, SpreadOverDepartmentsGarmentsAndChildren) {
  struct {
    const char* name;
    std::vector<OfferRow> rows;
    std::vector<std::string> lines;
    std::vector<double> taxable;  // pants, their upcharge, shirts
  } const cases[] = {
      // clang-format off
      // 3.00 by price, 17.50 to 12.50; the pants' 1.75 as 16.00 to 1.50
      {"percentage",     {{.id = 7, .percent = 10.0}},
       {"7 Cleaning: 1.75", "7 Shirts: 1.25"}, {14.40, 1.35, 11.25}},
      {"of shirts",      {{.id = 7, .percent = 10.0, .department = 2}},
       {"7 Shirts: 1.25"}, {16.00, 1.50, 11.25}},
      // 4.25 over 17.50, 12.50 and again 12.50
      {"a garment in two rows", {{.id = 7, .percent = 10.0}, {.id = 7, .percent = 10.0, .department = 2}},
       {"7 Cleaning: 1.75", "7 Shirts: 2.5"}, {14.40, 1.35, 10.00}},
      // 3.50 by pieces, 2 to 5: the pants bear their 1.00 whole, and the upcharge its 1.50/17.50 once more
      {"per unit",       {{.id = 7, .amount = 0.5, .perUnit = true}},
       {"7 Cleaning: 1", "7 Shirts: 2.5"}, {15.00, 1.41, 10.00}},
      // 5.00 x 17.50/30 = 2.91667, of it 2.66667 and 0.25
      {"not in cents",   {{.id = 7, .amount = 5.0}},
       {"7 Cleaning: 2.9167", "7 Shirts: 2.0833"}, {13.33, 1.25, 10.42}},
      // clang-format on
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    answerCoupons(test.rows);
    invoice->getQualifyingCoupons();
    invoice->addCoupon(7);
    for (const char* pass : {"first", "second"}) {
      SCOPED_TRACE(pass);
      finish();
      EXPECT_THAT(lines("CU"), ::testing::ElementsAreArray(test.lines));
      EXPECT_THAT(taxable(), Pointwise(DoubleEq(), test.taxable));
    }
    invoice->lineItems->setFilter("itemType='CU'");
    invoice->lineItems->deleteVisibleRows();
    invoice->lineItems->clearFilter();
  }
}

TEST_F(Coupons, WhetherOthersMayFollow) {
  EXPECT_TRUE(invoice->isFirstCoupon().toBoolean());
  EXPECT_TRUE(invoice->allowFurtherDiscounts().toBoolean());
  answerCoupons({{.id = 7, .percent = 10.0}, {.id = 8, .amount = 1.0}});
  invoice->getQualifyingCoupons();
  invoice->addCoupon(7);
  invoice->addCoupon(8);
  statements();
  EXPECT_FALSE(invoice->isFirstCoupon().toBoolean());
  EXPECT_TRUE(invoice->validateCouponAdd());
  EXPECT_TRUE(invoice->allowFurtherDiscounts().toBoolean());
  EXPECT_THAT(statements(), ElementsAre("Select validWithOtherOffer From Discount Where discountId='7'",
                                        "select oneDiscountPerInvoice from miscsetup where storeid = '1'",
                                        " select validWithOtherOffer from discount where discountID = '7'",
                                        " select validWithOtherOffer from discount where discountID = '8'"));

  const RecordsetRef alone = tableOf({"validWithOtherOffer"}, {{false}});
  database.answer("discountId='8'", alone);
  database.answer("discountID = '8'", alone);
  EXPECT_TRUE(invoice->validateCouponAdd()) << "only the first is looked at";
  EXPECT_FALSE(invoice->allowFurtherDiscounts().toBoolean());
  database.failStatement(2);
  EXPECT_TRUE(invoice->allowFurtherDiscounts().toBoolean()) << "what cannot be read forbids nothing";
  EXPECT_TRUE(filterIsClear());

  database.answer("discountID = '8'", tableOf({"validWithOtherOffer"}, {{true}}));
  database.answer("oneDiscountPerInvoice", tableOf({"oneDiscountPerInvoice"}, {{true}}));
  EXPECT_FALSE(invoice->allowFurtherDiscounts().toBoolean());

  invoice->removeCoupon(4);
  EXPECT_TRUE(isEqual(invoice->lineItems->filter(), "itemType='CU' and linenumber=4")) << "it stays set";
  EXPECT_THAT(lines("CU"), ElementsAre("8 : 1"));
}

// ---------------------------------------------------------------- loyalty

// A garment of 10.00 in each of the three departments.
class Loyalty : public OfferTest {
 protected:
  Loyalty() {
    for (const int department : {1, 2, 3}) add({.department = department, .price = 10.00});
  }
  void put(std::initializer_list<int> ids) {
    invoice->getQualifyingLoyalty();
    for (const int id : ids) invoice->addLoyalty(id);
  }
};

TEST_F(Loyalty, NothingLimitsTheAmountAndTheLogTellsItAsItIs) {
  invoice->addLoyalty(31);
  EXPECT_THAT(lines("LY"), IsEmpty()) << "nothing was asked yet";
  answerLoyalty({{.id = 31, .amount = 50.0, .department = 1, .most = 40.0},
                 {.id = 31, .amount = 50.0, .department = 2, .most = 40.0}});
  put({99, 31});
  EXPECT_EQ(statements()[0], "GetProbableLoyaltyDiscounts  '16','3','3',30");
  EXPECT_THAT(lines("LY"), ElementsAre("31 : 80")) << "more than the invoice, and more than its face value";
  EXPECT_THAT(log(), ElementsAre("A 1 Loyalty: Offer 31 80"));
}

TEST_F(Loyalty, SharesAreWholeCentsAndDriftWhenSpreadAgain) {
  answerLoyalty({{.id = 31, .amount = 10.0}});
  put({31});
  finish();
  EXPECT_THAT(lines("LY"), ElementsAre("31 Cleaning: 3.33", "31 Shirts: 3.33", "31 Laundry: 3.33"));
  EXPECT_THAT(taxable(), Pointwise(DoubleEq(), {6.67, 6.67, 6.67}));

  // Only the first line is collected: 3.33 in thirds on top of the lines that stand.
  finish();
  EXPECT_THAT(lines("LY"), ElementsAre("31 Shirts: 4.44", "31 Laundry: 4.44", "31 Cleaning: 1.11"));
  EXPECT_THAT(taxable(), Pointwise(DoubleEq(), {8.89, 8.89, 8.89}));
}

TEST_F(Loyalty, TheFirstRowAfterASpreadOfferIsPassedOver) {
  answerLoyalty({{.id = 31, .amount = 3.0},
                 {.id = 32, .percent = 10.0, .department = 1},
                 {.id = 32, .percent = 10.0, .department = 2},
                 {.id = 33, .amount = 1.0}});
  put({31, 32, 33});
  finish();
  // 32 goes to the department of its second row alone; 33, which has but one row, is lost.
  EXPECT_THAT(lines("LY"), ElementsAre("31 Cleaning: 1", "31 Shirts: 1", "31 Laundry: 1", "32 Shirts: 2"));
  EXPECT_THAT(taxable(), Pointwise(DoubleEq(), {9.00, 7.00, 9.00}));
}

TEST(OfferQueries, TextsAsSent) {
  OfferQuestion question{.priceListId = 3, .count = 7, .total = 30.5, .ids = "7,8", .customer = "16"};
  const std::string coupons =
      "SELECT D.discountID, D.discountSubType, D.discountName, D.effectiveDate,  D.expiryDate, "
      "D.minPieceCount, D.maxPieceCount, D.minQualAmount,  D.maxQualAmount, D.discountPercent, "
      "D.discountAmount, D.maxDiscountAmount,  D.dueDays, D.validWithOtherOffer, DD.departmentID, "
      "D.appliesPerUnit,  DD.minPieceCount AS 'departmentMinPieceCount',  DD.minQualAmount AS "
      "'departmentMinQualAmount' ,  CASE WHEN DD.priceListItemID <= 0 THEN NULL  Else DD.priceListItemId  "
      "END as 'priceListItemID'  FROM Discount D LEFT OUTER JOIN DiscountDepartment DD ON D.discountID = "
      "DD.discountID  WHERE D.discountID IN(7,8) AND (D.active = 1 AND D.priceListID =3 AND D.discountType = "
      "'CU'   AND ( datediff(day, D.effectiveDate, GetDate()) >= 0 OR D.effectiveDate IS NULL )  AND ( "
      "datediff(day, D.expiryDate, GetDate()) <= 0 OR D.expiryDate IS NULL )  AND ( D.minPieceCount <=7 OR "
      "D.minPieceCount IS NULL )  AND ( D.maxPieceCount >=7 OR D.maxPieceCount IS NULL )  AND ( "
      "D.minQualAmount <=30.5 OR D.minQualAmount IS NULL )  AND ( D.maxQualAmount >=30.5 OR D.maxQualAmount "
      "IS NULL ))  AND ( D.noOfUses IS NULL OR dbo.getCustomerCouponUses(16, D.discountID) < D.noOfUses )  "
      "Order By D.discountID, DD.departmentID, DD.priceListItemId ";
  EXPECT_EQ(getCouponQuery(question), coupons);
  EXPECT_EQ(getCouponPassQuery(question), replaceAll(coupons, ") AND (D.active", ") OR (D.active"));
  EXPECT_EQ(
      getLoyaltyQuery(question),
      "SELECT D.discountID, D.discountSubType, D.discountName, D.effectiveDate,  D.expiryDate, "
      "D.minPieceCount, D.maxPieceCount, D.minQualAmount,  D.maxQualAmount, D.discountPercent, "
      "D.discountAmount, D.maxDiscountAmount,  D.dueDays, D.validWithOtherOffer, DD.departmentID,  "
      "DD.minPieceCount AS 'departmentMinPieceCount',  DD.minQualAmount AS 'departmentMinQualAmount' ,  CASE "
      "WHEN DD.priceListItemID <= 0 THEN NULL  Else DD.priceListItemId  END as 'priceListItemID'  FROM "
      "Discount D  LEFT OUTER JOIN DiscountDepartment DD ON D.discountID = DD.discountID  WHERE "
      "D.priceListID =3 AND D.discountType = 'LY' AND  (datediff(day, D.effectiveDate, GetDate()) >= 0 OR "
      "D.effectiveDate IS NULL )  AND ( datediff(day, D.expiryDate, GetDate()) <= 0 OR D.expiryDate IS NULL "
      ")  AND ( D.minPieceCount <=7 OR D.minPieceCount IS NULL )  AND ( D.maxPieceCount >=7 OR "
      "D.maxPieceCount IS NULL )  AND ( D.minQualAmount <=30.5 OR D.minQualAmount IS NULL )  AND ( "
      "D.maxQualAmount >=30.5 OR D.maxQualAmount IS NULL )  AND D.discountID IN(7,8)  Order By D.discountID, "
      "DD.departmentID, DD.priceListItemId ");
  question.customer.clear();
  EXPECT_THAT(getCouponQuery(question), HasSubstr("D.maxQualAmount IS NULL ))  Order By D.discountID"));
}

}  // namespace
}  // namespace ondrel
