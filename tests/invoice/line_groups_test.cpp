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
  void putLine(const char* type, double total, int line = 50) {
    invoice.lineItems->addNew(
        {{lineNumber, line}, {parentLineNumber, -1}, {itemType, type}, {lineItemTotal, total}});
  }
};

TEST_F(LineGroups, AGarmentIsOneRowWithItsDescriptorsInWords) {
  execute("update descriptor set price = 0.75 where name = 'Arbelline'");
  const Variant cloth = invoice.addItem2(306, 2);  // 2 x 9.00
  invoice.attachNotes(cloth, "Red wine");
  invoice.addUpcharge(cloth, "Stain Treatment", 1, true, 1.0, 0.01);  // 3.00
  invoice.addUpcharge(cloth, "Hand Press", 2, true, 1.0, 0.01);       // 2 x 2.00
  invoice.addDescriptor(cloth, "Arbelline", "BR", 1);                 // one a piece: 2 x 0.75
  invoice.addColor(cloth, "White", 1, true, 1.0, 0.01);               // 0.50
  invoice.addPattern(cloth, "Checked", 1, true, 1.0, 0.01);           // 0.25
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
  EXPECT_EQ(invoice.getTotalItemCount().toLong(), 3);
  EXPECT_EQ(invoice.getLineCount().toLong(), 2);
}

TEST_F(LineGroups, SumsByKind) {
  EXPECT_TRUE(groups().empty());
  for (const auto& [type, total] : {std::pair{"IT", 10.004},
                                    {"AC", 1.0},
                                    {"PR", 2.5},
                                    {"VI", 0.125},
                                    {"RE", 1.0},
                                    {"CU", 30.0},
                                    {"TA", 0.7}})
    putLine(type, total);
  EXPECT_EQ(invoice.getInvoiceSubTotal().toDouble(), 11);
  EXPECT_EQ(invoice.getTotalDiscount().toDouble(), 3.625);
  EXPECT_EQ(invoice.getTotalPriceForDisplay().toDouble(), 0) << "the coupon is more than the goods";
  invoice.amountPaid = 4.5;
  EXPECT_EQ(invoice.getAmountPaid().toDouble(), 4.5);
  EXPECT_TRUE(filterIsClear());
}

// Suits are two pieces, six hangers to the pack are sold as one, a charge counts as it says.
TEST_F(LineGroups, PiecesGoByThePackUnlessTheItemIsSold) {
  invoice.addItem2(103, 3);
  EXPECT_EQ(invoice.getTotalItemCount().toLong(), 6);
  invoice.addItem2(151, 2);
  EXPECT_EQ(invoice.getTotalItemCount().toLong(), 8);
  invoice.addChargeLineNew(1, 1, 3, "Courier", 1, 3, 1);
  EXPECT_EQ(invoice.getTotalItemCount().toLong(), 9);
  EXPECT_EQ(invoice.getLineCount().toLong(), 3);
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

  invoice.addColor(suit, "Navy", 2, true, 1.0, 0.01);
  EXPECT_FALSE(invoice.isColorSetForItem(suit).toBoolean()) << "two of three";
  invoice.addColor(suit, "White", 1, true, 1.0, 0.01);
  EXPECT_TRUE(invoice.isColorSetForItem(suit).toBoolean());
  EXPECT_FALSE(invoice.isPatternSetForItem(suit).toBoolean());
  EXPECT_FALSE(invoice.isBrandSetForItem(suit).toBoolean());
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
  const auto childOf = [&](const char* number, int ticket, const char* type, bool filled) {
    const auto child = std::make_shared<Invoice>();
    child->invoiceNo = number;
    child->ticketNo = ticket;
    child->invoiceType = type;
    if (filled) child->lineItems->addNew({{lineNumber, 1}, {parentLineNumber, -1}, {itemType, "DE"}});
    if (!invoice.invoicesDictionary) invoice.invoicesDictionary = std::make_shared<Dictionary>();
    invoice.invoicesDictionary->add(invoice.invoicesDictionary->count() + 1, ObjectRef(child));
  };
  invoice.invoiceNo = "A7";
  invoice.ticketNo = 7;
  EXPECT_EQ(invoice.getInvoiceNos().toText(), "") << "empty";
  childOf("A8", 8, "D", true);
  childOf("0", 9, "D", true);
  childOf("A10", 10, "Q", true);
  childOf("A11", 11, "D", false);
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
  for (const int item : {101, 201, 301, 401}) invoice.addItem2(item, 1);
  invoice.splitInvoice("add");
  EXPECT_EQ(invoice.getNoOfInvoices().toLong(), 2) << "cleaning, shirts, and the rest together; one stands";
  invoice.isAdd = true;
  EXPECT_EQ(invoice.getNoOfInvoices().toLong(), 3);
}

}  // namespace
}  // namespace ondrel
