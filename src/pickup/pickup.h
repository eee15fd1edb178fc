#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/array.h"
#include "base/dictionary.h"
#include "base/variant.h"
#include "data/apartment.h"
#include "data/recordset/recordset.h"
#include "pickup/claim_receipt_fields.h"
#include "pickup/pickup_invoice.h"

namespace ondrel {

// A customer at the counter who collects finished tickets, or pays ahead for tickets still in the shop.
//
// A page sets DBConnectionString, storeid, custSeqNumber and userAction, loads the payment types, adds tickets,
// reads amounts and displayRst, adds payments and applies them. Nothing of it is in the database before.
//
// A display line number tells lines of several tickets apart: the place of the ticket in the session, from 0,
// times 1000, and the last three digits of its own line number.
//
// Which calls a page may repeat after an error:
//
// | call                                | repeated                                                         |
// |-------------------------------------|------------------------------------------------------------------|
// | adding tickets, reading, displaying | safe                                                             |
// | addInvoiceObjToPickup               | not safe: error 457, and its minimum prepayment counts twice     |
// | reloadInvoices                      | not safe: the tickets behind the one that failed are gone        |
// | markInvoicePickedUp                 | safe                                                             |
// | markLinePickedUp                    | safe on a fresh apartment or after a read; without one it joins  |
// |                                     | what failed and is never committed                               |
// | enableTicketsPrepayDiscount         | safe for the money: a ticket that has its discount is passed     |
// |                                     | over. Stock and log of a save that broke off behind its commit   |
// |                                     | are not made good                                                |
// | applyPayments that failed           | safe on a fresh apartment, and on the same one: what failed is   |
// |                                     | dropped by the next read or transaction. A claim receipt is      |
// |                                     | stored again                                                     |
// | applyPayments that succeeded        | not safe: the payments go out again                              |
// | recordPickupAction                  | not safe: every call writes the log rows                         |
// | addCoupon, addInvoiceCoupon         | not safe for a percentage: tickets that are saved take it again  |
//
// After an error nothing else of the page's own may run on the apartment in between: a single statement would
// join what failed.
class Pickup : public Object {
 public:
  Pickup();
  std::string_view className() const override { return "pickup"; }

  // ---------------------------------------------------------------- properties
  DictionaryRef pickupInvoices;  // ticket number as given -> pickupInvoice; 0 for one that is not saved
  std::string userAction;        // "prepay" or "pickup"
  RecordsetRef payments;         // see pickup_columns.h
  std::int32_t storeid = 0, custSeqNumber = 0;
  RecordsetRef displayRst;  // see pickup_columns.h; made anew whenever the tickets change
  std::string addOrEdit;    // held for the page
  bool openCashDrawer = false;
  std::int32_t pickupReceipt = 0;
  bool creditCardTranExists = false;
  bool getPickUpSignature = false;  // whether the store asks for one
  ClaimReceiptFieldsRef claimReceipt;
  std::shared_ptr<Invoice> lastInvoiceObj;  // added last of those that are not saved

  const std::string& DBConnectionString() const { return apartment_->DBConnectionString; }
  void setDBConnectionString(const std::string& value) { apartment_->DBConnectionString = value; }

  // ---------------------------------------------------------------- tickets of the session (session.cpp)
  // Empties the session: tickets, payments, flags.
  void initPickupObject();
  Variant isPrepay() const;
  // An unknown ticket is ignored, one that is there already only shown again.
  void addInvoiceToPickup(const Variant& ticketNumber);
  // The same for a ticket that is paid ahead. Within 120 minutes of its writing it earns the prepay discount.
  void addInvoiceToPrepay(const Variant& ticketNumber);
  // An invoice that is not saved yet, at its price with the prepay discount; it stays without it itself. Error
  // 457 for a second one, whose minimum prepayment counts all the same.
  void addInvoiceObjToPickup(const std::shared_ptr<Invoice>& invoiceObj);
  // Reads the tickets anew; payments stay. Does nothing while an unsaved invoice is in the session.
  void reloadInvoices();

  // ---------------------------------------------------------------- amounts (amounts.cpp)
  Variant getMinimumPrepayAmount() const;
  Variant getTotal() const;
  Variant getSubtotal() const;
  // Paid before this session; not rounded.
  Variant getAmountPrepaid() const;
  // Paid before and in this session.
  Variant getAmountPaid();
  Variant getPrepayDiscount() const;
  // What is still to be paid, 0 at least.
  Variant getAmountDue();
  // Cash, checks and what was paid before: change is never more than that.
  Variant getCashPaid();
  Variant getChangeDue();

  // ---------------------------------------------------------------- lines (display.cpp)
  // Error 9 for a line of no ticket.
  Variant getTicketNumberFromLine(const Variant& lineNumber) const;
  Variant getTicketLineNumberFromLine(const Variant& lineNumber) const;
  // Marks the garments and charges of the invoice; leaves displayRst filtered on them.
  void markInvoicePickedUp(const Variant& InvoiceNumber);
  void markLinePickedUp(const Variant& InvoiceNumber, const Variant& lineNumber);
  // Reads the lines of all tickets into displayRst. Errors are passed over: what cannot be read is not shown.
  void populateLineItemsToDisplay();
  std::int32_t getTotalItemCount();
  // The receipt's view of displayRst: a row for each garment or charge, see invoice/tickets/receipt_groups.h.
  RecordsetRef getLineItemsGroupDetails();

  // ---------------------------------------------------------------- lists and the release (tickets.cpp)
  // Ticket numbers for a statement, 0 included.
  std::string constructTicketNosStrForInvDetails() const;
  // Ticket numbers but 0, each in quotes, as one SQL text.
  std::string constructTicketNosString() const;
  Variant getTicketNosForPrinting() const;
  Variant getInvoiceNosForPrinting() const;
  // Empty for a blank or an unknown id.
  Variant getEmployeeName(const Variant& employeeid) const;
  // Writes the release of every ticket into its log.
  void recordPickupAction(const Variant& employeeid);
  Variant isTicketRacked(const Variant& ticketNumber) const;

  // ---------------------------------------------------------------- payments (payments.cpp)
  // A tender; see the table of types in payments.cpp. An unknown type adds nothing. Opens the drawer where the
  // store's payment type does; error 3704 before initStorePaymentTypeInfo.
  void addPayment(const Variant& amtPaid, const Variant& paymentType, const Variant& checkCardNo,
                  const Variant& ExpDate, const Variant& creditCardType, const Variant& amtToBeApplied,
                  const Variant& approvalCode, const Variant& transactionId);
  // The sum of a type; "-Cash" is all but cash, a blank name all. Not rounded.
  double getPaymentByType(const Variant& paymentType);
  // By the same names, but a blank one deletes nothing.
  void deletePaymentByName(const Variant& paymentType);
  void setOpenCashDrawerFlag(const std::string& paymentType);
  void initStorePaymentTypeInfo();
  Variant maskCardNumber(const Variant& value) const;
  // Brings the cash down to what the other payments leave to pay.
  void adjustCashToTotal();
  // Amounts and types as two SQL texts.
  ArrayRef getPaymentLists();
  // What the stored ticket gives back for prepaying, 0 when it does not.
  Variant getTicketPrepayDiscount(const Variant& ticketNumber) const;

  // ---------------------------------------------------------------- applying (applying.cpp)
  // Hands the payments over to the store, with the tickets of the session at pickup and with `ticketNos`, a list
  // in the form of SQL, at prepay. A blank signatureid counts as -1, none. An error leaves the transaction open.
  // A failed call may be repeated, one that succeeded may not; see above.
  void applyPayments(const Variant& employeeid, const Variant& terminalID, const Variant& ticketNos,
                     const Variant& signatureid);
  // Saves the prepay discount on every stored ticket that earns one and does not have it. Safe to repeat as far
  // as money goes.
  Variant enableTicketsPrepayDiscount(Variant& employeeid, Variant& terminalID);

  // ---------------------------------------------------------------- coupons (coupons.cpp)
  // 1 for a flat discount, 2 for a percentage, -1 for none of that id.
  Variant getDiscountType(const Variant& discountID) const;
  // Puts the coupon on every ticket that takes it and saves them; a flat one on the first only. After an error
  // the tickets saved up to there stay saved; it leaves at once, with displayRst as it was before.
  void addCoupon(const Variant& id, const Variant& oneDiscount, const Variant& employeeid,
                 const Variant& terminalID, const Variant& empName, const Variant& storeName);
  // The same for the tickets of one invoice number.
  void addInvoiceCoupon(const Variant& InvoiceNumber, const Variant& id, const Variant& oneDiscount,
                        const Variant& employeeid, const Variant& terminalID, const Variant& empName,
                        const Variant& storeName);
  // The coupons that tickets of the session qualify for, each once: discountId and discountName.
  RecordsetRef getInvoiceCouponRst(const Variant& InvoiceNumber);
  RecordsetRef getDisplayCouponRst();

  struct CopiedColumn;  // see display.cpp

 private:
  // ---------------------------------------------------------------- tickets
  // Error 91 when a page has taken pickupInvoices away; tickets has none then.
  Dictionary& dictionary() const;
  std::vector<PickupInvoiceRef> tickets() const;
  double sumTickets(double PickupInvoice::*amount) const;
  // Still to be paid, below 0 when too much was.
  double openAmount();
  std::shared_ptr<Invoice> newInvoice() const;
  void addPrepaidTicket(const Variant& ticketNumber, const Recordset& row);

  // ---------------------------------------------------------------- lines
  void initDisplayRst();
  std::int32_t toDisplayLineNumber(std::int32_t ticketNumber, std::int32_t line) const;
  void addDisplayLine(Recordset& row);
  void addDisplayCoupon(const Recordset& row, double total);
  void addDisplayRow(const Recordset& row, double total, const std::string& notes);
  void addDisplayModifierRow(const Recordset& row, double total);
  void addDisplayColumns(const Recordset& row, std::span<const CopiedColumn> copied, double total,
                         const std::string& peNotes);
  std::string modifierNote(const Recordset& row);

  // ---------------------------------------------------------------- payments
  void initPayments();
  bool addToExistingPayment(const std::string& type, const Variant& amount);

  void logTicketRelease(std::int32_t ticketNumber, const Variant& employeeid);
  void applyPrepayPayments(const Variant& employeeid, const Variant& terminalID, const std::string& ticketNos,
                           std::int32_t signatureid);
  void applyPickupPayments(const Variant& employeeid, const Variant& terminalID, std::int32_t signatureid);
  void insertTerminalPayments(std::int32_t terminalID, std::int32_t signatureid);
  void addCardAmountApplied(const Variant& transactionNo, const Variant& amount);
  // Number of the new row, Empty when there is no claim.
  Variant saveClaimReceipt();

  // ---------------------------------------------------------------- coupons
  struct CouponSave;  // what the counter tells with a coupon
  std::vector<PickupInvoiceRef> ticketsOfInvoice(const Variant& invoiceNumber) const;
  std::shared_ptr<Invoice> loadForCoupon(const PickupInvoice& ticket) const;
  void addCouponTo(const std::vector<PickupInvoiceRef>& chosen, const CouponSave& save);
  RecordsetRef couponsOf(const std::vector<PickupInvoiceRef>& chosen) const;

  ApartmentRef apartment_;
  std::int32_t nextPaymentNumber_ = 1;
  double minimumPrepay_ = 0;  // of the unsaved invoices
};

}  // namespace ondrel
