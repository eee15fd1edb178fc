#include <nlohmann/json.hpp>

#include "web/invoice_json.h"
#include "web/line_readers.h"
#include "web/panel_fixture.h"

namespace ondrel {
namespace {

using enum LineColumn;

class JsonDocument : public PanelTest {};

TEST_F(JsonDocument, IsWrittenWithTheseBlanks) {
  EXPECT_EQ(toJSON(invoice).toText(),
            R"({"id":"0", "invoice":"", "datecreated":"11/24/2026 10:30:00 AM", "departments": []})");
  EXPECT_TRUE(jsonItem(invoice, 1).isEmpty());
  EXPECT_TRUE(jsonItem(invoice, "").isEmpty());
  const Variant cloth = invoice.addItem2(306, 2);
  invoice.addUpcharge2(cloth, "Stain Treatment", 1);
  invoice.addDescriptor(cloth, "Fen", "BR", 1);
  invoice.addItem2(301, 1);
  invoice.ticketNo = 7;
  invoice.invoiceNo = "A7";
  invoice.selectedLineNumber = 4;
  invoice.lineItems->setSort("lineNumber desc");
  // 2 x 9.00 and 2 x 3.00 for the stain; two working days from Tuesday on are Saturday the 28th.
  const std::string children =
      R"("descriptors": [{"lineid":"2","name":"Stain Treatment","type":"UP","quantity":"2","price":"6"}, )"
      R"({"lineid":"3","name":"Fen","type":"BR","quantity":"2","price":"0"}]})";
  EXPECT_EQ(
      toJSON(invoice).toText(),
      R"({"id":"7", "invoice":"A7", "datecreated":"11/24/2026 10:30:00 AM", "departments": [{"deptid":"3",)"
      R"("name":"Laundry","datedue":"11/28/2026","items": [{"lineid":"1","deptid":"3","id":"306",)"
      R"("name":"Tablecloth","type":"IT","quantity":"2","price":"24",)" +
          children +
          R"(, {"lineid":"4","deptid":"3","id":"301","name":"Wash and Fold Bag","type":"IT","quantity":"1",)"
          R"("price":"20","selected": 1,"descriptors": []}]}]})")
      << "in the order of the table, whatever the sort";
  EXPECT_EQ(
      jsonItem(invoice, 1).toText(),
      R"({"lineid":"1","deptid":"3","id":"306","name":"Tablecloth","type":"IT","quantity":"2","price":"24",)"
      R"("baseprice":"18","heatseal":"","notes":"","datedue":"11/28/2026 10:30:00 AM",)" +
          children);
}

TEST_F(JsonDocument, HoldsWhatTheClerkTyped) {
  const std::string hostile = "5\" nail\\hook\r\n\"}],\"x\":\"</script> O'Z\xC3\xBC";
  fillTicket();
  invoice.attachNotes(suit, hostile);
  invoice.renameLineItem(pants, hostile);
  invoice.invoiceNo = hostile;
  invoice.lineItems->addNew(
      {{lineNumber, 90}, {parentLineNumber, -1}, {itemType, "CU"}, {lineItemTotal, 5.0}});
  const auto document = nlohmann::json::parse(toJSON(invoice).toText());
  EXPECT_EQ(document["invoice"], hostile);
  EXPECT_EQ(document["departments"].size(), 3U) << "a line of no department is in none";
  EXPECT_EQ(document["departments"][0]["items"][0]["name"], hostile);
  EXPECT_EQ(document["departments"][0]["items"][1]["selected"], 1);
  invoice.lineItems->setFilter("lineNumber=" + std::to_string(suit));
  invoice.lineItems->setValue(upchargeTotal, Variant::null());
  const auto line = nlohmann::json::parse(jsonItem(invoice, suit).toText());
  EXPECT_EQ(line["notes"], hostile);
  EXPECT_EQ(line["price"], "") << "a sum with Null";
  EXPECT_EQ(line["baseprice"], "18");
  EXPECT_EQ(line["heatseal"], "AA00009");
  invoice.attachNotes(suit, "a\tb");
  const std::string tab = jsonItem(invoice, suit).toText();
  EXPECT_NE(tab.find("\"notes\":\"a\tb\""), std::string::npos) << "as it is, which no reader of JSON takes";
  EXPECT_FALSE(nlohmann::json::accept(tab));
}

TEST_F(JsonDocument, ALookAtTheLinesChangesNothing) {
  fillTicket();
  invoice.invoicesDictionary = std::make_shared<Dictionary>();
  invoice.invoicesDictionary->add(1, ObjectRef(std::make_shared<Invoice>()));
  invoice.lineItems->setFilter("itemType='UP'");
  statements();
  debugLineItems(invoice);
  EXPECT_EQ(invoice.lineItems->filter().toText(), "itemType='UP'");
  EXPECT_TRUE(statements().empty());
  invoice.invoicesDictionary->add(2, "no invoice");
  EXPECT_EQ(errorOf([&] { debugLineItems(invoice); }), 424);
}

}  // namespace
}  // namespace ondrel
