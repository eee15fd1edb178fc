#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"

namespace ondrel {
namespace {

using enum LineColumn;

constexpr std::string_view kRedoDepartment = "Redo";

std::string money(const Recordset& line, Column column) {
  return roundDB(line.value(column), 2).toText();
}

int digit(bool value) {
  return value ? 1 : 0;
}

// A text between quotes; a missing one is the empty text.
std::string quoted(const Recordset& line, Column column) {
  return "'" + escapeSql(line.text(column)) + "'";
}

constexpr std::string_view kLineInsert =
    "INSERT INTO TicketLineItem(ticketNumber, lineItemNumber,  createdByEmployeeID, lastModifiedByEmployeeID,  "
    "parentLineNumber, displaySequence, departmentID,  departmentName, ticketLineType, lineItemID, saleOnly,  "
    "lineItemName, originalUnitPrice, unitPrice, quantity,  lineItemTotal, totalTaxPercent, "
    "totalSurchargePercent,  lineItemTaxableAmount, itemNotes,  outsideService, totalUpchargeAmount, "
    "chargeTaxCode, packagedQuantity, daysToProcess, dueDate, priceLater, promptResponse, redo, "
    "prepaydiscount, invoicenumber, pickedup, heatseal) VALUES(";

// The statement that stores a line. Of the values a Null that stands bare goes out as NULL, a Null date as
// the empty text.
std::string lineInsertText(const Recordset& line, std::int32_t ticket, std::int32_t employee) {
  const bool isGarment = line.text(itemType) == kind::garment;
  const bool hasUpcharges = isGarment && !line.isNull(upchargeTotal);
  const std::int32_t number = line.integer(lineNumber);
  std::string text(kLineInsert);
  const auto end = std::back_inserter(text);
  fmt::format_to(end, "{},{},{},{},{},{},{}", ticket, number, employee, employee,
                 line.integer(parentLineNumber), number, sqlNumber(line.value(deptId)));
  fmt::format_to(end, ",{},'{}',{},{},{}", quoted(line, deptName), line.text(itemType),
                 sqlNumber(line.value(lineItemId)), digit(isGarment && line.flag(saleOnly)),
                 quoted(line, itemName));
  fmt::format_to(end, ",{},{},{},{},{},{},{}", money(line, originalUnitPrice), money(line, unitPrice),
                 sqlNumber(line.value(quantity)), money(line, lineItemTotal), money(line, totalTax),
                 money(line, totalSurcharge), money(line, taxableAmt));
  fmt::format_to(end, ", {}, {}, {}, {}, {},{},'{}'", sqlString(line.value(notes)),
                 digit(line.flag(outsideService)), hasUpcharges ? money(line, upchargeTotal) : "NULL",
                 sqlNumber(line.value(chargeTaxCode)), sqlNumber(line.value(pkgQuantity)),
                 sqlNumber(line.value(daysToProcess)), line.value(dueDate).joined());
  fmt::format_to(end, ", {}, {}, {}, {}, {}, {}, {})", digit(line.flag(priceLater)),
                 sqlString(line.value(promptResponse)), digit(line.flag(redo)), sqlNumber(line.value(prepay)),
                 quoted(line, invoiceNumber), digit(line.flag(pickedUp)), sqlString(line.value(heatSeal)));
  return text;
}

}  // namespace

void Invoice::insertTicketLineItems(std::int32_t employeeId) {
  lineItems->clearFilter();
  deleteTaggedItemLinks(ticketNo);
  bool redoPending = true;
  for (; !lineItems->eof(); lineItems->moveNext()) {
    // Somebody calls the customer of a re-clean: one copy of him a ticket.
    if (redoPending && lineItems->text(deptName) == kRedoDepartment) {
      addRedoCustomer();
      redoPending = false;
    }
    if (lineItems->isNull(pkgQuantity)) lineItems->setValue(pkgQuantity, 1);
    executeInTransaction(*apartment_, lineInsertText(*lineItems, ticketNo, employeeId));
  }
}

void Invoice::deleteTaggedItemLinks(const Variant& ticketNumber) {
  const std::string number = ticketNumber.joined();
  if (number.empty()) return;
  executeInTransaction(
      *apartment_, fmt::format(" delete from ticketlineitemtaggeditem where ticketnumber = '{}'", number));
}

void Invoice::addRedoCustomer() {
  executeInTransaction(
      *apartment_,
      fmt::format(
          "insert into redoCust select c.customerid, c.firstname, c.lastname, c.billingAddress1, "
          "c.billingAddress2, c.billingAddress3, c.billingCity, c.billingState, c.billingZipCode, "
          "dbo.formatPhone(c.mainAreaCode, c.mainPhone) as mainPhone, c.shippingAddress1, "
          "c.shippingAddress2, c.shippingAddress3, c.shippingCity, c.shippingState, c.shippingZipCode, "
          "c.email, t.invoiceNumber from customer c, ticket t Where c.customersequencenumber = "
          "t.customersequencenumber and t.ticketnumber = {}",
          ticketNo));
}

void Invoice::insertTicketLogItems(const std::string& ticketNumber, const Variant& logDate) {
  ticketLogItems->clearFilter();
  for (; !ticketLogItems->eof(); ticketLogItems->moveNext()) {
    const Recordset& entry = *ticketLogItems;
    executeInTransaction(
        *apartment_,
        fmt::format("INSERT INTO TicketLogItem(ticketNumber,  logDate, logType, quantity, deptName, "
                    "itemName, amount) "
                    "VALUES({},{},{},{},{},{},{})",
                    ticketNumber, sqlString(logDate), sqlString(entry.value(LogColumn::itemLogType)),
                    entry.integer(LogColumn::quantity), sqlString(entry.value(LogColumn::deptName)),
                    sqlString(entry.value(LogColumn::itemName)), money(entry, LogColumn::amount)));
  }
}

}  // namespace ondrel
