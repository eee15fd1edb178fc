#include "automation/classes/class_tables.h"
#include "automation/classes/working_table.h"
#include "pickup/pickup.h"
#include "pickup/pickup_columns.h"

namespace ondrel {

const ClassTable& pickupClass() {
  // clang-format off
  static const ClassTable table("pickup", {
      // ---- properties
      property("pickupInvoices", &Pickup::pickupInvoices),
      property("userAction", &Pickup::userAction),
      workingTable<&Pickup::payments, kPaymentLayout>("payments"),
      property("storeid", &Pickup::storeid),
      property("custSeqNumber", &Pickup::custSeqNumber),
      workingTable<&Pickup::displayRst, kDisplayLayout>("displayRst"),
      property("addOrEdit", &Pickup::addOrEdit),
      property("openCashDrawer", &Pickup::openCashDrawer),
      property("pickupReceipt", &Pickup::pickupReceipt),
      property("creditCardTranExists", &Pickup::creditCardTranExists),
      property("getPickUpSignature", &Pickup::getPickUpSignature),
      property("claimReceipt", &Pickup::claimReceipt),
      property("lastInvoiceObj", &Pickup::lastInvoiceObj),
      property("DBConnectionString", &Pickup::DBConnectionString, &Pickup::setDBConnectionString),

      // ---- tickets of the session
      method("initPickupObject", &Pickup::initPickupObject),
      method("isPrepay", &Pickup::isPrepay),
      method("addInvoiceToPickup", &Pickup::addInvoiceToPickup, {{"ticketNumber"}}),
      method("addInvoiceToPrepay", &Pickup::addInvoiceToPrepay, {{"ticketNumber"}}),
      method("addInvoiceObjToPickup", &Pickup::addInvoiceObjToPickup, {{"invoiceObj"}}),
      method("reloadInvoices", &Pickup::reloadInvoices),

      // ---- amounts
      method("getMinimumPrepayAmount", &Pickup::getMinimumPrepayAmount),
      method("getTotal", &Pickup::getTotal),
      method("getSubtotal", &Pickup::getSubtotal),
      method("getAmountPrepaid", &Pickup::getAmountPrepaid),
      method("getAmountPaid", &Pickup::getAmountPaid),
      method("getPrepayDiscount", &Pickup::getPrepayDiscount),
      method("getAmountDue", &Pickup::getAmountDue),
      method("getCashPaid", &Pickup::getCashPaid),
      method("getChangeDue", &Pickup::getChangeDue),

      // ---- lines
      method("getTicketNumberFromLine", &Pickup::getTicketNumberFromLine, {{"lineNumber"}}),
      method("getTicketLineNumberFromLine", &Pickup::getTicketLineNumberFromLine, {{"lineNumber"}}),
      method("markInvoicePickedUp", &Pickup::markInvoicePickedUp, {{"InvoiceNumber"}}),
      method("markLinePickedUp", &Pickup::markLinePickedUp, {{"InvoiceNumber"}, {"lineNumber"}}),
      method("populateLineItemsToDisplay", &Pickup::populateLineItemsToDisplay),
      method("getTotalItemCount", &Pickup::getTotalItemCount),
      method("getLineItemsGroupDetails", &Pickup::getLineItemsGroupDetails),

      // ---- lists and the release
      method("constructTicketNosStrForInvDetails", &Pickup::constructTicketNosStrForInvDetails),
      method("constructTicketNosString", &Pickup::constructTicketNosString),
      method("getTicketNosForPrinting", &Pickup::getTicketNosForPrinting),
      method("getInvoiceNosForPrinting", &Pickup::getInvoiceNosForPrinting),
      method("getEmployeeName", &Pickup::getEmployeeName, {{"employeeid"}}),
      method("recordPickupAction", &Pickup::recordPickupAction, {{"employeeid"}}),
      method("isTicketRacked", &Pickup::isTicketRacked, {{"ticketNumber"}}),

      // ---- payments
      method("addPayment", &Pickup::addPayment, {{"amtPaid"}, {"paymentType"}, {"checkCardNo", ""}, {"ExpDate", ""}, {"creditCardType", ""}, {"amtToBeApplied", 0.0}, {"approvalCode", ""}, {"transactionId", ""}}),
      method("getPaymentByType", &Pickup::getPaymentByType, {{"paymentType"}}),
      method("deletePaymentByName", &Pickup::deletePaymentByName, {{"paymentType"}}),
      method("setOpenCashDrawerFlag", &Pickup::setOpenCashDrawerFlag, {{"paymentType"}}),
      method("initStorePaymentTypeInfo", &Pickup::initStorePaymentTypeInfo),
      method("maskCardNumber", &Pickup::maskCardNumber, {{"value"}}),
      method("adjustCashToTotal", &Pickup::adjustCashToTotal),
      method("getPaymentLists", &Pickup::getPaymentLists),
      method("getTicketPrepayDiscount", &Pickup::getTicketPrepayDiscount, {{"ticketNumber"}}),

      // ---- applying
      method("applyPayments", &Pickup::applyPayments, {{"employeeid"}, {"terminalID"}, {"ticketNos", ""}, {"signatureid", ""}}),
      method("enableTicketsPrepayDiscount", &Pickup::enableTicketsPrepayDiscount, {{"employeeid"}, {"terminalID"}}),

      // ---- coupons
      method("getDiscountType", &Pickup::getDiscountType, {{"discountID"}}),
      method("addCoupon", &Pickup::addCoupon, {{"id"}, {"oneDiscount"}, {"employeeid"}, {"terminalID"}, {"empName"}, {"storeName"}}),
      method("addInvoiceCoupon", &Pickup::addInvoiceCoupon, {{"InvoiceNumber"}, {"id"}, {"oneDiscount"}, {"employeeid"}, {"terminalID"}, {"empName"}, {"storeName"}}),
      method("getInvoiceCouponRst", &Pickup::getInvoiceCouponRst, {{"InvoiceNumber"}}),
      method("getDisplayCouponRst", &Pickup::getDisplayCouponRst),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
