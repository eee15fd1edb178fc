#include "invoice/tickets/saving.h"

#include <fmt/format.h>

#include "data/query_database.h"
#include "invoice/invoice.h"
#include "invoice/pricing/offers.h"
#include "invoice/pricing/referral.h"
#include "invoice/seals/tagged_items.h"
#include "invoice/splitting/line_moves.h"

namespace ondrel {
namespace {

enum class Write { nothing, insert, update };

// How a save goes out: what is written for the invoice itself, and how its children are saved.
struct SavePath {
  Write self;
  bool firstChildTakesTicket;  // the ticket that exists survives as the first child
  std::string_view firstChild, otherChildren;
};

// clang-format off
// | user action  | split | the invoice itself      | its first child                 | its other children |
// |--------------|-------|-------------------------|---------------------------------|--------------------|
// | not "edit"   | any   | a new ticket, unless    | by the same action              | by the same action |
// |              |       | it is empty             |                                 |                    |
// | "edit"       | no    | over its ticket         |                                 |                    |
// | "edit"       | yes   | not empty: over its     | "add"                           | "add"              |
// |              |       | ticket                  |                                 |                    |
// | "edit"       | yes   | empty: nothing          | "edit", over the invoice's      | "add"              |
// |              |       |                         | ticket, with its numbers        |                    |
// clang-format on
SavePath pathOf(std::string_view userAction, bool split, bool empty) {
  if (userAction != "edit") return {empty ? Write::nothing : Write::insert, false, userAction, userAction};
  if (split && empty) return {Write::nothing, true, "edit", "add"};
  return {Write::update, false, "add", "add"};
}

}  // namespace

Variant Invoice::isInvoiceEmpty() {
  lineItems->setFilter("itemType = 'IT' OR itemType = 'AC' OR itemType = 'DE'");
  const bool empty = lineItems->recordCount() == 0;
  lineItems->clearFilter();
  return empty;
}

void Invoice::saveInvoice(const Variant& userAction, const Variant& employeeid, const Variant& terminal,
                          const Variant& onHold, const Variant& empName, const Variant& storeName,
                          const Variant&) {
  // A ticket put on hold was not finished, so its coupons are spread here.
  if (onHold.joined() == "1") {
    applyOffers(*this, kCouponOffer, false);
    applyOffers(*this, kLoyaltyOffer, false);
  }
  const std::string action = userAction.joined();
  const SaveRequest request{employeeid.toLong(), terminal.toLong(), onHold, empName.joined(),
                            storeName.joined()};
  const SavePath path = pathOf(action, splitTheInvoice, isInvoiceEmpty().toBoolean());

  if (path.self == Write::insert) {
    applyReferralCredit(*this);
    insertTicket(request);
  } else if (path.self == Write::update) {
    updateTicket(request);
  }
  if (splitTheInvoice) {
    bool first = true;
    for (const auto& child : splitChildren(*this)) {
      if (first && path.firstChildTakesTicket) {
        child->invoiceNo = invoiceNo;
        child->ticketNo = ticketNo;
      }
      child->saveInvoice(first ? path.firstChild : path.otherChildren, employeeid, terminal, onHold,
                         request.employeeName, request.storeName, false);
      first = false;
    }
  }
  finishSave(action, onHold);
}

// What follows for this object, whether or not it wrote a ticket itself; its children have had theirs.
void Invoice::finishSave(std::string_view userAction, const Variant& onHold) {
  saveTicketTags(*this, userAction);
  if (invoiceOnDelivery) addDeliveryWillCall();
  if (userAction == "add" && onHold.joined() == "0" && !counterSaleOnly) updateVisitsAndOffers();
}

void Invoice::addDeliveryWillCall() {
  executeInTransaction(
      *apartment_,
      fmt::format(
          " insert into deliverywillcall  (customersequencenumber, actionrequired, ticketnumber)  values "
          "({}, 'DROPOFF', {})",
          custSeqNumber, ticketNo));
}

void Invoice::updateVisitsAndOffers() {
  executeInTransaction(
      *apartment_,
      fmt::format("UPDATE Customer SET visitCount = dbo.getCustomerVisits(customersequencenumber, "
                  "null, null) where customerSequenceNumber ={}",
                  custSeqNumber));
  lineItems->setFilter("itemType='LY'");
  for (; !lineItems->eof(); lineItems->moveNext()) {
    if (lineItems->isNull(LineColumn::lineItemId)) continue;
    executeInTransaction(*apartment_,
                         fmt::format("update loyaltyCustomerOffers set noOfUses = noOfUses-1 where "
                                     "customerSequenceNumber ={} and discountId ={}",
                                     custSeqNumber, lineItems->integer(LineColumn::lineItemId)));
  }
  lineItems->clearFilter();
}

}  // namespace ondrel
