#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum LineColumn;

// Sample store: 201 Shirt on Hanger 2.50 (department 2), 101 Pants 8.00, 103 Suit 2-Piece 16.00 in two pieces,
// 114 Tuxedo 22.00 with 25 % to be prepaid, 107 Evening Gown with a fixed note (all department 1).

class Items : public UntaxedInvoiceTest {
 protected:
  Variant add(int item, const Variant& merging, const Variant& pieces) {
    return invoice.addItem(item, merging, pieces, 1.0, 0.01);
  }
  void addBag(int department, int pieces) {
    invoice.lineItems->addNew({{lineNumber, invoice.currentLineNumber++},
                               {parentLineNumber, -1},
                               {deptId, department},
                               {deptName, "Shirts"},
                               {itemType, "DE"},
                               {itemName, "Shirts"},
                               {quantity, pieces},
                               {notes, "by the bag"},
                               {dueDate, Date::of(2026, 12, 4)}});
  }
};

TEST_F(Items, ALineAPieceHoweverItIsAskedFor) {
  EXPECT_EQ(add(201, -1, 3).toLong(), 1);
  EXPECT_EQ(add(201, true, 1).toLong(), 4);
  EXPECT_EQ(add(201, "-1", "1").toLong(), 5);
  EXPECT_EQ(add(201, -1, 0).toLong(), 6) << "nothing is added";
  EXPECT_THAT(lines(), ElementsAre("1 IT Shirt on Hanger 1 x 2.5 = 2.5", "2 IT Shirt on Hanger 1 x 2.5 = 2.5",
                                   "3 IT Shirt on Hanger 1 x 2.5 = 2.5", "4 IT Shirt on Hanger 1 x 2.5 = 2.5",
                                   "5 IT Shirt on Hanger 1 x 2.5 = 2.5"));
  EXPECT_THROW(add(201, -1, "many"), Error);
  EXPECT_EQ(lines().size(), 5u);
}

TEST_F(Items, LikeLinesMergeAndTheLogTellsTheAmountBefore) {
  EXPECT_EQ(add(201, 1, 5).toLong(), 1);
  EXPECT_EQ(add(201, 1, 2).toLong(), 1);
  EXPECT_EQ(add(201, 1, "some").toLong(), 1) << "no number counts as one piece";
  EXPECT_THAT(lines(), ElementsAre("1 IT Shirt on Hanger 8 x 2.5 = 20"));
  EXPECT_EQ(invoice.currentLineNumber, 2);
  EXPECT_THAT(log(), ElementsAre("A 5 Shirts: Shirt on Hanger 12.5", "A 2 Shirts: Shirt on Hanger 12.5",
                                 "A 1 Shirts: Shirt on Hanger 17.5"));
  EXPECT_EQ(text(1, taxableAmt), "20");
  EXPECT_EQ(text(1, balance), "12.5") << "a merge leaves the balance alone";
  EXPECT_TRUE(filterIsClear());
}

TEST_F(Items, AHandPricedGarmentKeepsItsOwnLine) {
  add(201, 1, 1);
  invoice.overRidePrice(2, 1);
  EXPECT_EQ(add(201, 1, 1).toLong(), 2);
  EXPECT_THAT(lines(), ElementsAre("1 IT Shirt on Hanger 1 x 2 = 2", "2 IT Shirt on Hanger 1 x 2.5 = 2.5"));
}

TEST_F(Items, PricesThatNoShortTextNamesMergeToo) {
  // 2.50 times 0.46 is 1.15, which the rounding leaves one bit above the number that "1.15" stands for.
  invoice.addItem(201, 1, 1, 0.46, 0.01);
  EXPECT_EQ(invoice.addItem(201, 1, 1, 0.46, 0.01).toLong(), 1);
  EXPECT_THAT(lines(), ElementsAre("1 IT Shirt on Hanger 2 x 1.15 = 2.3"));
}

TEST_F(Items, MultiplierAndRounding) {
  invoice.addItem(112, 0, 2, 1.5, 0.25);  // 4.25 x 1.5 = 6.375, to quarters 6.50
  EXPECT_THAT(lines(), ElementsAre("1 IT Necktie 2 x 6.5 = 13"));
}

TEST_F(Items, AnUnknownItemLeavesTheInvoiceAsItWas) {
  EXPECT_EQ(add(999, 1, 1).toLong(), 0);
  EXPECT_THAT(lines(), IsEmpty());
  EXPECT_THAT(log(), IsEmpty());
  EXPECT_EQ(invoice.currentLineNumber, 1);
}

TEST_F(Items, BadInput) {
  EXPECT_THROW(invoice.addItem("shirt", 1, 1, 1.0, 0.01), Error);
  EXPECT_THAT(lines(), IsEmpty());
  EXPECT_THAT(statements(), IsEmpty()) << "the id is looked at before anything is sent";
}

TEST_F(Items, AGarmentTakesWhatItsPriceListSays) {
  add(114, 0, 2);
  EXPECT_EQ(text(1, minimumPrepay), "5.5");
  EXPECT_EQ(text(1, pkgQuantity), "2");
  EXPECT_EQ(text(1, prepay), "1.5");
  EXPECT_EQ(text(1, deptName), "Dry Cleaning");
  EXPECT_TRUE(cell(1, requiresHeatSeal).toBoolean());
  EXPECT_EQ(text(1, backgroundImage), "tuxedo.png");
  EXPECT_EQ(text(1, heatSeal), "");
  EXPECT_TRUE(cell(1, chargeTaxCode).isNull());
  add(107, 0, 1);
  EXPECT_EQ(text(2, peNotes), "Check beads and sequins");
  EXPECT_EQ(text(2, dueDate), "12/2/2026 10:30:00 AM") << "five days";
  EXPECT_EQ(text(1, dueDate), "11/30/2026 10:30:00 AM");
  EXPECT_EQ(invoice.InvDueDate.text(), "12/2/2026 10:30:00 AM") << "the latest of the lines";
}

TEST_F(Items, WhatOneGarmentSendsToTheDatabase) {
  add(201, 0, 1);
  std::vector<std::string> sent = reads();
  sent.resize(3);  // what follows belongs to the pricing
  EXPECT_THAT(
      sent,
      ElementsAre(
          "update pricelistitem set usecounter = usecounter + 1 Where priceListItemId =201",
          "Select priceListItemId, departmentId, itemName, price, isnull(daysToProcess,0) as daysToProcess, "
          "isNull(qtyInInventory, 1) as quantity,  discountable,  VIPDiscountable, couponable, saleOnly, VIPQualified, "
          "notes, outsideService, priceLater, prepayDiscount, prepayPercent, isnull(imageFileName, '') as imageFileName, "
          "'' as color From  PriceListItem Where priceListItemId =201",
          " select isnull(sum(isnull(adddays, 0)), 0) as tmod from departmentdays where  departmentid = '2' and hour <= 10"));
}

TEST_F(Items, ARedoIsFreeAndMarked) {
  EXPECT_EQ(invoice.addRedoItem(102, 1).toLong(), 1);
  EXPECT_THAT(lines(), ElementsAre("1 IT Jacket 1 x 0 = 0"));
  EXPECT_TRUE(cell(1, redo).toBoolean());
  invoice.groupSimilarItems = false;
  EXPECT_EQ(invoice.addPriceListItem("it101", "", 1, -1, true).toLong(), 2);
  EXPECT_TRUE(cell(2, redo).toBoolean());
}

TEST_F(Items, TheMergeSettingOfThePageMakesALineAPiece) {
  invoice.groupSimilarItems = true;
  invoice.addItem2(201, 2);
  EXPECT_EQ(lines().size(), 2u);
}

TEST_F(Items, ButtonsAddAndRemoveByKind) {
  EXPECT_EQ(invoice.addPriceListItem("IT101", "", 1, -1, false).toLong(), 1);
  EXPECT_EQ(invoice.addPriceListItem("up40", "", 1, 1, false).toText(), "up40");
  EXPECT_EQ(invoice.addPriceListItem("co3", "Navy", 1, 1, false).toText(), "co3");
  EXPECT_THAT(lines(), ElementsAre("1 IT Pants 1 x 8 = 8", "2<1 UP Stain Treatment 1 x 3 = 3",
                                   "3<1 co Navy 1 x 0 = 0"));
  EXPECT_EQ(text(1, upchargeTotal), "3");

  EXPECT_EQ(invoice.removePriceListItem(1, "up40").toLong(), 1);
  EXPECT_EQ(text(1, upchargeTotal), "0");
  EXPECT_EQ(invoice.removePriceListItem(1, "co3").toLong(), 1) << "a lower-case kind finds its line";
  EXPECT_EQ(invoice.removePriceListItem(7, 0).toLong(), 7) << "no such line";
  EXPECT_EQ(invoice.removePriceListItem(1, 0).toLong(), 0);
  EXPECT_THAT(lines(), IsEmpty());
  EXPECT_TRUE(filterIsClear());
}

TEST_F(Items, AHeatSealBringsItsGarmentBack) {
  EXPECT_EQ(invoice.addItemByHeatSeal("ZZ99999").toLong(), -1);
  invoice.pushNewHeatSeal("AA00001");
  EXPECT_EQ(invoice.addItemByHeatSeal("AA00001").toLong(), 1);
  EXPECT_THAT(lines(),
              ElementsAre("1 IT Jacket 1 x 9 = 9", "2<1 CO Navy 1 x 0 = 0", "3<1 BR Ardenvale 1 x 0 = 0"));
  EXPECT_EQ(text(1, heatSeal), "AA00001");
  EXPECT_EQ(invoice.getNewHeatSealCount().toLong(), 0);
}

TEST_F(Items, SealsWaitInTheOrderOfScanning) {
  invoice.pushNewHeatSeal("B500002");
  invoice.pushNewHeatSeal("AA00001");
  invoice.pushNewHeatSeal("B500002");
  EXPECT_EQ(invoice.getNewHeatSealCount().toLong(), 2);
  EXPECT_EQ(invoice.getSelectedHeatSeal().toText(), "B500002");
  invoice.removeNewHeatSeal("B500002");
  invoice.removeNewHeatSeal("B500009");
  EXPECT_EQ(invoice.getSelectedHeatSeal().toText(), "AA00001");
}

TEST_F(Items, AQuickDropOffIsItemisedOutOfItsBag) {
  invoice.invoiceType = "Q";
  addBag(2, 10);
  addBag(1, 6);
  add(201, 0, 3);
  EXPECT_EQ(text(1, quantity), "7");
  EXPECT_EQ(text(3, notes), "by the bag") << "the first garment takes the bag's note";
  EXPECT_EQ(text(3, daysToProcess), "7") << "the days that the bag's date stands for: Friday 4 December";
  add(201, 1, 1);
  EXPECT_EQ(text(1, quantity), "6");
  EXPECT_EQ(text(3, quantity), "4");
  add(103, 0, 2);
  EXPECT_EQ(text(2, quantity), "2") << "two suits of two pieces";
  EXPECT_THAT(log(), IsEmpty()) << "what was dropped off is not logged again";
}

}  // namespace
}  // namespace ondrel
