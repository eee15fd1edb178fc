#include <gmock/gmock.h>

#include "invoice/ticket_store.h"

namespace ondrel {
namespace {

using enum LineColumn;
using ::testing::ElementsAre;

class Tickets : public TicketTest {};

// 2.50 times 0.14 and 3.38 are 0.35 and 8.45, which a rounding to cents leaves a bit above the number that the
// database keeps.
TEST_F(Tickets, AGarmentJoinsTheSavedOneOfItsPrice) {
  const auto invoice = invoiceOf(10);
  for (const double share : {0.14, 3.38, 0.14}) invoice->addItem(201, 1, 1, share, 0.01);
  invoice->invoiceDone2();
  save(*invoice, "add");
  const auto again = loaded(invoice->ticketNo);
  again->addItem(201, 1, 1, 3.38, 0.01);
  again->addItem(201, 1, 2, 0.14, 0.01);
  again->addItem(201, 1, 1, 0.15, 0.01);  // 0.38, another price
  std::vector<std::string> garments;
  again->lineItems->setFilter("itemType='IT'");
  for (const auto each = again->lineItems; !each->eof(); each->moveNext())
    garments.push_back(each->text(quantity) + " for " + each->text(lineItemTotal));
  EXPECT_THAT(garments, ElementsAre("4 for 1.4", "2 for 16.9", "1 for 0.38"));
}

// Two pants with a stain, a suit with a seal, three garment bags off the shelf.
TEST_F(Tickets, OfACounterMorning) {
  const auto invoice = invoiceOf(10);
  const Variant pants = invoice->addItem2(101, 2);
  invoice->addUpcharge2(pants, "Stain Treatment", 1);
  const Variant suit = invoice->addItem2(103, 1);
  Variant seal = "AA00100";
  invoice->addHeatSeal(suit, seal);
  invoice->addItem2(150, 3);
  invoice->invoiceDone2();
  save(*invoice, "add");

  EXPECT_EQ(invoice->invoiceNo, "5100");
  // Goods 16.00 + 6.00 + 16.00 + 15.00 = 53.00, surcharge 2% of pants and suit = 0.64, state tax 6% of 53.64 =
  // 3.22, city tax 2.5% of 53.00 = 1.33.
  EXPECT_THAT(
      rows("select invoiceType, ticketStatus, customerSequenceNumber, createdByEmployeeId, terminalId, "
           "dueDate, pickupTime, firstVisit, netTotal, surchargeTotal, employeeName, routeNumber from Ticket "
           "where ticketNumber = 1100"),
      ElementsAre(
          "D | AC | 10 | 4 | 3 | 11/30/2026 10:30:00 AM | 5:00 PM | True | 58.19 | 0.64 | Ann O'Hara | "
          "NULL"));
  EXPECT_THAT(
      rows(
          "select ticketLineType, lineItemName, quantity, lineItemTotal, totalUpchargeAmount, saleOnly, "
          "heatseal, dueDate from TicketLineItem where ticketNumber = 1100 and ticketLineType in ('IT', 'UP')"),
      ElementsAre("IT | Pants | 2 | 16 | 6 | False | NULL | 11/30/2026 10:30:00 AM",
                  "UP | Stain Treatment | 2 | 6 | NULL | False | NULL | 1/1/1900",
                  "IT | Suit 2-Piece | 1 | 16 | 0 | False | AA00100 | 11/30/2026 10:30:00 AM",
                  "IT | Garment Bag | 3 | 15 | 0 | True | NULL | 11/24/2026 10:30:00 AM"));
  EXPECT_EQ(one("select quantityOnHand from inventory where priceListItemId = 150"), "37");
  EXPECT_EQ(one("select visitCount from Customer where customerSequenceNumber = 10"), "2")
      << "with ticket 1011";

  // Two pants and a suit of two pieces, of which one seal needs no tag. A second call draws nothing more.
  for (int time = 1; time <= 2; ++time) {
    invoice->insertTagsForTicket(true);
    EXPECT_THAT(rows("select tagNumber, tagNumberType from TicketTag where ticketNumber = 1100"),
                ElementsAre("301 | T", "302 | T", "303 | T"));
  }
  const auto next = invoiceOf(10), after = invoiceOf(10);
  next->addItem2(201, 1);
  next->invoiceNo = "5101";
  save(*next, "add");
  after->addItem2(201, 1);
  save(*after, "add", "1");
  EXPECT_EQ(after->ticketNo, 1102);
  EXPECT_EQ(after->invoiceNo, "5102") << "a number that the page gave away is passed over";
  EXPECT_EQ(one("select visitCount from Customer where customerSequenceNumber = 10"), "3")
      << "on hold is no visit";
}

// Saved, loaded, finished and saved again, a ticket is what it was.
TEST_F(Tickets, StandARoundTrip) {
  const struct {
    int customer, coupon;
    std::vector<std::string> generated;
  } cases[] = {
      {10, 0, {"SU", "TA"}}, {2, 0, {"SU", "TA", "VI"}}, {16, 1, {"CU", "SU", "TA"}}, {5, 0, {"SU"}}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.customer);
    const auto invoice = invoiceOf(each.customer);
    const Variant pants = invoice->addItem2(101, 3);
    invoice->addUpcharge2(pants, "Stain Treatment", 1);
    invoice->addColor(pants, "White", 3, true, 1, 0.01);
    invoice->attachNotes(pants, "don't press");
    invoice->addItem2(201, 4);
    invoice->getQualifyingCoupons();
    if (each.coupon > 0) invoice->addCoupon(each.coupon);
    invoice->starchPref = "Light";
    invoice->multiPickUpCustName = "J. O'Neil";
    invoice->multiPickUpLoc = "Back door";
    Variant fold = 2, value = "Boxed";
    invoice->setCustomerPreference(fold, value);
    invoice->invoiceDone2();
    save(*invoice, "add");
    const std::string where = " where ticketNumber = " + std::to_string(invoice->ticketNo);
    const auto ticket = [&] {
      std::vector<std::string> all = rows("select * from Ticket" + where);
      for (const std::string& sql :
           {"select multiPickupCustomerName, multiPickupLocation, lastName from TicketCustomer" + where,
            "select * from TicketLineItem" + where +
                " and ticketLineType in ('IT', 'UP', 'CO') order by lineItemNumber",
            "select ticketLineType, departmentID, sum(lineItemTotal) as total from TicketLineItem" + where +
                " group by ticketLineType, departmentID order by ticketLineType, departmentID",
            "select * from customerpreference" + where})
        for (std::string& row : rows(sql)) all.push_back(std::move(row));
      return all;
    };
    const std::vector<std::string> before = ticket();
    EXPECT_THAT(before.at(1), ::testing::StartsWith("J. O'Neil | Back door | "));
    EXPECT_THAT(rows("select distinct ticketLineType from TicketLineItem" + where +
                     " and ticketLineType not in ('IT', 'UP', 'CO') order by 1"),
                each.generated);
    const auto again = loaded(invoice->ticketNo);
    EXPECT_EQ(again->InvDueDate, invoice->InvDueDate);
    EXPECT_EQ(again->preferences->item(2).toText(), "Boxed");
    again->invoiceDone2();
    save(*again, "edit");
    EXPECT_EQ(ticket(), before);
  }
}

// ---------------------------------------------------------------- seals

TEST_F(Tickets, KeepTheirSealsToThemselves) {
  const auto faultOf = [](Invoice& invoice, Variant seal) {
    Variant message = "";
    invoice.isHeatSealValid(seal, message);
    return message.toText();
  };
  const auto invoice = invoiceOf(10);
  EXPECT_EQ(faultOf(*invoice, "AA00001"), "Heat seal 'AA00001' is already on active invoice 5011.");
  EXPECT_EQ(
      faultOf(*invoice, "AA00002"),
      "This heat seal 'AA00002' does not belong to this customer. It was previous used with Basil Coyle.");
  EXPECT_EQ(faultOf(*invoiceOf(4), "AA00002"), "") << "last on a collected ticket of his own";
  EXPECT_EQ(faultOf(*invoice, "AA00004"),
            "This heat seal 'AA00004' does can not be used. The department is disabled.");
  EXPECT_EQ(faultOf(*invoice, "AA00005"),
            "This heat seal 'AA00005' does can not be used. The item is disabled.");
  execute("update PriceListItem set disabled = 1");
  EXPECT_EQ(faultOf(*invoice, "AA00006"),
            "This heat seal 'AA00006' does can not be used. The item, pricelist is disabled.");
  execute("update PriceListItem set disabled = 0");
  EXPECT_EQ(faultOf(*invoice, "B500001"), "") << "known, but never on a ticket";
  const auto own = loaded(1011);
  EXPECT_EQ(faultOf(*own, "AA00001"), "Heat seal AA00001 is already on this invoice.");
  EXPECT_FALSE(own->lineItems->filter().isText());
  own->clearHeatSeals();
  EXPECT_EQ(faultOf(*own, "AA00001"), "") << "taken off its own ticket";
}

TEST_F(Tickets, RememberASealedGarment) {
  const auto invoice = invoiceOf(10);
  Variant jacket = invoice->addItem2(102, 1), seal = "AA00100";
  invoice->addColor(jacket, "Navy", 1, true, 1, 0.01);
  invoice->addUpcharge2(jacket, "Minor Repair", 1);
  invoice->addUpcharge2(jacket, "Lining", 1);
  invoice->setLineHeatSeal(jacket, seal);
  save(*invoice, "add");
  const auto known = [&] {
    return rows(
        "select OccupationPercent, PriceListItemID, descriptortype, descriptorname from taggeditem i join "
        "taggedpiece p on p.taggedItemID = i.taggedItemID join taggeditemdescriptor d on d.taggeditemid = "
        "i.taggedItemID where heatSealID = 'AA00100' order by descriptorname");
  };
  EXPECT_THAT(known(), ElementsAre("25 | 102 | UP | Lining", "25 | 102 | CO | Navy")) << "no one-shot repair";

  const auto link = [&] {
    return rows(
        "select taggedItemID, lineItemNumber from ticketlineitemtaggeditem where ticketNumber = 1100");
  };
  EXPECT_THAT(link(), ElementsAre("8 | " + jacket.toText()));
  const auto again = loaded(1100);
  again->removeDescriptor(jacket, "Lining", "up");
  again->lineItems->setFilter("lineNumber=" + jacket.toText());
  again->lineItems->setValue(lineItemId, 110);
  save(*again, "edit");
  EXPECT_THAT(known(), ElementsAre("25 | 110 | UP | Minor Repair", "25 | 110 | CO | Navy"))
      << "the item follows the line; a loaded line no longer knows that it was for once";
  EXPECT_THAT(link(), ElementsAre("8 | " + jacket.toText())) << "one link, not two";

  const auto later = invoiceOf(10);
  Variant line = later->addItemByHeatSeal("AA00100");
  EXPECT_EQ(later->getDescriptorText(line).toText(), "Navy") << "an overcoat has no such repair";
}

}  // namespace
}  // namespace ondrel
