#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "invoice/invoice.h"
#include "invoice/ticket_tag.h"
#include "support/fake_database.h"

namespace ondrel {
namespace {

using enum LineColumn;
using ::testing::ElementsAre;

class HeatSeals : public ::testing::Test {
 protected:
  HeatSeals() {
    database.attachTo(*apartment);
    roll("HS1000", "HS1999");
  }

  void roll(const char* first, const char* last) {
    database.answer("from validheatsealranges", tableOf({"starths", "endhs"}, {{first, last}}));
  }
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
  std::vector<std::string> statements() {
    std::vector<std::string> sent;
    for (const std::string& entry : database.take())
      if (entry.front() != '<') sent.push_back(entry);
    return sent;
  }
  bool isFiltered() const { return invoice.lineItems->filter().isText(); }

  std::shared_ptr<Apartment> apartment = std::make_shared<Apartment>();
  ApartmentScope scope{apartment};
  FakeDatabase database;
  Invoice invoice;
};

TEST_F(HeatSeals, AreOfARollByTextAndLength) {
  for (const char* outside : {"HS0999", "HS2000", "HS10000", "HS100", "", "hs1500"})
    EXPECT_EQ(faultOf(outside),
              "Heat seal '" + std::string(outside) + "' is not within a valid heat seal range.");
  for (const char* inside : {"HS1000", "HS1500", "HS1999"}) EXPECT_EQ(faultOf(inside), "");
  roll("100", "1999");
  EXPECT_NE(faultOf("150"), "") << "as long as one end only";
  database.answer("from validheatsealranges", tableOf({"starths", "endhs"}, {}));
  EXPECT_NE(faultOf("HS1500"), "") << "a shop without rolls takes no seal";
}

TEST_F(HeatSeals, TheFirstFaultIsTold) {
  database.answer("PriceListItem.disabled as plid",
                  tableOf({"HeatSealID", "plid", "dd", "pd"}, {{"HS1500", true, false, true}}));
  EXPECT_EQ(faultOf("HS1500"),
            "This heat seal 'HS1500' does can not be used. The item, pricelist is disabled.");
  database.answer("select customer.customername", tableOf({"customername"}, {{"Lena Ortiz"}}));
  EXPECT_EQ(
      faultOf("HS1500"),
      "This heat seal 'HS1500' does not belong to this customer. It was previous used with Lena Ortiz.");
  database.answer("select ticket.invoicenumber", tableOf({"invoicenumber"}, {{"10042"}}));
  EXPECT_EQ(faultOf("HS1500"), "Heat seal 'HS1500' is already on active invoice 10042.");
  addLine(1, "IT", "HS1500");
  EXPECT_EQ(faultOf("HS1500"), "Heat seal HS1500 is already on this invoice.");
  EXPECT_FALSE(isFiltered());
  EXPECT_NE(faultOf("x"), "");
}

TEST_F(HeatSeals, AskTheDatabaseInThisOrder) {
  invoice.custSeqNumber = 7;
  faultOf("HS1500");
  const std::vector<std::string> sent = statements();
  ASSERT_EQ(sent.size(), 4u);
  EXPECT_EQ(sent[0], " select starths, endhs from validheatsealranges ");
  EXPECT_EQ(
      sent[1],
      " select ticket.invoicenumber  from ticket  inner join ticketlineitemtaggeditem on "
      "ticketlineitemtaggeditem.ticketnumber = ticket.ticketnumber  inner join taggedpiece on "
      "taggedpiece.taggeditemid = ticketlineitemtaggeditem.taggeditemid  where taggedpiece.heatsealid = "
      "'HS1500'  and ticket.ticketstatus in ('ac', 'od') ");
  EXPECT_THAT(sent[2], ::testing::EndsWith("where taggedpiece.heatsealid = 'HS1500'  and "
                                           "ticket.customersequencenumber <> 7"));
  EXPECT_THAT(sent[3],
              ::testing::EndsWith("Or pricelist.disable = 1) and taggedpiece.HeatSealID = 'HS1500' "));
  invoice.invoiceNo = "10042";
  faultOf("HS1500");
  EXPECT_THAT(
      statements()[1],
      ::testing::EndsWith("'HS1500'  and invoiceNumber <> '10042' and ticket.ticketstatus in ('ac', 'od') "));
}

TEST_F(HeatSeals, GoOnLines) {
  addLine(1, "IT", "");
  addLine(2, "IT", "");
  Variant seal = "HS1500", tooLong = std::string(21, '9');
  invoice.pushNewHeatSeal(seal);
  invoice.pushNewHeatSeal(seal);
  EXPECT_EQ(invoice.getNewHeatSealCount().toLong(), 1);
  EXPECT_TRUE(isEqual(invoice.getSelectedHeatSeal(), seal));

  invoice.setLineHeatSeal(2, seal);
  EXPECT_EQ(invoice.lineItems->recordCount(), 1) << "the filter stays on the line";
  invoice.setLineHeatSeal("no line", seal);
  invoice.setLineHeatSeal(2, tooLong);
  EXPECT_EQ(invoice.getHeatSealCount().toLong(), 1);
  EXPECT_FALSE(isFiltered());
  EXPECT_TRUE(invoice.isMissingHeatSeals().toBoolean());

  EXPECT_THROW(invoice.addHeatSeal(1, tooLong), Error);
  EXPECT_EQ(invoice.getNewHeatSealCount().toLong(), 1) << "the seal was another";
  invoice.addHeatSeal(1, seal);
  EXPECT_EQ(invoice.getNewHeatSealCount().toLong(), 0);
  invoice.removeNewHeatSeal(seal);
  EXPECT_TRUE(invoice.getSelectedHeatSeal().isEmpty());
  EXPECT_FALSE(isFiltered());
  EXPECT_FALSE(invoice.isMissingHeatSeals().toBoolean());
}

TEST_F(HeatSeals, ComeOffOneAtATime) {
  for (int line = 1; line <= 3; ++line) addLine(line, "IT", "HS100" + std::to_string(line));
  invoice.clearHeatSeals();
  EXPECT_EQ(invoice.lineItems->filter().toText(), "heatSeal <> ''");
  EXPECT_EQ(invoice.getHeatSealCount().toLong(), 2);
  for (int more = 0; more < 3; ++more) invoice.clearHeatSeals();
  EXPECT_EQ(invoice.getHeatSealCount().toLong(), 0);
}

TEST_F(HeatSeals, DescribeTheGarmentInWords) {
  addLine(1, "IT", "", -1, "Shirt");
  addLine(2, "CO", "", 1, "Blue");
  addLine(3, "AL", "", 1, "Left out");
  addLine(4, "up", "", 1, " Starch ");
  addLine(5, "BR", "", 2, "Not a child of the shirt");
  Variant line = 1, none = 9, text = "x y";
  EXPECT_EQ(invoice.getDescriptorText(line).toText(), "Blue  Starch");
  EXPECT_EQ(invoice.getDescriptorText(none).toText(), "");
  EXPECT_EQ(invoice.getDescriptorText(text).toText(), "");
}

TEST_F(HeatSeals, LeaveTheirPiecesWithoutATag) {
  addLine(1, "IT", "HS1500");
  invoice.ticketNo = 11;
  invoice.invoiceNo = "A-11";
  invoice.insertTagsForTicket(true);
  EXPECT_THAT(database.take(),
              ElementsAre("<open>", "<begin>", "InsertTicketTags 11,'A-11',1", "<commit>", "<close>"));

  // A child's tags are drawn with the seals of the whole order; one that brings its own gets none.
  const auto bringing = std::make_shared<Dictionary>();
  bringing->add(1, std::make_shared<TicketTag>());
  invoice.invoicesDictionary = std::make_shared<Dictionary>();
  for (int key = 1; key <= 2; ++key) {
    const auto child = std::make_shared<Invoice>();
    child->ticketNo = 20 + key;
    if (key == 1) child->ticketTags = bringing;
    invoice.invoicesDictionary->add(key, child);
  }
  invoice.ticketTags = bringing;
  invoice.insertTagsForTicket(false);
  EXPECT_THAT(statements(), ElementsAre("InsertTicketTags 22,'',1"));

  database.failStatement(1);
  EXPECT_THROW(invoice.insertTagsForTicket(false), Error);
  EXPECT_TRUE(apartment->sharedConnection) << "left open";
}

}  // namespace
}  // namespace ondrel
