#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum LineColumn;

// Sample store: 201 Shirt on Hanger 2.50 (department 2), 101 Pants 8.00, 103 Suit 2-Piece 16.00 in two pieces,
// 114 Tuxedo 22.00 with 25 % to be prepaid, 107 Evening Gown with a fixed note (all department 1).

class Items : public InvoiceTest {
 protected:
  Variant add(int item, const Variant& merging, const Variant& pieces) {
    return invoice.addItem(item, merging, pieces, 1.0, 0.01);
  }
};

TEST_F(Items, ALineAPieceHoweverItIsAskedFor) {
  EXPECT_EQ(add(201, -1, 3).toLong(), 1);
  EXPECT_EQ(add(201, true, 1).toLong(), 4);
  EXPECT_EQ(add(201, "-1", "1").toLong(), 5);
  EXPECT_EQ(add(201, -1, 0).toLong(), 6) << "nothing is added";
  EXPECT_THROW(add(201, -1, "many"), Error);
  invoice.groupSimilarItems = true;
  invoice.addItem2(201, 2);
  EXPECT_EQ(lines().size(), 7u);
  EXPECT_THAT(lines(), ::testing::Each(::testing::EndsWith(" IT Shirt on Hanger 1 x 2.5 = 2.5")));
}

TEST_F(Items, LikeLinesMergeAndTheLogTellsTheAmountBefore) {
  EXPECT_EQ(add(201, 1, 5).toLong(), 1);
  EXPECT_EQ(add(201, 1, 2).toLong(), 1);
  EXPECT_EQ(add(201, 1, "some").toLong(), 1) << "no number counts as one piece";
  EXPECT_THAT(lines(), ElementsAre("1 IT Shirt on Hanger 8 x 2.5 = 20"));
  EXPECT_THAT(log(), ElementsAre("A 5 Shirts: Shirt on Hanger 12.5", "A 2 Shirts: Shirt on Hanger 12.5",
                                 "A 1 Shirts: Shirt on Hanger 17.5"));
  EXPECT_EQ(text(1, taxableAmt), "20");
  EXPECT_EQ(text(1, balance), "12.5") << "a merge leaves the balance alone";
  EXPECT_TRUE(filterIsClear());
}

TEST_F(Items, OnlyLinesOfOnePriceMerge) {
  add(201, 1, 1);
  invoice.overRidePrice(2, 1);
  EXPECT_EQ(add(201, 1, 1).toLong(), 2) << "priced by hand";
  // 2.50 times 0.46 is 1.15, which the rounding leaves one bit above the number that "1.15" stands for.
  for (int time = 1; time <= 2; ++time) EXPECT_EQ(invoice.addItem(201, 1, 1, 0.46, 0.01).toLong(), 3);
  invoice.addItem(112, 0, 2, 1.5, 0.25);  // 4.25 x 1.5 = 6.375, to quarters 6.50
  EXPECT_THAT(lines(), ElementsAre("1 IT Shirt on Hanger 1 x 2 = 2", "2 IT Shirt on Hanger 1 x 2.5 = 2.5",
                                   "3 IT Shirt on Hanger 2 x 1.15 = 2.3", "4 IT Necktie 2 x 6.5 = 13"));
}

TEST_F(Items, WhatIsNoItemLeavesTheInvoiceAsItWas) {
  EXPECT_EQ(add(999, 1, 1).toLong(), 0);
  statements();
  EXPECT_THROW(invoice.addItem("shirt", 1, 1, 1.0, 0.01), Error);
  EXPECT_THAT(statements(), IsEmpty()) << "the id is looked at before anything is sent";
  EXPECT_THAT(lines(), IsEmpty());
  EXPECT_THAT(log(), IsEmpty());
}

TEST_F(Items, AGarmentTakesWhatItsPriceListSays) {
  garment(114, 2);
  const std::pair<LineColumn, const char*> kTuxedo[] = {{minimumPrepay, "5.5"},
                                                        {pkgQuantity, "2"},
                                                        {prepay, "1.5"},
                                                        {deptName, "Dry Cleaning"},
                                                        {requiresHeatSeal, "True"},
                                                        {backgroundImage, "tuxedo.png"},
                                                        {heatSeal, ""},
                                                        {chargeTaxCode, ""},
                                                        {dueDate, "11/30/2026 10:30:00 AM"}};
  for (const auto& [column, value] : kTuxedo)
    EXPECT_EQ(text(1, column), value) << kLineLayout[Column(column).index].name;
  garment(107);
  EXPECT_EQ(text(2, peNotes), "Check beads and sequins");
  EXPECT_EQ(text(2, dueDate), "12/2/2026 10:30:00 AM") << "five days";
  EXPECT_EQ(invoice.InvDueDate.text(), "12/2/2026 10:30:00 AM") << "the latest of the lines";
}

TEST_F(Items, WhatOneGarmentSendsToTheDatabase) {
  statements();
  garment(201);
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
  Invoice other;  // whose store does not sort by use
  startTicket(other, 8, 3, 2);
  other.addItem(3101, 0, 1, 1.0, 0.01);
  EXPECT_EQ(scalar("select usecounter from PriceListItem where priceListItemId = 3101").toLong(), 0);
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

  invoice.groupSimilarItems = false;
  EXPECT_EQ(invoice.addPriceListItem("it102", "", 1, -1, true).toLong(), 4);
  EXPECT_THAT(lines(), ElementsAre("4 IT Jacket 1 x 0 = 0"));
  EXPECT_TRUE(cell(4, redo).toBoolean());
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

TEST_F(Items, AQuickDropOffIsItemisedOutOfItsBag) {
  invoice.invoiceType = "Q";
  for (const auto& [department, pieces] : {std::pair{2, 10}, {1, 6}})
    invoice.lineItems->addNew({{lineNumber, invoice.currentLineNumber++},
                               {parentLineNumber, -1},
                               {deptId, department},
                               {itemType, "DE"},
                               {quantity, pieces},
                               {notes, "by the bag"},
                               {dueDate, Date::of(2026, 12, 4)}});
  garment(201, 3);
  EXPECT_EQ(text(1, quantity), "7");
  EXPECT_EQ(text(3, notes), "by the bag") << "the first garment takes the bag's note";
  EXPECT_EQ(text(3, daysToProcess), "7") << "the days that the bag's date stands for: Friday 4 December";
  add(201, 1, 1);
  EXPECT_EQ(text(1, quantity) + " " + text(3, quantity), "6 4");
  garment(103, 2);
  EXPECT_EQ(text(2, quantity), "2") << "two suits of two pieces";
  EXPECT_THAT(log(), IsEmpty()) << "what was dropped off is not logged again";
  invoice.changeQuantity(1, 4);
  EXPECT_EQ(text(2, quantity), "0") << "adds (1 - 2) x 2 pieces: the bag follows the garment's count";
  invoice.deleteItem(4);
  EXPECT_EQ(text(2, quantity), "2");
  invoice.addChargeLineNew(1, 1, 5, "Hem", 2, 2, 2);
  EXPECT_EQ(text(1, quantity), "2") << "two hems that count as two pieces each";
  invoice.addChargeLine(Variant(), 5, "Hem", 2, 2);
  EXPECT_EQ(text(1, quantity), "2") << "a plain charge counts none";
}

// ---------------------------------------------------------------- bags as text

class QuickItems : public InvoiceTest {
 protected:
  int import(const std::string& text) {
    return errorOf([&] {
      Variant desc = text;
      invoice.importQuickItems(desc);
    });
  }
};

TEST_F(QuickItems, TravelAsText) {
  invoice.addItem2(306, 1);
  const std::string bags = "1,5,11/30/2026\r\n2,8,11/26/2026 5:00:00 PM";
  for (int time = 1; time <= 2; ++time) {
    EXPECT_EQ(import(bags), 0);
    EXPECT_EQ(invoice.exportQuickItems().toText(), bags);
    EXPECT_TRUE(filterIsClear());
  }
  EXPECT_THAT(lines(), ElementsAre("1 IT Tablecloth 1 x 9 = 9", "4 DE  5 x 0 = 0", "5 DE  8 x 0 = 0"));
  EXPECT_EQ(text(4, deptName) + text(5, deptName), "Dry CleaningShirts");
  EXPECT_EQ(text(4, daysToProcess) + text(5, daysToProcess), "32")
      << "Thanksgiving is reached with Saturday's";
  EXPECT_EQ(text(5, originalLineNumber) + text(5, lineItemId), "51");

  invoice.lineItems->setFilter("lineNumber=4");
  invoice.lineItems->setValue(quantity, 0);
  EXPECT_EQ(invoice.exportQuickItems().toText(), "2,8,11/26/2026 5:00:00 PM");
  invoice.removeAllQuickItems();
  EXPECT_EQ(invoice.lineItems->filter().toText(), "itemType='DE'") << "left for the next operation to clear";
  EXPECT_TRUE(invoice.exportQuickItems().isEmpty());
  EXPECT_EQ(import(bags + "\r\n"), 9) << "a line break at the end begins a record";
}

TEST_F(QuickItems, KeepWhatCameBeforeAFault) {
  const std::pair<const char*, int> kFaults[] = {
      {"2,3", 9}, {"2,3,soon", 13}, {"2,three,11/30/2026", 13}, {"8,3,11/30/2026", 3021}};
  for (const auto& [record, error] : kFaults) {
    EXPECT_EQ(import(std::string("1,5,11/30/2026\r\n") + record + "\r\n3,1,11/30/2026"), error) << record;
    EXPECT_EQ(invoice.exportQuickItems().toText(), "1,5,11/30/2026") << record;
  }
}

}  // namespace
}  // namespace ondrel
