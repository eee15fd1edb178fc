#include "pricing_story.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using enum LineColumn;

class SurchargesTest : public PricingTest {
 protected:
  void addItemSurcharge(int item, int code) {
    execute(fmt::format(
        "insert into ItemSurcharge (priceListItemID, surchargeCode, priceListId) values ({}, {}, 1)", item,
        code));
  }
};

TEST_F(SurchargesTest, ALineIsTaxableWithItsAmountAndDatedAsTheInvoice) {
  begin();
  item(101, 2);
  finish();
  const RecordsetRef line = each("itemType='SU'");
  ASSERT_EQ(line->recordCount(), 1);
  EXPECT_EQ(line->text(itemName), "Environmental Fee");
  EXPECT_DOUBLE_EQ(line->number(lineItemTotal), 0.32);
  EXPECT_DOUBLE_EQ(line->number(taxableAmt), 0.32);
  EXPECT_EQ(line->number(totalTax), 0);
  EXPECT_EQ(line->date(dueDate), invoice().createdDate);
  EXPECT_TRUE(line->isNull(upchargeTotal));
}

// 10.00 at 10 percent with an upcharge of 2.00 either way.
TEST_F(SurchargesTest, ANegativeUpchargeLowersTheBaseAPositiveDoesNotRaiseIt) {
  execute("update Surcharge set surchargePercent = 10 where surchargeCode = 1");
  struct {
    Variant upcharges;
    const char* surcharge;
  } const cases[] = {
      {-2, "SU 1 Dry Cleaning: 0.8"}, {2, "SU 1 Dry Cleaning: 1"}, {Variant::null(), "SU 1 Dry Cleaning: 1"}};
  for (const auto& [upcharges, surcharge] : cases) {
    begin();
    const int line = item(101);
    invoice().overRidePrice(10, line);
    setColumn("itemType='IT'", upchargeTotal, upcharges);
    invoice().calculateSurcharges();
    EXPECT_THAT(made("SU"), ElementsAre(surcharge));
  }
}

// | surcharge          | lines                                              | charged               |
// |--------------------|----------------------------------------------------|-----------------------|
// | 0.10 a piece       | 2 and 3 shirts; a suit of two pieces, twice        | 0.50; 0.40            |
// | 1.50 once          | comforter and bedspread; a bag of another department | 1.50 each department |
TEST_F(SurchargesTest, FixedAmountsPerPieceAndOncePerDepartment) {
  addItemSurcharge(103, 2);
  addItemSurcharge(301, 3);
  execute("delete from ItemSurcharge where surchargeCode = 1");
  begin();
  item(201, 2);
  item(202, 3);
  item(103, 2);
  item(401);
  item(403, 2);
  item(301);
  finish();
  EXPECT_THAT(made("SU"), UnorderedElementsAre("SU 2 Shirts: 0.5", "SU 2 Dry Cleaning: 0.4",
                                               "SU 3 Household: 1.5", "SU 3 Laundry: 1.5"));
  // The garments keep what they would be charged alone.
  EXPECT_THAT(goods(), ::testing::Contains("Bedspread 56: taxable 56, tax 4.76, surcharge 1.5"));
}

// Hand Finish on a suit takes 10 percent of its 8.00. Delicate Care on beads is a fixed amount, which a
// descriptor does not charge; it is booked as 0 only where the line already has something.
TEST_F(SurchargesTest, ADescriptorIsChargedByPercentageOnly) {
  begin();
  upcharge(item(103), "Hand Finish");
  upcharge(item(106), "Beads");
  finish();
  EXPECT_THAT(made("SU"), UnorderedElementsAre("SU 1 Dry Cleaning: 0.6", "SU 4 Dry Cleaning: 0.8"));

  execute(
      "insert into ItemDescriptorSurcharge (priceListItemID, descriptorName, descriptorType, surchargeCode, "
      "priceListId) values (103, 'Hand Finish', 'UP', 5, 1)");
  finish();
  EXPECT_THAT(made("SU"), UnorderedElementsAre("SU 1 Dry Cleaning: 0.6", "SU 4 Dry Cleaning: 0.8",
                                               "SU 5 Dry Cleaning: 0"));
}

// Two charges of household carry the fee of 1.50 once; alterations 2.00 a piece; cleaning 2 percent.
TEST_F(SurchargesTest, ChargesGoByTheirDepartment) {
  begin();
  charge(10, 4);
  charge(20, 4);
  charge(5, 5, 3);
  charge(10, 1);
  charge(-4, 1);
  charge(8, 3);
  finish();
  EXPECT_THAT(made("SU"),
              UnorderedElementsAre("SU 3 Household: 1.5", "SU 6 Alterations: 6", "SU 1 Dry Cleaning: 0.2"));
  // Household: charges 0.60 + 1.20 and 0.25 + 0.50, the fee 0.09 and 0.0375.
  EXPECT_THAT(made("TA"), ::testing::IsSupersetOf({"TA 1 Household: 1.89", "TA 2 Household: 0.79"}));
}

TEST_F(SurchargesTest, ACodeListedTwiceInARowIsChargedOnceOnACharge) {
  execute("insert into departmentsurcharge (departmentid, surchargeCode) values (5, 6)");
  begin();
  charge(5, 5);
  finish();
  EXPECT_THAT(made("SU"), ElementsAre("SU 6 Alterations: 2"));
}

TEST_F(SurchargesTest, NoneOnAnInvoiceThatComesToNothing) {
  begin();
  item(101);
  charge(0.0, 4);
  finish();
  ASSERT_THAT(made("SU"), UnorderedElementsAre("SU 1 Dry Cleaning: 0.16", "SU 3 Household: 1.5"));
  offer("CU", 1, "Free Pants", 8);
  invoice().invoiceDoneAgain();
  EXPECT_THAT(made(), ElementsAre("CU 1 Dry Cleaning: 8"));
  EXPECT_EQ(invoice().getInvoiceAmountToPay(), 0);
  EXPECT_THAT(goods(), ::testing::Contains("Pants 8: taxable 0, tax 0, surcharge 0.16"));
}

TEST_F(SurchargesTest, AnExemptInvoiceKeepsTheLinesThatItHas) {
  begin();
  item(101);
  finish();
  ASSERT_EQ(made("SU").size(), 1u);
  invoice().excludeSurcharges = true;
  item(201);
  finish();
  EXPECT_THAT(made("SU"), ElementsAre("SU 1 Dry Cleaning: 0.16"));
}

TEST_F(SurchargesTest, ARowOfEachPriceListIsCharged) {
  execute("insert into ItemSurcharge (priceListItemID, surchargeCode, priceListId) values (101, 1, 2)");
  begin();
  item(101);
  finish();
  EXPECT_THAT(made("SU"), ElementsAre("SU 1 Dry Cleaning: 0.24"));
}

}  // namespace
}  // namespace ondrel
