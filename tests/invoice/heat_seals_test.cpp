#include "invoice/invoice_fixture.h"
#include "invoice/ticket_tag.h"

namespace ondrel {
namespace {

using enum LineColumn;
using ::testing::ElementsAre;
using ::testing::EndsWith;

class HeatSeals : public InvoiceTest {
 protected:
  void addLine(int number, std::string_view kindOfLine, std::string_view seal, int parent = -1,
               std::string_view name = "") {
    invoice.lineItems->addNew({{lineNumber, number},
                               {parentLineNumber, parent},
                               {itemType, kindOfLine},
                               {heatSeal, seal},
                               {itemName, name},
                               {requiresHeatSeal, kindOfLine == "IT"}});
  }
  // What is wrong with the seal, "" when nothing is.
  std::string faultOf(Variant seal) {
    Variant message = "";
    const bool valid = invoice.isHeatSealValid(seal, message).toBoolean();
    EXPECT_EQ(valid, message.toText().empty());
    return message.toText();
  }
};

TEST_F(HeatSeals, AreOfARollByTextAndLength) {
  const auto rolls = [&](const std::string& rows) {
    execute("delete from validheatsealranges");
    if (!rows.empty()) execute("insert into validheatsealranges (starths, endhs) values " + rows);
  };
  rolls("('HS1000', 'HS1999')");
  for (const std::string outside : {"HS0999", "HS2000", "HS10000", "HS100", "", "hs1500"})
    EXPECT_EQ(faultOf(outside), "Heat seal '" + outside + "' is not within a valid heat seal range.");
  for (const char* inside : {"HS1000", "HS1500", "HS1999"}) EXPECT_EQ(faultOf(inside), "");
  rolls("('100', '1999')");
  EXPECT_NE(faultOf("150"), "") << "as long as one end only";
  rolls("");
  EXPECT_NE(faultOf("HS1500"), "") << "a shop without rolls takes no seal";
}

TEST_F(HeatSeals, AskTheDatabaseInThisOrder) {
  invoice.custSeqNumber = 7;
  faultOf("B500001");
  EXPECT_THAT(
      reads(),
      ElementsAre(" select starths, endhs from validheatsealranges ",
                  " select ticket.invoicenumber  from ticket  inner join ticketlineitemtaggeditem on "
                  "ticketlineitemtaggeditem.ticketnumber = ticket.ticketnumber  inner join taggedpiece on "
                  "taggedpiece.taggeditemid = ticketlineitemtaggeditem.taggeditemid  where "
                  "taggedpiece.heatsealid = 'B500001'  and ticket.ticketstatus in ('ac', 'od') ",
                  EndsWith("where taggedpiece.heatsealid = 'B500001'  and "
                           "ticket.customersequencenumber <> 7"),
                  EndsWith("Or pricelist.disable = 1) and taggedpiece.HeatSealID = 'B500001' ")));
  invoice.invoiceNo = "10042";
  faultOf("B500001");
  EXPECT_THAT(reads()[1],
              EndsWith("'B500001'  and invoiceNumber <> '10042' and ticket.ticketstatus in ('ac', 'od') "));
}

TEST_F(HeatSeals, GoOnLines) {
  addLine(1, "IT", "");
  addLine(2, "IT", "");
  Variant seal = "HS1500", other = "HS1001", tooLong = std::string(21, '9');
  for (const Variant& scanned : {seal, other, seal}) invoice.pushNewHeatSeal(scanned);
  EXPECT_EQ(invoice.getNewHeatSealCount().toLong(), 2);
  EXPECT_TRUE(isEqual(invoice.getSelectedHeatSeal(), seal)) << "in the order of scanning";

  invoice.setLineHeatSeal(2, seal);
  EXPECT_EQ(invoice.lineItems->recordCount(), 1) << "the filter stays on the line";
  invoice.setLineHeatSeal("no line", seal);
  invoice.setLineHeatSeal(2, tooLong);
  EXPECT_EQ(invoice.getHeatSealCount().toLong(), 1);
  EXPECT_TRUE(filterIsClear());
  EXPECT_TRUE(invoice.isMissingHeatSeals().toBoolean());

  EXPECT_THROW(invoice.addHeatSeal(1, tooLong), Error);
  EXPECT_EQ(invoice.getNewHeatSealCount().toLong(), 2) << "the seal was another";
  invoice.addHeatSeal(1, seal);
  EXPECT_TRUE(isEqual(invoice.getSelectedHeatSeal(), other));
  invoice.removeNewHeatSeal(other);
  EXPECT_TRUE(invoice.getSelectedHeatSeal().isEmpty());
  EXPECT_FALSE(invoice.isMissingHeatSeals().toBoolean());
  invoice.clearHeatSeals();
  EXPECT_EQ(invoice.getHeatSealCount().toLong(), 1) << "they come off one at a time";
}

TEST_F(HeatSeals, DescribeTheGarmentInWords) {
  addLine(1, "IT", "", -1, "Shirt");
  addLine(2, "CO", "", 1, "Blue");
  addLine(3, "AL", "", 1, "Left out");
  addLine(4, "up", "", 1, " Starch ");
  addLine(5, "BR", "", 2, "Not a child of the shirt");
  Variant line = 1, none = 9, text = "x y";
  EXPECT_EQ(invoice.getDescriptorText(line).toText(), "Blue  Starch");
  EXPECT_EQ(invoice.getDescriptorText(none).toText() + invoice.getDescriptorText(text).toText(), "");
}

// A child's tags are drawn with the seals of the whole order; one that brings its own gets none.
TEST_F(HeatSeals, LeaveTheirPiecesWithoutATag) {
  addLine(1, "IT", "HS1500");
  const auto bringing = std::make_shared<Dictionary>();
  bringing->add(1, std::make_shared<TicketTag>());
  invoice.invoicesDictionary = std::make_shared<Dictionary>();
  for (int key = 1; key <= 2; ++key) {
    const auto child = std::make_shared<Invoice>();
    child->ticketNo = 1006 + key;
    if (key == 1) child->ticketTags = bringing;
    invoice.invoicesDictionary->add(key, child);
  }
  invoice.ticketNo = 1011;
  invoice.invoiceNo = "5011";
  statements();
  invoice.insertTagsForTicket(true);
  EXPECT_THAT(statements(), ElementsAre("<begin>", "InsertTicketTags 1011,'5011',1",
                                        "InsertTicketTags 1008,'',1", "<commit>", "<close>"));
}

}  // namespace
}  // namespace ondrel
