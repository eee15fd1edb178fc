#include "base/array.h"
#include "data/store_loading.h"
#include "data/values.h"
#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using enum LineColumn;
using ::testing::ElementsAre;

class LineGroups : public InvoiceTest {
 protected:
  std::vector<std::string> groups() {
    std::vector<std::string> result;
    for (const RecordsetRef each = invoice.getLineItemsGroupDetails(); !each->eof(); each->moveNext())
      result.push_back(fmt::format("{} {} | {} | {} | {}", each->integer("quantity"), each->text("itemDesc"),
                                   each->text("colorPatternDesc"), each->text("upchargeDesc"),
                                   each->value("total").toText()));
    EXPECT_TRUE(filterIsClear());
    return result;
  }
  void putLine(const char* type, double total) {
    invoice.lineItems->addNew(
        {{lineNumber, 50}, {parentLineNumber, -1}, {itemType, type}, {lineItemTotal, total}});
  }
};

TEST_F(LineGroups, AGarmentIsOneRowWithItsDescriptorsInWords) {
  execute("update descriptor set price = 0.75 where name = 'Arbelline'");
  garment(306, 2);  // 2 x 9.00
  invoice.attachNotes(1, "Red wine");
  upcharge(1, "Stain Treatment");                        // 3.00
  upcharge(1, "Hand Press", 2);                          // 2 x 2.00
  invoice.addDescriptor(1, "Arbelline", "BR", 1);        // one a piece: 2 x 0.75
  color(1, "White");                                     // 0.50
  invoice.addPattern(1, "Checked", 1, true, 1.0, 0.01);  // 0.25
  invoice.addChargeLineNew(1, 1, 3, "Courier", 1, 3, 1);
  EXPECT_THAT(groups(),
              ElementsAre("2 Tablecloth Red wine | White, Checked | Stain Treatment, 2 Hand Press | 27.25",
                          "1 Courier |  |  | 3"));
  invoice.lineItems->setFilter("itemType='UP'");
  invoice.lineItems->setValue(notes, "twice");
  invoice.lineItems->setValue(peNotes, "gently");
  invoice.lineItems->setValue(itemType, "up");
  EXPECT_EQ(groups()[0],
            "2 Tablecloth Red wine | White, Checked | Stain Treatment gently twice, 2 Hand Press | 27.25")
      << "the price list's note comes first; a kind counts in either case";

  EXPECT_EQ(invoice.getInvoiceSubTotal().toDouble(), 28.75) << "a brand is none of the goods";
  for (const auto& [type, total] : {std::pair{"PR", 2.5}, {"VI", 0.125}, {"RE", 1.0}, {"CU", 30.0}})
    putLine(type, total);
  EXPECT_EQ(invoice.getTotalDiscount().toDouble(), 3.625) << "of those worked out";
  EXPECT_EQ(invoice.getTotalItemCount().toLong(), 3);
  invoice.addItem2(103, 3);
  EXPECT_EQ(invoice.getTotalItemCount().toLong(), 9) << "suits are two pieces";
  invoice.addItem2(151, 2);
  EXPECT_EQ(invoice.getTotalItemCount().toLong(), 11) << "six hangers to the pack are sold as one";
  EXPECT_EQ(invoice.getLineCount().toLong(), 4);
}

TEST_F(LineGroups, AGarmentLacksWhatThePriceListForces) {
  Variant suit = invoice.addItem2(125, 3), skirt = invoice.addItem2(123, 1), bag = invoice.addItem2(301, 1);
  Variant unknown = 99;
  const auto forced = [&](Variant& line) {
    return fmt::format("{}{}{}", invoice.isColorRequiredForLine(line).toText()[0],
                       invoice.isPatternRequiredForLine(line).toText()[0],
                       invoice.isUpchargeRequiredForLine(line).toText()[0]);
  };
  EXPECT_EQ(forced(suit) + " " + forced(skirt) + " " + forced(bag) + " " + forced(unknown),
            "TTF FFT FFF FFF");

  color(1, "Navy", 2);
  EXPECT_FALSE(invoice.isColorSetForItem(suit).toBoolean()) << "two of three";
  color(1, "White");
  EXPECT_TRUE(invoice.isColorSetForItem(suit).toBoolean());
  EXPECT_FALSE(invoice.isPatternSetForItem(suit).toBoolean());
  invoice.addDescriptor(suit, "Arbelline", "br", 1);
  EXPECT_TRUE(invoice.isBrandSetForItem(suit).toBoolean());

  EXPECT_FALSE(invoice.isUpchargeSetForItem(skirt).toBoolean());
  invoice.addUpcharge2(skirt, "Pleats", 1);
  EXPECT_TRUE(invoice.isUpchargeSetForItem(skirt).toBoolean());
  EXPECT_TRUE(invoice.isUpchargeSetForItem(unknown).toBoolean());
  execute("update ItemDescriptorPrice set disabled = 1 where priceListItemId = 301");
  EXPECT_TRUE(invoice.isUpchargeSetForItem(bag).toBoolean()) << "none on offer";
  EXPECT_TRUE(filterIsClear());
}

TEST_F(LineGroups, NumbersOfASplit) {
  invoice.invoiceNo = "A7";
  invoice.ticketNo = 7;
  invoice.invoicesDictionary = std::make_shared<Dictionary>();
  for (const char* number : {"A8", "0", "A10", "A11"}) {
    const auto child = std::make_shared<Invoice>();
    const int key = invoice.invoicesDictionary->count() + 1;
    child->invoiceNo = number;
    child->ticketNo = 7 + key;
    if (key == 3) child->invoiceType = "Q";
    if (key < 4) child->lineItems->addNew({{lineNumber, 1}, {parentLineNumber, -1}, {itemType, "DE"}});
    invoice.invoicesDictionary->add(key, ObjectRef(child));
  }
  EXPECT_EQ(invoice.getInvoiceNos().toText(), "A8,A10") << "only the children";
  EXPECT_EQ(invoice.getTicketNosForPrinting().toText(), "8,9");
  putLine("IT", 5);
  EXPECT_EQ(invoice.getInvoiceNos().toText(), "A7,A8,A10");
  EXPECT_EQ(invoice.getTicketNosForPrinting().toText(), "7,8,9");
}

TEST_F(LineGroups, ASplitMakesATicketADepartmentThatAsksForIt) {
  EXPECT_EQ(errorOf([&] { invoice.getNoOfInvoices(); }), 91);
  execute("update Department set splitInvoice = case when departmentID in (1, 2) then 1 else 0 end");
  loadDepartments(*apartment, 1, 1);
  invoice.splitInvoice("add");
  for (const bool isNew : {true, false}) {
    invoice.isAdd = isNew;
    EXPECT_EQ(invoice.getNoOfInvoices().toLong(), 0) << "no line";
  }
  for (const int item : {101, 102, 201, 301, 401}) invoice.addItem2(item, 1);
  invoice.splitInvoice("add");
  EXPECT_EQ(invoice.getNoOfInvoices().toLong(), 2) << "cleaning, shirts, and the rest together; one stands";
  invoice.isAdd = true;
  EXPECT_EQ(invoice.getNoOfInvoices().toLong(), 3);
}

TEST_F(LineGroups, SumsLeaveNullsOut) {
  garment(101, 2);
  invoice.lineItems->addNew({{lineNumber, 2}, {parentLineNumber, -1}, {itemType, "CU"}});
  EXPECT_EQ(invoice.liColTotal("quantity", 0).toLong(), 2);
  EXPECT_EQ(invoice.liColTotal("lineItemTotal", "itemType='it'").toLong(), 16);
  EXPECT_EQ(errorOf([&] { invoice.liColTotal("pieces", 0); }), static_cast<int>(ErrorNumber::ItemNotFound));
}

// ---------------------------------------------------------------- pieces

class PieceLimits : public InvoiceTest {
 protected:
  static int limitOf(Invoice& ticket, Variant department) {
    return ticket.getDepartmentMaxPieces(department).toLong();
  }
  int piecesOf(Variant department) { return invoice.getDepartmentPieceCount(department).toLong(); }
  // "pieces of department"
  std::string after(const std::string& line, int pieces, int pack, int department,
                    const char* action = "change") {
    const Variant answer = invoice.checkAllowableItemCountPerDept(line, pieces, pack, department, action);
    const auto array = std::dynamic_pointer_cast<Array>(answer.toObject());
    EXPECT_EQ(array->lowerBound, 1);
    EXPECT_TRUE(filterIsClear());
    return array->items[0].toText() + " of " + array->items[1].toText();
  }
};

TEST_F(PieceLimits, CountQuantityTimesPack) {
  garment(103, 3);  // of two pieces
  EXPECT_EQ(piecesOf(1), 6);
  invoice.addChargeLineNew(1, 1, 2.0, "Extra", 2, 1, 2);
  EXPECT_EQ(piecesOf(1), 10);
  invoice.lineItems->addNew({{deptId, 1}, {itemType, "IT"}, {quantity, Variant::null()}, {pkgQuantity, 3}});
  invoice.lineItems->addNew({{deptId, 1}, {itemType, "UP"}, {quantity, 9}, {pkgQuantity, 9}});
  EXPECT_EQ(piecesOf(1), 13) << "Null is one; what hangs on a garment is none";
  EXPECT_EQ(piecesOf(2), 0);
}

TEST_F(PieceLimits, OfADepartmentAndALotOfTags) {
  execute("update Department set maxItemsInReceipt = 3999999 where departmentID = 2");
  execute("update Department set maxItemsInReceipt = 4000000 where departmentID = 3");
  loadDepartments(*apartment, 1, 1);
  for (const auto& [department, limit] : {std::pair{1, 10}, {2, 3999999}, {3, -1}, {5, -1}, {99, -1}})
    EXPECT_EQ(limitOf(invoice, department), limit) << department;

  execute("update Ticket set lotid = 5 where ticketNumber = 1007");
  execute("delete TicketTag where ticketNumber = 1007");
  for (int tag = 1; tag <= 4; ++tag)
    execute(fmt::format("insert into TicketTag (ticketNumber, tagNumber) values (1007, '{}')", tag));
  Invoice tagged;
  tagged.getExistingDetails(1007);
  EXPECT_EQ(limitOf(tagged, 1), 4);
  EXPECT_EQ(limitOf(tagged, 6), 3) << "the smaller of both";
  EXPECT_EQ(limitOf(tagged, 3), -1) << "no limit is none with tags either";

  for (Variant department : {4, 1, 99})
    EXPECT_EQ(invoice.isManualMaxPiecesEnabled(department).toBoolean(), isEqual(department, 4));
  EXPECT_TRUE(isEqual(apartment->store.storeDepartments->filter(), 0));
}

TEST_F(PieceLimits, AreOverInADepartmentSplitByHandOnly) {
  const auto over = [&] { return invoice.isOverMaxDepartmentItems().toBoolean(); };
  garment(101, 50);
  garment(401, 5);
  EXPECT_FALSE(over()) << "cleaning splits by itself, household is exactly at its limit";
  garment(402);
  EXPECT_TRUE(over());
}

TEST_F(PieceLimits, AnswerWhatAChangeWouldCome) {
  EXPECT_EQ(after("1", 4, 3, 1), "12 of 1") << "on an empty invoice";
  const auto put = [&](int number, int department, Variant pieces, Variant pack, Variant sold) {
    invoice.lineItems->addNew({{lineNumber, number},
                               {deptId, department},
                               {itemType, "IT"},
                               {quantity, pieces},
                               {pkgQuantity, pack},
                               {saleOnly, sold}});
  };
  put(1, 1, 2, 2, false);
  put(2, 1, 6, 1, false);
  EXPECT_EQ(after("1", 5, 9, 9), "16 of 1") << "the line's own department and pack: 10 and three of two";
  EXPECT_EQ(after("1", 5, 9, 9, "getItemDetails"), "45 of 9");
  EXPECT_EQ(after("1", 5, 3, 1, "getItemDetails"), "25 of 1");
  put(3, 1, 3, 6, true);
  put(4, 1, 1, 6, Variant::null());
  put(5, 1, 2, Variant::null(), false);
  EXPECT_EQ(after("77", 0, 1, 1), "16 of 1")
      << "sold: a piece a unit; without a pack: that of the line before";
  EXPECT_EQ(errorOf([&] { after("77", 2000000000, 2, 1); }), 6);
}

}  // namespace
}  // namespace ondrel
