#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "invoice/invoice.h"
#include "invoice/ticket_tag.h"
#include "support/fake_database.h"

namespace ondrel {
namespace {

using enum LineColumn;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

// What a save sends, against a database of prepared answers.
class SavingTexts : public ::testing::Test {
 protected:
  SavingTexts() {
    apartment->clock = std::make_shared<FixedClock>(Date::of(2026, 11, 24, 10, 30));
    database.attachTo(*apartment);
    database.answer("InsertTicket", tableOf({"TicketNumber", "InvoiceNumber"}, {{501, "10501"}}));
    database.answer("UpdateTicket", tableOf({"TicketNumber", "LogDate"}, {{77, Date::of(2026, 11, 24, 12)}}));
  }

  std::shared_ptr<Invoice> ticket() {
    const auto made = std::make_shared<Invoice>();
    made->storeNumber = 1;
    made->priceListId = 2;
    made->custSeqNumber = 7;
    made->routeNumber = -1;
    return made;
  }
  static void addGarment(Invoice& invoice) {
    // clang-format off
    invoice.lineItems->addNew({
        {lineNumber, 1}, {parentLineNumber, -1}, {itemType, "IT"}, {deptId, 1}, {deptName, "Men's"},
        {lineItemId, 101}, {itemName, "Pants"}, {originalUnitPrice, 10}, {unitPrice, 8}, {quantity, 2},
        {lineItemTotal, 16}, {taxableAmt, 15.5}, {totalTax, 1.32}, {upchargeTotal, 3}, {prepay, 0.5},
        {notes, "don't press"}, {daysToProcess, 3}, {dueDate, Date::of(2026, 11, 27)}, {VIPQualified, true},
        {pkgQuantity, 1}});
    invoice.lineItems->addNew({
        {lineNumber, 2}, {parentLineNumber, 1}, {itemType, "UP"}, {deptName, "Men's"}, {lineItemId, 9},
        {itemName, "Crease"}, {originalUnitPrice, 3}, {unitPrice, 3}, {quantity, 1}, {lineItemTotal, 3},
        {taxableAmt, 3}, {totalTax, 0.25}});
    // clang-format on
  }
  static void save(Invoice& invoice, const char* action, Variant onHold = "0") {
    invoice.saveInvoice(action, 4, 3, onHold, "Ann O'Hara", Variant(), true);
  }
  // What was sent from the first write of a ticket on, of the steps of connections the commits alone.
  std::vector<std::string> sent() {
    std::vector<std::string> log = database.take();
    const auto first = std::find_if(log.begin(), log.end(), [](const std::string& entry) {
      return entry.starts_with("InsertTicket ") || entry.starts_with("UpdateTicket ");
    });
    log.erase(log.begin(), first);
    std::erase_if(log, [](const std::string& entry) { return entry.front() == '<' && entry != "<commit>"; });
    return log;
  }

  std::shared_ptr<Apartment> apartment = std::make_shared<Apartment>();
  ApartmentScope scope{apartment};
  FakeDatabase database;
};

TEST_F(SavingTexts, OfANewTicket) {
  const auto invoice = ticket();
  addGarment(*invoice);
  invoice->starchPref = "Light";
  invoice->invoiceOnDelivery = true;
  apartment->store.defaultPickupTimes.fill(" 5:00 PM ");
  save(*invoice, "add");

  const std::string insert =
      "INSERT INTO TicketLineItem(ticketNumber, lineItemNumber,  createdByEmployeeID, lastModifiedByEmployeeID,  "
      "parentLineNumber, displaySequence, departmentID,  departmentName, ticketLineType, lineItemID, saleOnly,  "
      "lineItemName, originalUnitPrice, unitPrice, quantity,  lineItemTotal, totalTaxPercent, "
      "totalSurchargePercent,  lineItemTaxableAmount, itemNotes,  outsideService, totalUpchargeAmount, "
      "chargeTaxCode, packagedQuantity, daysToProcess, dueDate, priceLater, promptResponse, redo, "
      "prepaydiscount, invoicenumber, pickedup, heatseal) VALUES(501,";
  EXPECT_THAT(
      sent(),
      ElementsAre(
          // VIP: 15.50 + 1.32 of the garment, 3.00 + 0.25 of its upcharge. Goods: 16.00 + 1.32 + 3.00 + 0.25.
          "InsertTicket 1, Null,'D','AC',2,NULL,4,'11/27/2026',7,'Light',NULL,0,3,0.00,19.00,0.00,0.00,NULL,NULL,1,"
          "20.07,0.00,0.00,0,20.57,4.00,0.00,'Ann O''Hara','',0,'5:00 PM', 0",
          " delete from ticketlineitemtaggeditem where ticketnumber = '501'",
          insert +
              "1,4,4,-1,1,1,'Men''s','IT',101,0,'Pants',10.00,8.00,2,16.00,1.32,0.00,15.50, 'don''t press', "
              "0, 3.00, NULL, 1,3,'11/27/2026', 0, NULL, 0, 0.5, '', 0, NULL)",
          insert +
              "2,4,4,1,2,NULL,'Men''s','UP',9,0,'Crease',3.00,3.00,1,3.00,0.25,0.00,3.00, NULL, 0, NULL, "
              "NULL, 1,NULL,'', 0, NULL, 0, 0, '', 0, NULL)",
          "<commit>", "UpdateInventory 501,1", "<commit>",
          " delete customerpreference where  customersequencenumber = 7 and ticketnumber = 501", "<commit>",
          " insert into deliverywillcall  (customersequencenumber, actionrequired, ticketnumber)  values (7, "
          "'DROPOFF', 501)",
          "<commit>",
          "UPDATE Customer SET visitCount = dbo.getCustomerVisits(customersequencenumber, null, null) where "
          "customerSequenceNumber =7",
          "<commit>"));
  EXPECT_EQ(invoice->starchPref, "'Light'") << "holds its SQL text from now on";
  EXPECT_FALSE(invoice->lineItems->filter().isText());
  invoice->lineItems->moveLast();
  EXPECT_EQ(invoice->lineItems->integer(pkgQuantity), 1) << "a missing pack is one piece, in memory too";
}

TEST_F(SavingTexts, OverATicket) {
  const auto invoice = ticket();
  addGarment(*invoice);
  invoice->ticketNo = 77;
  invoice->invoiceNo = "10077";
  invoice->ticketLogItems->addNew({{LogColumn::itemLogType, "O"},
                                   {LogColumn::quantity, 2},
                                   {LogColumn::deptName, "Men's"},
                                   {LogColumn::itemName, ""},
                                   {LogColumn::amount, -1.5}});
  apartment->store.defaultPickupTimes.fill("5 o'clock");
  save(*invoice, "edit");
  EXPECT_THAT(
      sent(),
      ElementsAre(
          "UpdateTicket 77,'NULL',4,'11/27/2026',7,NULL,NULL,0,3,0.00,19.00,0.00,0.00,NULL,NULL,20.07,0.00,0.00,0,"
          "20.57,4.00,0.00,'Ann O''Hara','',0,'D','5 o''clock', 0",
          "UpdateInventory 77,0", "Delete TicketLineItem where ticketNumber=77",
          " delete from ticketlineitemtaggeditem where ticketnumber = '77'", HasSubstr("'IT'"),
          HasSubstr("'UP'"), "<commit>",
          "INSERT INTO TicketLogItem(ticketNumber,  logDate, logType, quantity, deptName, itemName, amount) "
          "VALUES(77,'11/24/2026 12:00:00 PM','O',2,'Men''s',NULL,-1.50)",
          "<commit>", "UpdateInventory 77,1", "<commit>", HasSubstr(" delete customerpreference"),
          "<commit>"))
      << "no visit is counted";
}

// What differs in the header of a new ticket.
TEST_F(SavingTexts, OfTheHeaderFollowTheInvoice) {
  const std::pair<std::function<void(Invoice&)>, const char*> kHeaders[] = {
      {[](Invoice& i) { i.invoiceNo = "A7"; }, "InsertTicket 1, 'A7','D','AC',2,NULL,"},
      {[](Invoice& i) { i.invoiceType = "Q"; }, "InsertTicket 1, Null,'Q','AC',2,NULL,"},
      {[](Invoice& i) { i.routeNumber = 5; }, "InsertTicket 1, Null,'D','AC',2,5,"},
      {[](Invoice& i) { i.counterSaleOnly = true; }, "InsertTicket 1, Null,'C','AC',"},
      {[](Invoice& i) { i.counterSaleOnly = true; }, "NULL,NULL,0,20.07"},  // no first visit
      {[](Invoice& i) { i.custVisitCount = 3; }, "NULL,NULL,0,20.07"},
      {[](Invoice& i) { i.multiPickUpCustName = "J. O'Neil"; }, "'J. O''Neil',NULL,1,20.07"}};
  for (const auto& [change, part] : kHeaders) {
    const auto invoice = ticket();
    addGarment(*invoice);
    change(*invoice);
    save(*invoice, "add", "1");
    EXPECT_THAT(sent().front(), HasSubstr(part));
  }
}

// The sums of the header, and of two re-cleans one copy of the customer.
TEST_F(SavingTexts, OfTheHeaderSumByKind) {
  const auto invoice = ticket();
  for (const char* name : {"Laundry", "Redo", "Redo"})
    invoice->lineItems->addNew({{itemType, "IT"}, {deptName, name}});
  // clang-format off
  const std::pair<const char*, double> kLines[] = {{"TA", 1.25}, {"SU", 2}, {"CU", 3}, {"LY", 0.5},
                                                   {"PR", 1.004}, {"RE", 1.004}, {"VI", 1.004}, {"AC", 7}};
  // clang-format on
  for (const auto& [type, total] : kLines)
    invoice->lineItems->addNew(
        {{itemType, type}, {lineItemTotal, total}, {taxableAmt, total / 2}, {totalTax, 1}, {lineItemId, 6}});
  invoice->ticketNo = 77;
  save(*invoice, "edit");
  const std::vector<std::string> log = sent();
  EXPECT_THAT(log.front(), HasSubstr(",1.25,2.00,NULL,NULL,0.00,3.50,3.00,0,8.00,0.00,4.50,"));
  const auto copiesCustomer = [](const std::string& entry) {
    return entry.starts_with("insert into redoCust select c.customerid, ");
  };
  EXPECT_EQ(std::count_if(log.begin(), log.end(), copiesCustomer), 1);
}

// The writes of a save by action, split and parent: "new" or the number of the ticket written over.
TEST_F(SavingTexts, GoTheWayOfTheActionAndTheSplit) {
  const auto writes = [&](const char* action, bool split, bool empty) {
    const auto parent = ticket();
    parent->ticketNo = 77;
    parent->invoiceNo = "P";
    if (!empty) addGarment(*parent);
    parent->splitTheInvoice = split;
    parent->invoicesDictionary = std::make_shared<Dictionary>();
    for (int key = 1; key <= 2; ++key) {
      const auto child = ticket();
      child->routeNumber = 100 + key;
      addGarment(*child);
      parent->invoicesDictionary->add(key, child);
    }
    save(*parent, action);
    std::string result;
    for (const std::string& entry : sent()) {
      const bool ofChild = entry.find("101") != std::string::npos || entry.find("102") != std::string::npos;
      if (entry.starts_with("InsertTicket")) result += ofChild ? "child new " : "parent new ";
      if (entry.starts_with("UpdateTicket 77")) result += ofChild ? "child over " : "parent over ";
    }
    return result;
  };
  EXPECT_EQ(writes("add", false, false), "parent new ");
  EXPECT_EQ(writes("add", false, true), "");
  EXPECT_EQ(writes("add", true, false), "parent new child new child new ");
  EXPECT_EQ(writes("add", true, true), "child new child new ");
  EXPECT_EQ(writes("edit", false, false), "parent over ");
  EXPECT_EQ(writes("edit", false, true), "parent over ");
  EXPECT_EQ(writes("edit", true, false), "parent over child new child new ");
  EXPECT_EQ(writes("edit", true, true), "child over child new ");
  EXPECT_EQ(writes("copy", true, false), "parent new child new child new ");
}

TEST_F(SavingTexts, OfTheTail) {
  const auto invoice = ticket();
  const auto tag = std::make_shared<TicketTag>();
  tag->TagNumber = "T1";
  tag->TagColor = "Red";
  invoice->ticketTags = std::make_shared<Dictionary>();
  invoice->ticketTags->add("a", tag);
  invoice->lineItems->addNew({{itemType, "LY"}, {lineItemId, 31}, {lineNumber, 1}});
  const auto tail = [&](const char* action) {
    database.take();
    save(*invoice, action);
    std::vector<std::string> statements;
    for (const std::string& entry : database.take())
      if (entry.find("TicketTag ") != std::string::npos || entry.find("loyaltyCustomer") != std::string::npos)
        statements.push_back(entry);
    return statements;
  };
  const std::string insertTag =
      "INSERT INTO TicketTag (ticketNumber, tagNumber, tagNumberType, tagColor, lotNumber)  VALUES(0,'T1', 'T' "
      ",'Red', '')";
  EXPECT_THAT(tail("add"), ElementsAre(insertTag,
                                       "update loyaltyCustomerOffers set noOfUses = noOfUses-1 where "
                                       "customerSequenceNumber =7 and discountId =31"))
      << "an invoice that wrote no ticket has its tail all the same";
  EXPECT_THAT(tail("copy"), ElementsAre(insertTag));
  EXPECT_THAT(tail("edit"), ElementsAre("Delete TicketTag Where ticketNumber=0", insertTag));
  invoice->counterSaleOnly = true;
  EXPECT_THAT(tail("add"), ElementsAre(insertTag));
}

TEST_F(SavingTexts, OfAQuickTicketItemisedToTheEnd) {
  const auto typeAfter = [&](std::vector<int> pieces) {
    const auto invoice = ticket();
    invoice->invoiceType = "Q";
    for (const int count : pieces) invoice->lineItems->addNew({{itemType, "DE"}, {quantity, count}});
    save(*invoice, "edit");
    return invoice->invoiceType + std::to_string(invoice->lineItems->recordCount());
  };
  EXPECT_EQ(typeAfter({}), "D0");
  EXPECT_EQ(typeAfter({0, -1}), "D0");
  EXPECT_EQ(typeAfter({0, 2, 0}), "Q1");
}

// Back from a finished ticket to an entry.
TEST_F(SavingTexts, TakeBackWhatFinishingMade) {
  const auto invoice = ticket();
  addGarment(*invoice);
  const std::pair<const char*, Variant> kMade[] = {
      {"CU", 1}, {"CU", 2}, {"CU", Variant::null()}, {"ta", 1}, {"SU", 1}, {"VI", 1}, {"RE", 1}, {"PR", 1},
      {"AC", 1}, {"LY", 1}};
  for (const auto& [type, department] : kMade)
    invoice->lineItems->addNew(
        {{itemType, type}, {deptId, department}, {lineItemId, 31}, {lineItemTotal, 2.5}});
  invoice->currentLineNumber = 13;
  const auto child = ticket();
  child->lineItems->addNew({{itemType, "IT"}, {lineNumber, 8}, {lineItemTotal, 4}, {chargeTaxCode, 5}});
  invoice->invoicesDictionary = std::make_shared<Dictionary>();
  invoice->invoicesDictionary->add(1, child);
  invoice->splitTheInvoice = true;

  invoice->cancelDoneOperation();
  std::string kinds;
  for (invoice->lineItems->moveFirst(); !invoice->lineItems->eof(); invoice->lineItems->moveNext())
    kinds += invoice->lineItems->text(itemType) + " ";
  EXPECT_EQ(kinds, "IT UP CU AC LY IT ");
  EXPECT_FALSE(invoice->splitTheInvoice || invoice->invoicesDictionary);
  EXPECT_DOUBLE_EQ(invoice->liColTotal("lineItemTotal", "itemType='CU' and deptId=Null").toDouble(), 7.5);
  EXPECT_DOUBLE_EQ(invoice->liColTotal("taxableAmt", "itemType='IT'").toDouble(), 20);
  EXPECT_EQ(invoice->liColTotal("chargeTaxCode", "itemType='IT'").toLong(), 0) << "the tax code stays behind";
}

}  // namespace
}  // namespace ondrel
