#include <fmt/format.h>

#include <algorithm>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/calendar/ticket_dates.h"
#include "invoice/tickets/customer_preferences.h"
#include "invoice/tickets/ticket_header.h"
#include "quick/quick_invoice.h"

namespace ondrel {
namespace {

using enum QuickColumn;

// The conveyor that is told of new tickets.
constexpr std::string_view kToldConveyor = "WH";

std::string quoted(const std::string& text) {
  return "'" + escapeSqlValue(text) + "'";
}

std::string quoted(const Recordset& line, Column column) {
  return quoted(line.text(column));
}

std::string lineInsertText(const Recordset& line, std::int32_t ticket, std::int32_t employee) {
  const std::int32_t number = line.integer(lineNumber);
  return fmt::format(
      "INSERT INTO TicketLineItem(ticketNumber, lineItemNumber,  createdByEmployeeID, lastModifiedByEmployeeID,  "
      "parentLineNumber, displaySequence, departmentID,  departmentName, ticketLineType, lineItemID, saleOnly,  "
      "lineItemName, quantity, lineItemTotal, itemNotes, daysToProcess, dueDate) "
      "VALUES({0},{1},{2},{2},-1,{1},{3},{4},{5},{6},0,{7},{8},0, {9},{10},'{11}' )",
      ticket, number, employee, line.integer(deptId), quoted(line, deptName), quoted(line, itemType),
      sqlNumber(line.value(lineItemId)), quoted(line, itemName), sqlNumber(line.value(quantity)),
      sqlString(line.value(notes)), sqlNumber(line.value(daysToProcess)), line.value(dueDate).joined());
}

}  // namespace

// What the counter tells with a save, the same for a drop-off and its children.
struct QuickInvoice::SaveRequest {
  std::int32_t employee = 0;
  std::int32_t terminal = 0;
  std::string onHold;  // "1" or "0"
  std::string employeeName, storeName;
};

// ---------------------------------------------------------------- preferences

Variant QuickInvoice::loadCustomerPreferences(const Variant& CustomerSeq, const Variant& ticketNumber) {
  preferences = readPreferences(*apartment_,
                                " select *, isnull(options, '') as options from customerpreferencetype order "
                                "by displayorder",
                                CustomerSeq, ticketNumber)
                    .values;
  return {};
}

Variant QuickInvoice::setCustomerPreference(const Variant& preferenceTypeID, const Variant& value) {
  setPreference(preferences, preferenceTypeID, value);
  return {};
}

// ---------------------------------------------------------------- saving

void QuickInvoice::saveInvoice(const Variant& userAction, const Variant& employeeid,
                               const Variant& terminalID, const Variant& onHold, const Variant& empName,
                               const Variant& storeName, const Variant&) {
  if (userAction.joined() != "add") return;
  if (isQuickSplit_)
    for (const auto& child : children())
      child->saveInvoice(userAction, employeeid, terminalID, onHold, empName, storeName, false);
  if (!isQuickInvoiceEmpty())
    insertQuickTicket(
        {employeeid.toLong(), terminalID.toLong(), onHold.joined(), empName.joined(), storeName.joined()});
}

bool QuickInvoice::isQuickInvoiceEmpty() {
  lineItems->setFilter("itemType = 'DE' and quantity > 0");
  const bool empty = lineItems->eof();
  lineItems->clearFilter();
  return empty;
}

// | step | with                | does                                                               |
// |------|---------------------|--------------------------------------------------------------------|
// | 1    | the old ticket      | asks whether it holds garments to be sealed; a new object has none  |
// | 2    | one transaction     | header with the customer's copy, lines, preferences of the ticket   |
// | 3    | the new ticket      | tells the conveyor, if step 1 said so and the store has that kind   |
void QuickInvoice::insertQuickTicket(const SaveRequest& request) {
  const RecordsetRef answer =
      queryDatabase(*apartment_, fmt::format("exec dbo.isHeatSealDept '{}'", ticketNo));
  const bool sealed = !answer->eof() && answer->flag("Result");
  starchPref = sqlString(starchPref);
  finishPref = sqlString(finishPref);

  const std::string statement = insertQuickTicketText(request);
  openTransaction(*apartment_);
  const RecordsetRef numbers = queryInTransaction(*apartment_, statement);
  ticketNo = numbers->integer("TicketNumber");
  invoiceNo = numbers->text("InvoiceNumber");
  insertQuickLines(request.employee);
  savePreferences(*apartment_, preferences, custSeqNumber, ticketNo);
  commitTransaction(*apartment_);

  const Variant conveyor = getMiscSetupField("conveyorType");
  if (sealed && conveyor.joined() == kToldConveyor)
    executeInTransaction(*apartment_, fmt::format("exec sendtowhiteadc 'TICKET_CREATE',{}", ticketNo));
}

std::string QuickInvoice::insertQuickTicketText(const SaveRequest& request) const {
  return fmt::format("InsertQuickInvoice {}, {},{},{},'{}',{},{},{},'{}',{},0,{},{},{}", storeNumber,
                     trim(invoiceNo).empty() ? "NULL" : quoted(invoiceNo), priceListId, request.employee,
                     InvDueDate.text(), custSeqNumber, starchPref, finishPref, request.onHold,
                     request.terminal, quoted(request.employeeName), quoted(request.storeName),
                     sqlString(readyTimeOn(*apartment_, InvDueDate)));
}

void QuickInvoice::insertQuickLines(std::int32_t employee) {
  lineItems->clearFilter();
  for (; !lineItems->eof(); lineItems->moveNext())
    executeInTransaction(*apartment_, lineInsertText(*lineItems, ticketNo, employee));
}

Variant QuickInvoice::getMiscSetupField(std::string_view column) {
  const RecordsetRef rows = queryDatabase(
      *apartment_, fmt::format("select {} as val from miscsetup where storeid = '{}'", column, storeNumber));
  return rows->eof() ? Variant::null() : rows->value("val");
}

// ---------------------------------------------------------------- loading

void QuickInvoice::getExistingDetails(const Variant& InvoiceNumber) {
  ticketNo = InvoiceNumber.toLong();
  isNewQuickInvoice_ = false;
  const RecordsetRef ticket = queryDatabase(
      *apartment_,
      fmt::format(
          "SELECT customerSequenceNumber, IsNull(starchPreferenceName, '') as starchPreferenceName, "
          "IsNull(finishPreferenceName, '') as finishPreferenceName,  dueDate, invoiceNumber, "
          "createddate, createdByEmployeeId ,  IsNull(pickupTime,'') as pickupTime  FROM Ticket where "
          "ticketNumber={}",
          ticketNo));
  if (!ticket->eof()) loadHeader(*ticket);
  const RecordsetRef lines = queryDatabase(
      *apartment_,
      fmt::format("SELECT lineItemNumber,TicketLineItem.departmentID As departmentId, departmentName,  "
                  "ticketLineType , lineItemID, lineItemName, quantity, itemNotes,  "
                  "TicketLineItem.daysToProcess , TicketLineItem.dueDate, notes, Printnotes FROM "
                  "TicketLineItem, Department  where ticketNumber ={} And TicketLineItem.departmentid = "
                  "Department.departmentid  Order by TicketLineItem.displaySequence",
                  ticketNo));
  for (; !lines->eof(); lines->moveNext()) loadLine(*lines);
  lineItems->clearFilter();
}

void QuickInvoice::loadHeader(const Recordset& ticket) {
  // clang-format off
  static constexpr HeaderField<QuickInvoice> kFields[] = {
      {"customerSequenceNumber", &QuickInvoice::custSeqNumber},
      {"starchPreferenceName",   &QuickInvoice::starchPref},
      {"finishPreferenceName",   &QuickInvoice::finishPref},
      {"dueDate",                &QuickInvoice::InvDueDate},
      {"invoiceNumber",          &QuickInvoice::invoiceNo},
      {"createddate",            &QuickInvoice::createdDate},
      {"createdByEmployeeId",    &QuickInvoice::createdByEmployeeId},
      {"pickupTime",             &QuickInvoice::ticketReadyTime},
  };
  // clang-format on
  takeHeaderFields<QuickInvoice>(*this, ticket, kFields);
}

void QuickInvoice::loadLine(const Recordset& line) {
  // A store keeps its printed note beside the department's note, or only a mark that the note prints; a
  // mark is no note.
  const Variant note = line.value("notes"), printed = line.value("Printnotes");
  lineItems->addNew({{lineNumber, line.value("lineItemNumber")},
                     {lineItemId, line.value("lineItemID")},
                     {itemName, line.value("lineItemName")},
                     {itemType, line.value("ticketLineType")},
                     {quantity, line.value("quantity")},
                     {deptId, line.value("departmentId")},
                     {deptName, line.value("departmentName")},
                     {daysToProcess, line.value("daysToProcess")},
                     {notes, line.value("itemNotes")},
                     {peNotes, note.isNull() && printed.isText() ? printed : note},
                     {dueDate, line.value("dueDate")}});
  currentLineNumber = std::max(currentLineNumber, lineItems->integer(lineNumber) + 1);
}

}  // namespace ondrel
