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

}  // namespace
}  // namespace ondrel
