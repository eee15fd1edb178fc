#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum LineColumn;

// Sample store: 101 Pants 8.00 with Stain Treatment 3.00, Hand Finish 5.00, Minor Repair 1.50 (one cleaning only);
// 111 Raincoat with Seam Tape disabled; 106 Dress with White 1.50, Ivory 1.50 (disabled), pattern Sequined 6.00;
// as plain descriptors Ink 1.50 and all brands free.

class Descriptors : public InvoiceTest {};

TEST_F(Descriptors, UpchargesMergeOrStandAlone) {
  garment(101, 3);
  log();
  upcharge(1, "Stain Treatment", 1);
  upcharge(1, "Stain Treatment", 2);
  upcharge(1, "Stain Treatment", 1, false);
  EXPECT_THAT(lines(), ElementsAre("1 IT Pants 3 x 8 = 24", "2<1 UP Stain Treatment 3 x 3 = 9",
                                   "3<1 UP Stain Treatment 1 x 3 = 3"));
  EXPECT_EQ(text(1, upchargeTotal) + " " + text(2, taxableAmt), "12 9");
  EXPECT_EQ(text(2, balance), "3") << "a merge leaves the balance alone";
  EXPECT_THAT(log(), ElementsAre("A 1 Dry Cleaning: Stain Treatment 3", "A 2 Dry Cleaning: Stain Treatment 6",
                                 "A 1 Dry Cleaning: Stain Treatment 3"));
  EXPECT_EQ(text(2, parentId) + text(2, lineItemId), "101");
  EXPECT_TRUE(cell(2, dueDate).isNull()) << "so its days do not move the invoice";
  EXPECT_TRUE(filterIsClear());
}

TEST_F(Descriptors, AnUpchargeHangsOnTheGarmentWhicheverLineIsNamed) {
  garment(101);
  upcharge(1, "Stain Treatment");
  invoice.addDescriptor(2, "Navy", "CO", 1);  // a colour of the upcharge
  upcharge(3, "Minor Repair");
  EXPECT_THAT(lines(), ElementsAre("1 IT Pants 1 x 8 = 8", "2<1 UP Stain Treatment 1 x 3 = 3",
                                   "3<2 CO Navy 1 x 0 = 0", "4<1 UP Minor Repair 1 x 1.5 = 1.5"));
  EXPECT_EQ(text(1, upchargeTotal), "4.5");
  EXPECT_EQ(text(4, oneShot) + text(4, couponable), "TrueTrue");
}

TEST_F(Descriptors, WhatAddsNone) {
  garment(111);
  upcharge(1, "Seam Tape");
  upcharge(1, "Velvet Rope");
  upcharge(9, "Waterproofing");
  invoice.addUpcharge2(9, "Waterproofing", 1);
  invoice.addDescriptor(5, "Ink", "ST", 1);
  statements();
  invoice.addDescriptor("", "Ink", "ST", 1);
  EXPECT_THAT(statements(), IsEmpty());
  EXPECT_THAT(lines(), ElementsAre("1 IT Raincoat 1 x 17 = 17"));
}

TEST_F(Descriptors, ANegativeQuantityMeansOnceOnly) {
  garment(101);
  upcharge(1, "Stain Treatment", -1);
  statements();
  upcharge(1, "stain treatment", -1);
  EXPECT_THAT(
      reads(),
      ElementsAre("update ItemDescriptorPrice set usecounter = usecounter + 1 where priceListItemId=101 "
                  "And descriptorName='stain treatment' And descriptorType='UP'"))
      << "the use is counted, and nothing else happens";
  EXPECT_THAT(lines(), ElementsAre("1 IT Pants 1 x 8 = 8", "2<1 UP Stain Treatment 1 x 3 = 3"));
}

TEST_F(Descriptors, PerPieceAndForAWholeDepartment) {
  garment(101, 3);
  garment(102, 2);
  garment(301);
  invoice.addUpcharge2(1, "Stain Treatment", 1);
  invoice.addUpchargeToAllItems(1, "Minor Repair", "  ", true);
  invoice.addRedoItem(101, 1);
  upcharge(7, "Stain Treatment", 2);
  EXPECT_THAT(lines(), ElementsAre("1 IT Pants 3 x 8 = 24", "2 IT Jacket 2 x 9 = 18",
                                   "3 IT Wash and Fold Bag 1 x 20 = 20", "4<1 UP Stain Treatment 3 x 3 = 9",
                                   "5<1 UP Minor Repair 3 x 1.5 = 4.5", "6<2 UP Minor Repair 2 x 1.5 = 3",
                                   "7 IT Pants 1 x 0 = 0", "8<7 UP Stain Treatment 2 x 0 = 0"));
}

TEST_F(Descriptors, ColoursAndPatternsLogOnlyANewLineAndKeepTheirOwnSums) {
  garment(106, 2);
  log();
  color(1, "White");
  color(1, "White");
  color(1, "Ivory");
  invoice.addPattern(1, "Sequined", 1, false, 1.0, 0.01);
  EXPECT_THAT(lines(), ElementsAre("1 IT Dress 2 x 14 = 28", "2<1 CO White 2 x 1.5 = 3",
                                   "3<1 CO Ivory 1 x 1.5 = 1.5", "4<1 PA Sequined 1 x 6 = 6"));
  EXPECT_EQ(text(1, colorTotal) + " " + text(1, patternTotal) + " " + text(1, upchargeTotal), "4.5 6 0");
  EXPECT_THAT(log(), ElementsAre("A 1 Dry Cleaning: White 1.5", "A 1 Dry Cleaning: Ivory 1.5",
                                 "A 1 Dry Cleaning: Sequined 6"));
  EXPECT_TRUE(cell(2, couponable).isNull());
}

TEST_F(Descriptors, WhatIsSentForAnUpcharge) {
  garment(106);
  statements();
  upcharge(1, "O'Neck");
  EXPECT_THAT(reads()[1],
              "Select descriptorName, price, IsNull(daysToProcess,0) as daysToProcess,  notes, discountable, "
              "vipdiscountable, couponable, prepayDiscount, oneShot From  ItemDescriptorPrice where "
              "priceListItemId='106' And descriptorName='O''Neck' And disabled = 0 And descriptorType='UP'");
}

TEST_F(Descriptors, PlainDescriptorsCountByPieceAndGoToTheUpchargeSum) {
  garment(101, 2);
  log();
  statements();
  invoice.addDescriptor(1, "Ink", "ST", 1);
  EXPECT_THAT(
      reads()[0],
      " update descriptor set descriptor.usagecounter = descriptor.usagecounter + 1  from descriptor  inner join "
      "descriptorgroup on descriptor.descriptorgroupid = descriptorgroup.descriptorgroupid  where "
      "descriptorgroup.type = 'ST' and descriptor.name = 'Ink'");
  invoice.addDescriptor(1, "O'Marren", "BR", 1);
  invoice.addDescriptor(1, "Nobody's", "BR", 1);
  invoice.addDescriptor(1, "Stain Treatment", "UP", 1);
  EXPECT_THAT(lines(),
              ElementsAre("1 IT Pants 2 x 8 = 16", "2<1 ST Ink 2 x 1.5 = 3", "3<1 BR O'Marren 2 x 0 = 0",
                          "4<1 BR Nobody's 2 x 0 = 0", "5<1 UP Stain Treatment 4 x 3 = 12"))
      << "an upcharge as a descriptor takes the quantity twice";
  EXPECT_EQ(text(1, upchargeTotal), "15");
  EXPECT_THAT(log(), ElementsAre("A 4 Dry Cleaning: Stain Treatment 12"));
  EXPECT_EQ(scalar("select sum(usagecounter) from descriptor").toLong(), 2);
}

TEST_F(Descriptors, RemovingTakesTheFirstAmountOffTheUpchargeSum) {
  garment(106);
  color(1, "White", 1, false);
  color(1, "White", 1, false);
  upcharge(1, "Stain Treatment");
  log();
  invoice.removeDescriptor(1, "white", "co");
  invoice.removeDescriptor(1, "Plaid", "PA");
  EXPECT_THAT(lines(), ElementsAre("1 IT Dress 1 x 14 = 14", "4<1 UP Stain Treatment 1 x 3 = 3"));
  EXPECT_EQ(text(1, upchargeTotal), "1.5") << "3.00 less the 1.50 of one colour";
  EXPECT_EQ(text(1, colorTotal), "3") << "the colours' own sum stands";
  EXPECT_THAT(log(), IsEmpty());
  EXPECT_TRUE(filterIsClear());
}

}  // namespace
}  // namespace ondrel
