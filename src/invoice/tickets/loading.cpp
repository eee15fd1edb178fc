#include <fmt/format.h>

#include <algorithm>

#include "data/query_database.h"
#include "invoice/invoice.h"
#include "invoice/tickets/ticket_header.h"

namespace ondrel {
// ---------------------------------------------------------------- the two views

// | view     | header                                      | lines                                       |
// |----------|---------------------------------------------|---------------------------------------------|
// | edit     | of the ticket alone, with route, lot and    | garments and charges first, price-list data |
// |          | prepay                                      | joined in, the VIP discount left out        |
// | printing | only with the copy of the customer          | in display order, notes only where the      |
// |          |                                             | price list prints them                      |
//
// An unknown ticket leaves the header as it was and gives no lines.

void Invoice::getExistingDetails(const Variant& ticketNumber) {
  ticketNo = ticketNumber.toLong();
  const RecordsetRef header = queryDatabase(
      *apartment_,
      fmt::format(
          "SELECT customerSequenceNumber, IsNull(starchPreferenceName, '') as starchPreferenceName, "
          "IsNull(finishPreferenceName, '') as finishPreferenceName,  dueDate, invoiceNumber, amountPaid, "
          "invoiceType, priceListId, createdDate, routeNumber, isnull(lotid, 0) as lotid, prepayEnabled FROM "
          "Ticket where ticketNumber='{}'",
          ticketNo));
  if (!header->eof()) {
    takeHeader(*header);
    if (header->isNull("routeNumber")) routeNumber = -1;
    state_.tagCount = countTicketTags(ticketNo);
    loadPreferencesOfTicket();
  }
  startLines();
  loadTicketLines();
}

void Invoice::getInvoiceDetailsForPrinting(const Variant& ticketNumber) {
  ticketNo = ticketNumber.toLong();
  const RecordsetRef header = queryDatabase(
      *apartment_,
      fmt::format(
          "SELECT customerSequenceNumber, IsNull(starchPreferenceName, '') as starchPreferenceName, "
          "IsNull(finishPreferenceName, '') as finishPreferenceName,  dueDate, invoiceNumber, amountPaid, "
          "priceListId, lastModifiedDate,  IsNull(multiPickupCustomerName, '') as "
          "multiplePickupCustomerName,  IsNull(multiPickupLocation,'') as multiplePickupLocation,  "
          "invoiceTotal, createdByEmployeeId, createdDate, IsNull(pickupTime,'') as pickupTime ,  netTotal "
          "FROM Ticket, TicketCustomer where Ticket.ticketNumber='{}' AND Ticket.ticketNumber = "
          "TicketCustomer.ticketNumber",
          ticketNo));
  if (!header->eof()) {
    takeHeader(*header);
    loadPreferencesOfTicket();
  }
  startLines();
  loadPrintLines();
}

void Invoice::takeHeader(const Recordset& header) {
  // clang-format off
  static constexpr HeaderField<Invoice> kFields[] = {
      // column                      property                          what the view does not read stays
      {"customerSequenceNumber",     &Invoice::custSeqNumber},
      {"starchPreferenceName",       &Invoice::starchPref},
      {"finishPreferenceName",       &Invoice::finishPref},
      {"dueDate",                    &Invoice::InvDueDate},
      {"invoiceNumber",              &Invoice::invoiceNo},
      {"amountPaid",                 &Invoice::amountPaid},
      {"invoiceType",                &Invoice::invoiceType},
      {"priceListId",                &Invoice::priceListId},
      {"createdDate",                &Invoice::createdDate},
      {"routeNumber",                &Invoice::routeNumber},
      {"lastModifiedDate",           &Invoice::lastModifiedDate},
      {"multiplePickupCustomerName", &Invoice::multiPickUpCustName},
      {"multiplePickupLocation",     &Invoice::multiPickUpLoc},
      {"invoiceTotal",               &Invoice::invoiceTotal},
      {"createdByEmployeeId",        &Invoice::createdByEmployeeId},
      {"pickupTime",                 &Invoice::ticketReadyTime},
      {"netTotal",                   &Invoice::netTotal},
  };
  static constexpr HeaderField<InvoiceState> kStateFields[] = {
      {"lotid",         &InvoiceState::lotId},
      {"prepayEnabled", &InvoiceState::prepayEnabled},
  };
  // clang-format on
  takeHeaderFields<Invoice>(*this, header, kFields);
  takeHeaderFields<InvoiceState>(state_, header, kStateFields);
}

void Invoice::loadPreferencesOfTicket() {
  Variant customer = custSeqNumber, ticket = ticketNo;
  loadCustomerPreferences(customer, ticket);
}

void Invoice::startLines() {
  isAdd = false;
  isEdittable = true;
  state_.departments = {0};
}

std::int32_t Invoice::countTicketTags(const Variant& ticketNumber) {
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format(" select count(*) as cnt from tickettag where ticketnumber = '{}'", ticketNumber.joined()));
  return rows->eof() ? 0 : rows->integer("cnt");
}

bool Invoice::isDepartmentLoaded(std::int32_t department) const {
  return std::find(state_.departments.begin(), state_.departments.end(), department) !=
         state_.departments.end();
}

// ---------------------------------------------------------------- one line

Variant Invoice::getLineItemType(Variant& line) {
  return getLineValue(line, LineColumn::itemType);
}

Variant Invoice::getLineDeptID(Variant& line) {
  return getLineValue(line, LineColumn::deptId);
}

Variant Invoice::getLineValue(const Variant& line, Column column) {
  Variant result;
  if (!line.joined().empty() && findLine(line)) result = lineItems->value(column);
  lineItems->clearFilter();
  return result;
}

}  // namespace ondrel
