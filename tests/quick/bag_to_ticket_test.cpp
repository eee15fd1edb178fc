#include "invoice/invoice.h"
#include "quick/drop_off.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;

class FromBagToTicket : public DropOffTest {
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
