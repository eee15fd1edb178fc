#include "pricing_story.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using enum LineColumn;

class TaxesTest : public PricingTest {};

// | line                | taxable | State 6 %   | City 2.5 % | surcharge            |
// |---------------------|---------|-------------|------------|----------------------|
// | 2 pants             |   16.00 | 0.96        | 0.40       | 2 % 0.32             |
// | dress               |   14.00 | 0.84        | 0.35       | 2 % of 14 - 2: 0.24  |
// | its small size      |   -2.00 | -0.12       | -0.05      |                      |
// | 3 shirts            |    7.50 | 0.45        |            | 0.10 a piece: 0.30   |
// | alterations charge  |   10.00 | 0.60        |            | 2.00 a piece         |
// | environmental fee   |    0.56 | 0.0336      |            |                      |
TEST_F(TaxesTest, FourSourcesMergePerCodeAndDepartment) {
  begin();
  item(101, 2);
  upcharge(item(106), "Small Size");
  item(201, 3);
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

TEST_F(TaxesTest, ATaxLineHasTheValuesOfAGeneratedLine) {
  begin();
  item(204);
  finish();
  const RecordsetRef line = each("itemType='TA'");
  ASSERT_EQ(line->recordCount(), 1);
  EXPECT_EQ(line->integer(lineNumber), invoice().currentLineNumber - 1);
  EXPECT_EQ(line->integer(originalLineNumber), invoice().currentLineNumber - 1);
  EXPECT_EQ(line->integer(parentLineNumber), -1);
  EXPECT_EQ(line->integer(deptId), 2);
  EXPECT_EQ(line->text(itemName), "State Sales Tax");
  EXPECT_EQ(line->integer(quantity), 1);
  using Columns = std::vector<LineColumn>;
  for (const Column zero : Columns{originalUnitPrice, unitPrice, totalTax, totalSurcharge, LineColumn::prepay,
                                   taxableAmt, balance})
    EXPECT_EQ(line->number(zero), 0) << line->fieldName(zero);
  for (const Column none : Columns{notes, upchargeTotal, dueDate})
    EXPECT_TRUE(line->isNull(none)) << line->fieldName(none);
}

// 0.255 twice: the sum rounds to 0.51, the lines would round to 0.26 each.
TEST_F(TaxesTest, IsRoundedOnceOnTheSumOfADepartment) {
  begin();
  item(112);
  item(112);
  finish();
  EXPECT_THAT(made("TA"), ElementsAre("TA 1 Dry Cleaning: 0.51", "TA 2 Dry Cleaning: 0.21"));
}

// A charge's tax is rounded by itself: 4.25 at 6 % twice is 0.26 and 0.26.
TEST_F(TaxesTest, ChargesAreRoundedEachAndTaxedWithoutGarments) {
  begin();
  invoice().excludeSurcharges = true;
  charge(4.26, 2);
  charge(4.26, 2);
  charge(5, 3);
  finish();
  EXPECT_THAT(made("TA"), ElementsAre("TA 1 Shirts: 0.52"));
  EXPECT_THAT(goods(), ElementsAre("Extra 4.26: taxable 4.26, tax 0.26, surcharge 0",
                                   "Extra 4.26: taxable 4.26, tax 0.26, surcharge 0",
                                   "Extra 5: taxable 5, tax 0, surcharge 0"));
}

// Three charges of dry cleaning of 10.00, -25.00 and 20.00: the first amount makes the line, the second
// brings it below 0 and away, the third starts a new one.
TEST_F(TaxesTest, ALineThatFallsToNothingGoesAway) {
  begin();
  invoice().excludeSurcharges = true;
  charge(10, 2);
  charge(-25, 2);
  finish();
  EXPECT_THAT(made("TA"), IsEmpty());
  charge(20, 2);
  finish();
  EXPECT_THAT(made("TA"), ElementsAre("TA 1 Shirts: 1.2"));

  begin();
  charge(-25, 2);
  finish();
  EXPECT_THAT(made("TA"), ElementsAre("TA 1 Shirts: -1.5"));
}

TEST_F(TaxesTest, AnExemptInvoiceLosesItsTaxLinesAndKeepsTheSums) {
  begin();
  item(101, 2);
  finish();
  ASSERT_EQ(made("TA").size(), 2u);
  invoice().excludeTaxes = true;
  invoice().invoiceDoneAgain();
  EXPECT_THAT(made("TA"), IsEmpty());
  EXPECT_THAT(goods(), ElementsAre("Pants 16: taxable 16, tax 1.36, surcharge 0.32"));
}

TEST_F(TaxesTest, NoStaleLineAfterTheLastTaxedGarment) {
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

// Every store's rows for an item count; codes and names match without regard to case.
TEST_F(TaxesTest, RatesOfOtherStoresCountAndCaseDoesNot) {
  execute("insert into ItemTax (priceListItemID, taxCode, storeID) values (301, 21, 2)");
  execute(
      "insert into ItemDescriptorTax (priceListItemID, descriptorName, descriptorType, taxCode, storeID) "
      "values (103, 'LINING', 'up', 1, 1)");
  begin();
  item(301);
  upcharge(item(103), "Lining");
  finish();
  // Lining 5.00 at 6 percent; the suit 16.00 at 6 and 2.5; the fee of 0.32 at 6.
  EXPECT_THAT(made("TA"), UnorderedElementsAre("TA 21 Laundry: 1.2", "TA 1 Dry Cleaning: 1.28",
                                               "TA 2 Dry Cleaning: 0.4"));
}

}  // namespace
}  // namespace ondrel
