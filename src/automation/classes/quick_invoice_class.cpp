#include "automation/classes/class_tables.h"
#include "automation/classes/working_table.h"
#include "quick/quick_invoice.h"

namespace ondrel {

const ClassTable& quickInvoiceClass() {
  using Class = QuickInvoice;
  // clang-format off
  static const ClassTable table("quickInvoice", {
      // ---- properties
      workingTable<&Class::lineItems, kQuickLayout>("lineItems"),
      property("currentLineNumber", &Class::currentLineNumber),
      property("starchPref", &Class::starchPref),
      property("finishPref", &Class::finishPref),
      property("custSeqNumber", &Class::custSeqNumber),
      property("priceListId", &Class::priceListId),
      property("InvDueDate", &Class::InvDueDate),
      property("invoiceNo", &Class::invoiceNo),
      property("ticketNo", &Class::ticketNo),
      property("storeNumber", &Class::storeNumber),
      property("invoicesDictionary", &Class::invoicesDictionary),
      property("createdByEmployeeId", &Class::createdByEmployeeId),
      property("createdDate", &Class::createdDate),
      property("ticketReadyTime", &Class::ticketReadyTime),
      property("routeNumber", &Class::routeNumber),
      property("preferences", &Class::preferences),
      property("invoiceDeptIds", &Class::invoiceDeptIds),
      property("DBConnectionString", &Class::DBConnectionString, &Class::setDBConnectionString),

      // ---- the object and its lines
      method("initInvoice", &Class::initInvoice),
      method("clearInvoice", &Class::clearInvoice),
      method("addLineItem", &Class::addLineItem, {{"quantity"}, {"deptID"}}),
      method("deleteLineItem", &Class::deleteLineItem, {{"lineNo"}}),
      method("attachNotes", &Class::attachNotes, {{"lineNo"}, {"notes"}}),
      method("updateNotes", &Class::updateNotes, {{"lineNo"}, {"notes"}}),
      method("getItemNotes", &Class::getItemNotes, {{"lineNo"}}),
      method("getTotalItemCount", &Class::getTotalItemCount),
      method("getDepartmentPieceCount", &Class::getDepartmentPieceCount, {{"departmentID"}}),
      method("isDepartmentPresent", &Class::isDepartmentPresent, {{"deptID"}}),

      // ---- due dates
      method("setStoreDays", &Class::setStoreDays, {{"storeid"}}),
      method("calculateInvDueDate", &Class::calculateInvDueDate),
      method("recalculateInvDueDate", &Class::recalculateInvDueDate),
      method("setInvoiceDueDate", &Class::setInvoiceDueDate, {{"datedue"}}),
      method("setAllDepartmentDueDates", &Class::setAllDepartmentDueDates, {{"datedue"}}),
      method("setDeptDueDate", &Class::setDeptDueDate, {{"dept"}, {"datedue"}}),
      method("adjustDueDatesForRoute", &Class::adjustDueDatesForRoute, {{"CustomerSeq"}}),

      // ---- splitting
      method("isSplitInvoice", &Class::isSplitInvoice),
      method("splitInvoice", &Class::splitInvoice),
      method("getNoOfInvoices", &Class::getNoOfInvoices),
      method("getTicketNosForPrinting", &Class::getTicketNosForPrinting),
      method("oneDeptWithNoSplitExists", &Class::oneDeptWithNoSplitExists, {{"cloneRst"}}),

      // ---- preferences, saving, loading
      method("loadCustomerPreferences", &Class::loadCustomerPreferences, {{"CustomerSeq"}, {"ticketNumber"}}),
      method("setCustomerPreference", &Class::setCustomerPreference, {{"preferenceTypeID"}, {"value"}}),
      method("saveInvoice", &Class::saveInvoice, {{"userAction"}, {"employeeid"}, {"terminalID"}, {"onHold"}, {"empName"}, {"storeName"}, {"startTrans"}}),
      method("getExistingDetails", &Class::getExistingDetails, {{"InvoiceNumber"}}),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
