#include "quick/quick_invoice.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "invoice/invoice.h"
#include "support/error_of.h"
#include "support/store_fixture.h"

namespace ondrel {
namespace {

using enum QuickColumn;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Bags left at shop 1 of the sample store on Tuesday 2026-11-24 at 10:30.
class DropOffs : public StoreTest {
 protected:
  struct Bag {
    int department, pieces;
  };

  static std::shared_ptr<QuickInvoice> dropOff(std::vector<Bag> bags, int customer = 7) {
    const auto made = std::make_shared<QuickInvoice>();
    made->custSeqNumber = customer;
    made->priceListId = 1;
    made->setStoreDays(1);
    for (const Bag& bag : bags) made->addLineItem(bag.pieces, bag.department);
    return made;
  }
  static void save(QuickInvoice& quick, const char* action = "add") {
    quick.saveInvoice(action, 4, 3, "0", "Ann O'Hara", "Fernhill", true);
  }
  // The lines in order, as "1 Dry Cleaning 5: 3 days, 11/30/2026".
  static std::vector<std::string> linesOf(const QuickInvoice& quick) {
    std::vector<std::string> result;
    for (const RecordsetRef line = quick.lineItems->clone(); !line->eof(); line->moveNext())
      result.push_back(fmt::format("{} {} {}: {} days, {}", line->integer(lineNumber), line->text(deptName),
                                   line->value(quantity).joined(), line->value(daysToProcess).joined(),
                                   day(line->date(dueDate))));
    return result;
  }
  static std::string day(Date date) { return date.midnight().text(); }
};

// ---------------------------------------------------------------- lines

TEST_F(DropOffs, HaveOneLineADepartment) {
  const auto quick = dropOff({});
  statements();
  quick->addLineItem(3, 2);
  quick->addLineItem("2", 2);
  quick->addLineItem(1, 99);
  quick->addLineItem(4, 7);
  EXPECT_THAT(linesOf(*quick), ElementsAre("1 Shirts 5: 2 days, 11/28/2026", "2 Redo 4: 0 days, 11/24/2026"))
      << "a department without days of its own has none, not the store's";
  EXPECT_EQ(
      reads().front(),
      "Select IsNull(daysToProcess,0) as daysToProcess, name, notes from Department where departmentid=2");
  quick->lineItems->moveFirst();
  EXPECT_EQ(quick->lineItems->text(peNotes), "Count the hangers");
  EXPECT_EQ(quick->getTotalItemCount().toLong(), 9);
  EXPECT_EQ(quick->getDepartmentPieceCount(7).toLong(), 4);
  EXPECT_EQ(errorOf([&] { quick->addLineItem(1, "1 or 1=1"); }), 13);
  EXPECT_EQ(errorOf([&] { quick->deleteLineItem("9 or lineNumber > 0"); }), 13);

  quick->attachNotes(1, "by the bag");
  quick->updateNotes(2, "again");
  quick->deleteLineItem(1);
  quick->deleteLineItem(8);
  quick->addLineItem(1, 1);
  EXPECT_THAT(linesOf(*quick),
              ElementsAre("2 Redo 4: 0 days, 11/24/2026", "3 Dry Cleaning 1: 3 days, 11/30/2026"));
  EXPECT_EQ(quick->getItemNotes(1).toText() + quick->getItemNotes(2).toText(), "again");
  EXPECT_TRUE(quick->isDepartmentPresent(1).toBoolean() && !quick->isDepartmentPresent(2).toBoolean());
}

// ---------------------------------------------------------------- dates

TEST_F(DropOffs, PromiseWorkingDays) {
  const auto quick = dropOff({{1, 5}, {2, 3}, {4, 1}});
  EXPECT_EQ(day(quick->InvDueDate), "11/30/2026")
      << "three working days, Thanksgiving and Sunday passed over";
  quick->calculateInvDueDate();
  EXPECT_EQ(day(quick->InvDueDate), "12/2/2026") << "household takes five";

  // Thursday 26 is a holiday: the walk reaches Saturday.
  quick->setDeptDueDate("Shirts", "11/26/2026");
  quick->setDeptDueDate("Household", "11/25/2026");
  EXPECT_THAT(linesOf(*quick),
              ElementsAre("1 Dry Cleaning 5: 3 days, 11/30/2026", "2 Shirts 3: 2 days, 11/28/2026",
                          "3 Household 1: 1 days, 11/25/2026"));
  EXPECT_EQ(day(quick->InvDueDate), "11/30/2026");
  quick->setInvoiceDueDate("11/26/2026");
  EXPECT_EQ(day(quick->InvDueDate), "11/28/2026");
  quick->adjustDueDatesForRoute(7);
  EXPECT_THAT(linesOf(*quick).front(), "1 Dry Cleaning 5: 2 days, 11/26/2026") << "out with the next round";
  quick->setAllDepartmentDueDates("12/6/2026");
  EXPECT_EQ(day(quick->InvDueDate), "12/7/2026") << "from Sunday on to Monday";
  EXPECT_THAT(linesOf(*quick).back(), "3 Household 1: 9 days, 12/7/2026");
}

// ---------------------------------------------------------------- splitting

// Groups: cleaning 1, shirts and laundry 2, alterations none.
TEST_F(DropOffs, AreSplitByGroup) {
  const auto quick = dropOff({{1, 2}, {5, 1}, {2, 4}, {3, 1}});
  EXPECT_EQ(quick->getNoOfInvoices().toLong(), 4) << "three that ask for it and one for the rest";
  const DictionaryRef made = quick->splitInvoice();
  ASSERT_EQ(made->count(), 2);
  const auto child = [&](int key) {
    return std::dynamic_pointer_cast<QuickInvoice>(made->item(key).toObject());
  };
  EXPECT_THAT(linesOf(*child(1)),
              ElementsAre("2 Alterations 1: 4 days, 12/1/2026", "3 Shirts 4: 2 days, 11/28/2026",
                          "4 Laundry 1: 2 days, 11/28/2026"))
      << "the higher group first, with those of none";
  EXPECT_THAT(linesOf(*child(2)), ElementsAre("1 Dry Cleaning 2: 3 days, 11/30/2026"));
  EXPECT_EQ(day(child(1)->InvDueDate), "12/1/2026");
  EXPECT_THAT(linesOf(*quick), IsEmpty());
  EXPECT_TRUE(quick->oneDeptWithNoSplitExists(quick->invoiceDeptIds->clone()));

  save(*quick);
  EXPECT_EQ(quick->getTicketNosForPrinting().toText(), "0,1100,1101");
  EXPECT_THAT(
      rows("select ticketNumber, invoiceNumber, customerSequenceNumber, priceListId from Ticket where "
           "ticketNumber > 1099"),
      ElementsAre("1100 | 5100 | 7 | 1", "1101 | 5101 | 7 | 1"));

  const auto full = dropOff({{2, 20}, {3, 50}});
  EXPECT_EQ(full->splitInvoice(), nullptr) << "one group, exactly as many shirts as a ticket takes";
  full->addLineItem(1, 2);
  EXPECT_EQ(full->splitInvoice()->count(), 1) << "beyond the limit, but not cut";
  EXPECT_EQ(errorOf([&] { dropOff({{8, 1}})->splitInvoice(); }), 3021) << "a disabled department";
}

// ---------------------------------------------------------------- tickets

TEST_F(DropOffs, AreSavedInOneTransaction) {
  const auto quick = dropOff({{1, 5}, {5, 0}});
  quick->loadCustomerPreferences(7, "");
  EXPECT_EQ(quick->preferences->item(1).toText() + quick->preferences->item(2).toText(), "LightHanger");
  quick->preferences->removeAll();
  quick->setCustomerPreference(2, "Folded");
  quick->starchPref = "Light";
  quick->attachNotes(1, "Nora's own bag");
  statements();
  save(*quick, "ADD");  // another word, and nothing is sent
  save(*quick);
  const std::string insertLine =
      "INSERT INTO TicketLineItem(ticketNumber, lineItemNumber,  createdByEmployeeID, lastModifiedByEmployeeID,  "
      "parentLineNumber, displaySequence, departmentID,  departmentName, ticketLineType, lineItemID, saleOnly,  "
      "lineItemName, quantity, lineItemTotal, itemNotes, daysToProcess, dueDate) VALUES(1100,";
  EXPECT_THAT(
      statements(),
      ElementsAre(
          "exec dbo.isHeatSealDept '0'", "<begin>",
          "InsertQuickInvoice 1, NULL,1,4,'11/30/2026 10:30:00 AM',7,'Light',NULL,'0',3,0,'Ann "
          "O''Hara','Fernhill','5:00 PM'",
          insertLine + "1,4,4,-1,1,1,'Dry Cleaning','DE',NULL,0,'Dry Cleaning',5,0, 'Nora''s own "
                       "bag',3,'11/30/2026 10:30:00 AM' )",
          insertLine + "2,4,4,-1,2,5,'Alterations','DE',NULL,0,'Alterations',0,0, NULL,4,'12/1/2026 10:30:00 "
                       "AM' )",
          " delete customerpreference where  customersequencenumber = 7 and ticketnumber = 1100",
          " insert into customerpreference (customerpreferencetypeid, customersequencenumber, ticketnumber, "
          "value)  values (2, 7, 1100, 'Folded')",
          "<commit>", "<close>", "select conveyorType as val from miscsetup where storeid = '1'"));
  EXPECT_EQ(quick->invoiceNo, "5100");

  const auto empty = dropOff({{1, 0}});
  save(*empty);
  EXPECT_EQ(empty->ticketNo, 0) << "a line without pieces alone is no ticket";
}

TEST_F(DropOffs, AreLoadedAndSavedAgainAsNew) {
  QuickInvoice quick;
  quick.storeNumber = 1;
  quick.getExistingDetails(1009);
  EXPECT_THAT(linesOf(quick),
              ElementsAre("1 Dry Cleaning 5: 3 days, 11/30/2026", "2 Shirts 8: 2 days, 11/28/2026"));
  EXPECT_EQ(quick.currentLineNumber, 3);
  EXPECT_EQ(quick.custSeqNumber, 7);
  EXPECT_EQ(quick.createdDate.text(), "11/23/2026 4:30:00 PM");
  quick.lineItems->moveLast();
  EXPECT_EQ(quick.lineItems->text(peNotes), "Count the hangers");
  EXPECT_EQ(errorOf([&] { quick.getNoOfInvoices(); }), 91) << "no departments yet";
  quick.priceListId = 1;
  quick.setStoreDays(1);
  EXPECT_EQ(day(quick.InvDueDate), "11/30/2026") << "as it was promised";
  EXPECT_EQ(quick.getNoOfInvoices().toLong(), 1) << "two, of which it is one itself";
  quick.invoiceNo = " ";
  save(quick);
  EXPECT_EQ(scalar("select invoiceNumber from Ticket where ticketNumber = 1100").joined(), "5100");
}

// Both parts of 1009 are new tickets out of one with departments to be sealed, of which one kind of conveyor hears.
TEST_F(DropOffs, AreToldToOneKindOfConveyor) {
  save(*dropOff({{1, 5}}));
  for (const char* conveyor : {"'WH'", "'wh'", "null"}) {
    execute(std::string("update miscsetup set conveyorType = ") + conveyor + " where storeid = 1");
    QuickInvoice quick;
    quick.priceListId = 1;
    quick.getExistingDetails(1009);
    quick.setStoreDays(1);
    quick.splitInvoice();
    save(quick);
  }
  EXPECT_THAT(rows("select action, ticketNumber, queuedDate from ConveyorQueue"),
              ElementsAre("TICKET_CREATE | 1101 | 11/24/2026 10:30:00 AM",
                          "TICKET_CREATE | 1102 | 11/24/2026 10:30:00 AM"));
}

// ---------------------------------------------------------------- from the bag to a ticket

class FromBagToTicket : public DropOffs {
 protected:
  static std::shared_ptr<Invoice> opened(int ticket) {
    const auto invoice = std::make_shared<Invoice>();
    invoice->getExistingDetails(ticket);
    invoice->addOrEdit = "edit";
    invoice->setStoreDays(1);
    return invoice;
  }
  static void finish(Invoice& invoice) {
    invoice.invoiceDone2();
    invoice.saveInvoice("edit", 4, 3, "0", "Ann O'Hara", "Fernhill", true);
  }
  std::vector<std::string> stored() {
    return rows(
        "select invoiceType, ticketLineType, l.departmentName, lineItemName, quantity from Ticket t join "
        "TicketLineItem l on l.ticketNumber = t.ticketNumber where t.ticketNumber = 1100 and ticketLineType in "
        "('IT', 'DE') order by ticketLineType, lineItemName");
  }
};

// Four pieces of cleaning and three of laundry left in a hurry, itemised in two goes.
TEST_F(FromBagToTicket, ItemisedToTheLastPiece) {
  const auto quick = dropOff({{1, 4}, {3, 3}});
  quick->setDeptDueDate("Dry Cleaning", "12/2/2026");
  save(*quick);

  auto invoice = opened(1100);
  EXPECT_TRUE(invoice->isQuickInvoice());
  EXPECT_EQ(invoice->exportQuickItems().toText(), "1,4,12/2/2026 10:30:00 AM\r\n3,3,11/28/2026 10:30:00 AM");
  invoice->addItem2(103, 1);
  const Variant pants = invoice->addItem2(101, 1);
  invoice->addItem2(303, 1);
  EXPECT_EQ(invoice->exportQuickItems().toText(), "1,1,12/2/2026 10:30:00 AM")
      << "a suit of two pieces and pants out of four, a set of three sheets out of three";
  EXPECT_EQ(invoice->getDeptDueDate("Dry Cleaning").toText(), "12/2/2026")
      << "garments join the bag's promise";
  finish(*invoice);
  EXPECT_THAT(stored(),
              ElementsAre("Q | DE | Dry Cleaning | Dry Cleaning | 1", "Q | IT | Dry Cleaning | Pants | 1",
                          "Q | IT | Laundry | Sheet Set | 1", "Q | IT | Dry Cleaning | Suit 2-Piece | 1"));

  invoice = opened(1100);
  invoice->deleteItem(pants);
  EXPECT_EQ(invoice->exportQuickItems().toText(), "1,2,12/2/2026 10:30:00 AM") << "back into the bag";
  invoice->addItem2(101, 2);
  finish(*invoice);
  EXPECT_THAT(stored(), ElementsAre("D | IT | Dry Cleaning | Pants | 2", "D | IT | Laundry | Sheet Set | 1",
                                    "D | IT | Dry Cleaning | Suit 2-Piece | 1"));
  EXPECT_THAT(rows("select dueDate, invoiceNumber from Ticket where ticketNumber = 1100"),
              ElementsAre("12/2/2026 | 5100"));
}

// Six pieces of cleaning and three of laundry: some garments are written up, the bag keeps its ticket and they
// get their own.
TEST_F(FromBagToTicket, GarmentsLeaveTheBag) {
  save(*dropOff({{1, 6}, {3, 3}}));
  const auto invoice = opened(1100);
  const Variant pants = invoice->addItem2(101, 1);
  invoice->addItem2(302, 1);
  invoice->changeQuantity(2, pants);  // which comes on top of the bag, unlike a new garment
  invoice->invoiceDone2();
  ASSERT_EQ(invoice->splitInvoice("edit")->count(), 3);
  invoice->saveInvoice("edit", 4, 3, "0", "Ann O'Hara", "Fernhill", true);
  EXPECT_THAT(
      rows("select l.ticketNumber, t.invoiceNumber, ticketLineType, l.departmentName, quantity from Ticket "
           "t join TicketLineItem l on l.ticketNumber = t.ticketNumber where t.ticketNumber > 1099 and "
           "ticketLineType in ('IT', 'DE') order by l.ticketNumber, l.departmentName"),
      ElementsAre("1100 | 5100 | DE | Dry Cleaning | 6", "1100 | 5100 | DE | Laundry | 2",
                  "1101 | 5101 | IT | Laundry | 1", "1102 | 5102 | IT | Dry Cleaning | 2"));
}

}  // namespace
}  // namespace ondrel
