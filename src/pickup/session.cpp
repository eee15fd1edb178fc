#include "data/query_database.h"
#include "pickup/pickup.h"
#include "pickup/ticket_store_tables.h"

namespace ondrel {
namespace {

// Minutes after its writing in which a ticket can still earn the prepay discount.
constexpr std::int32_t kPrepayMinutes = 120;

void setPrepay(Invoice& invoice, bool enabled) {
  Variant value = enabled;
  invoice.applyPrepay(value);
}

}  // namespace

Pickup::Pickup() : apartment_(Apartment::current()) {
  initPickupObject();
}

void Pickup::initPickupObject() {
  pickupInvoices = std::make_shared<Dictionary>();
  initPayments();
  minimumPrepay_ = 0;
  nextPaymentNumber_ = 1;
  openCashDrawer = creditCardTranExists = getPickUpSignature = false;
}

Variant Pickup::isPrepay() const {
  return userAction == "prepay";
}

// ---------------------------------------------------------------- tickets to collect

void Pickup::addInvoiceToPickup(const Variant& ticketNumber) {
  if (!dictionary().exists(ticketNumber)) {
    const RecordsetRef row =
        queryDatabase(*apartment_,
                      "select ticketnumber, invoicenumber, amountPaid, nettotal from ticket where "
                      "ticketnumber = '" +
                          escapeSqlValue(ticketNumber) + "'");
    if (!row->eof()) {
      const auto ticket = std::make_shared<PickupInvoice>();
      ticket->ticketNumber = row->integer("ticketnumber");
      ticket->InvoiceNumber = row->text("invoicenumber");
      ticket->amountPaid = row->number("amountPaid");
      ticket->invoiceTotal = row->number("nettotal");
      dictionary().add(ticketNumber, ticket);
      populateLineItemsToDisplay();
    }
  }
  populateLineItemsToDisplay();
}

// ---------------------------------------------------------------- tickets paid ahead

void Pickup::addInvoiceToPrepay(const Variant& ticketNumber) {
  if (!dictionary().exists(ticketNumber)) {
    const RecordsetRef row =
        queryDatabase(*apartment_,
                      "select ticketnumber, invoicenumber, amountPaid, nettotal, datediff(minute, "
                      "createddate, getdate()) as age from ticket where ticketnumber = '" +
                          escapeSqlValue(ticketNumber) + "'");
    if (!row->eof()) {
      addPrepaidTicket(ticketNumber, *row);
      populateLineItemsToDisplay();
    }
  }
  populateLineItemsToDisplay();
}

void Pickup::addPrepaidTicket(const Variant& ticketNumber, const Recordset& row) {
  const std::shared_ptr<Invoice> invoice = newInvoice();
  invoice->storeNumber = storeid;
  invoice->getExistingDetails(ticketNumber);
  invoice->ticketNo = row.integer("ticketnumber");
  invoice->invoiceNo = row.text("invoicenumber");
  invoice->amountPaid = row.number("amountPaid");
  invoice->invoiceTotal = row.number("nettotal");
  const TicketStoreTables tables(*apartment_, *invoice);
  const bool earnsDiscount = !row.isNull("age") && row.integer("age") <= kPrepayMinutes;
  if (earnsDiscount) setPrepay(*invoice, true);
  invoice->invoiceDone2();

  const auto ticket = std::make_shared<PickupInvoice>();
  ticket->ticketNumber = invoice->ticketNo;
  ticket->InvoiceNumber = invoice->invoiceNo;
  ticket->amountPaid = invoice->amountPaid;
  ticket->prepayDiscount = earnsDiscount ? invoice->getPrepayDiscount().toDouble() : 0;
  ticket->invoiceTotal = row.number("nettotal") + ticket->prepayDiscount;
  dictionary().add(ticketNumber, ticket);
}

// ---------------------------------------------------------------- invoices that are not saved

void Pickup::addInvoiceObjToPickup(const std::shared_ptr<Invoice>& invoiceObj) {
  if (!invoiceObj)
    throw Error(ErrorNumber::ObjectNotSet, "pickup", "Object variable or With block variable not set");
  setPrepay(*invoiceObj, true);
  invoiceObj->invoiceDoneAgain();
  minimumPrepay_ += invoiceObj->getMinimumPrepay().toDouble();

  const auto ticket = std::make_shared<PickupInvoice>();
  ticket->prepayDiscount = invoiceObj->getPrepayDiscount().toDouble();
  ticket->invoiceTotal = invoiceObj->getInvoiceAmountToPay() + ticket->prepayDiscount;
  ticket->invoiceObject = invoiceObj;
  dictionary().add(0, ticket);
  populateLineItemsToDisplay();

  setPrepay(*invoiceObj, false);
  invoiceObj->invoiceDoneAgain();
  lastInvoiceObj = invoiceObj;
}

// ---------------------------------------------------------------- all of them

void Pickup::reloadInvoices() {
  const std::vector<Variant> keys = dictionary().keys();
  for (const Variant& key : keys)
    if (!isGreater(key, 0)) return;
  dictionary().removeAll();
  minimumPrepay_ = 0;
  if (isPrepay().toBoolean()) {
    for (const Variant& key : keys) addInvoiceToPrepay(key);
    return;
  }
  for (const Variant& key : keys) addInvoiceToPickup(key);
  if (isGreater(getChangeDue(), 0)) openCashDrawer = true;
}

Dictionary& Pickup::dictionary() const {
  if (!pickupInvoices) throw Error(ErrorNumber::ObjectNotSet, "pickup", "Object variable not set");
  return *pickupInvoices;
}

std::vector<PickupInvoiceRef> Pickup::tickets() const {
  std::vector<PickupInvoiceRef> result;
  if (!pickupInvoices) return result;
  for (const Variant& item : pickupInvoices->items()) {
    result.push_back(std::dynamic_pointer_cast<PickupInvoice>(item.toObject()));
    if (!result.back())
      throw Error(ErrorNumber::TypeMismatch, "pickup", "An item of pickupInvoices is not a pickupInvoice");
  }
  return result;
}

std::shared_ptr<Invoice> Pickup::newInvoice() const {
  const ApartmentScope scope(apartment_);
  return std::make_shared<Invoice>();
}

}  // namespace ondrel
