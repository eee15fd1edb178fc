#include <fmt/format.h>

#include <cmath>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/calendar/ticket_dates.h"
#include "invoice/seals/tagged_items.h"
#include "invoice/tickets/saving.h"

namespace ondrel {
namespace {

using enum LineColumn;

constexpr std::string_view kSavedGoods =
    "itemType='IT' OR itemType='UP' OR itemType='CO' OR itemType='PA' OR itemType='AC'";

std::string money(double amount) {
  return roundDB(amount, 2).toText();
}

double cents(double amount) {
  return round2(amount, 2);
}

double lineTotalOf(const Recordset& line) {
  return line.number(lineItemTotal);
}

// The change of a line's price since it was first priced; a line without a quantity has none.
double priceChangeOf(const Recordset& line) {
  const double change = cents(std::abs(line.number(originalUnitPrice) - line.number(unitPrice)));
  return line.isNull(quantity) ? 0 : change * line.integer(quantity);
}

}  // namespace

// ---------------------------------------------------------------- the amounts of a ticket

double Invoice::vipQualifyingAmount() {
  const RecordsetRef children = lineItems->clone();
  return sumLines("itemType='IT'", [&](const Recordset& line) {
    if (!line.flag(VIPQualified)) return 0.0;
    double amount = cents(line.number(taxableAmt)) + line.number(totalTax) + line.number(totalSurcharge);
    children->setFilter(fmt::format("parentLineNumber={}", line.integer(lineNumber)));
    for (; !children->eof(); children->moveNext())
      amount += children->number(taxableAmt) + children->number(totalTax) + children->number(totalSurcharge);
    return amount;
  });
}

// From the customer to the place of a pickup, as both procedures take it.
std::string Invoice::customerAndMoney(const SaveRequest& request) {
  const double tax = sumLines("itemType='TA'", lineTotalOf);
  const double surcharge = sumLines("itemType='SU'", lineTotalOf);
  return fmt::format("{},{},{},{},{},{},{},{},{},{},{}", custSeqNumber, starchPref, finishPref,
                     request.onHold.joined(), request.terminal, money(amountPaid),
                     money(getInvoiceAmountToPay()), money(tax), money(surcharge),
                     sqlString(multiPickUpCustName), sqlString(multiPickUpLoc));
}

// From the VIP sum to the names of employee and store, as both procedures take it.
std::string Invoice::sumsAndNames(const SaveRequest& request) {
  const double coupons = sumLines("itemType='CU' OR itemType='LY'", lineTotalOf);
  const double promotions = sumLines("itemType='PR' OR itemType='RE' OR itemType='VI'",
                                     [](const Recordset& line) { return cents(lineTotalOf(line)); });
  const double goods = sumLines(kSavedGoods, [](const Recordset& line) {
    return lineTotalOf(line) + line.number(totalTax) + line.number(totalSurcharge);
  });
  const double accessories = sumLines(
      "itemType='AC'", [](const Recordset& line) { return line.number(taxableAmt) + line.number(totalTax); });
  return fmt::format("{},{},{},0,{},{},{},'{}','{}',0", money(vipQualifyingAmount()), money(coupons),
                     money(promotions), money(cents(goods)), money(sumLines(kSavedGoods, priceChangeOf)),
                     money(accessories), escapeSqlValue(request.employeeName),
                     escapeSqlValue(request.storeName));
}

// ---------------------------------------------------------------- texts of the header

// From here on the two members hold SQL text: a second save of the same object quotes them again.
void Invoice::quotePreferences() {
  starchPref = sqlString(starchPref);
  finishPref = sqlString(finishPref);
}

std::string Invoice::routeText() const {
  return routeNumber == -1 ? "NULL" : std::to_string(routeNumber);
}

// ---------------------------------------------------------------- a new ticket

// | step | in one transaction                    | by itself afterwards                            |
// |------|---------------------------------------|-------------------------------------------------|
// | 1    | the header, which gives the numbers   | garments known by their seal                    |
// | 2    | the lines                             | the stock of sold items                         |
// | 3    |                                       | the customer's preferences for this ticket      |
//
// An error closes the connection, so that a ticket is there whole or not at all.
void Invoice::insertTicket(const SaveRequest& request) {
  const std::string statement = insertTicketText(request);
  try {
    openTransaction(*apartment_);
    const RecordsetRef numbers = queryInTransaction(*apartment_, statement);
    ticketNo = numbers->integer("TicketNumber");
    invoiceNo = numbers->text("InvoiceNumber");
    insertTicketLineItems(request.employee);
    commitTransaction(*apartment_);
    saveTaggedItems(*this);
    executeInTransaction(*apartment_, fmt::format("UpdateInventory {},1", ticketNo));
    saveCustomerPreferences(custSeqNumber, ticketNo);
  } catch (...) {
    closeTransaction(*apartment_);
    throw;
  }
}

std::string Invoice::insertTicketText(const SaveRequest& request) {
  calculateInvDueDate();
  quotePreferences();
  const std::string amounts = customerAndMoney(request), sums = sumsAndNames(request);
  const std::string invoiceText = invoiceNo.empty() ? "Null" : "'" + invoiceNo + "'";
  const bool firstVisit = !counterSaleOnly && custVisitCount == 0;
  const std::string_view ticketType = counterSaleOnly ? "C" : isQuickInvoice() ? "Q" : "D";
  const std::string ready = readyTimeOn(*apartment_, InvDueDate);
  return fmt::format("InsertTicket {}, {},'{}','AC',{},{},{},'{}',{},{:d},{},{}, {:d}", storeNumber,
                     invoiceText, ticketType, priceListId, routeText(), request.employee, InvDueDate.text(),
                     amounts, firstVisit, sums, ready.empty() ? "NULL" : "'" + ready + "'",
                     state_.prepayEnabled);
}

// ---------------------------------------------------------------- over an existing ticket

// | step | in one transaction                    | by itself afterwards                            |
// |------|---------------------------------------|-------------------------------------------------|
// | 1    | the header, which gives the log date  | garments known by their seal                    |
// | 2    | the stock of sold items put back      | what was done at the counter, into the log      |
// | 3    | the lines, deleted and written again  | the stock of sold items                         |
// | 4    |                                       | the customer's preferences for this ticket      |
//
// An error leaves the transaction open on the shared connection.
void Invoice::updateTicket(const SaveRequest& request) {
  const std::string statement = updateTicketText(request);
  openTransaction(*apartment_);
  const Variant logDate = queryInTransaction(*apartment_, statement)->value("LogDate");
  executeInTransaction(*apartment_, fmt::format("UpdateInventory {},0", ticketNo));
  executeInTransaction(*apartment_, fmt::format("Delete TicketLineItem where ticketNumber={}", ticketNo));
  insertTicketLineItems(request.employee);
  commitTransaction(*apartment_);
  saveTaggedItems(*this);
  insertTicketLogItems(std::to_string(ticketNo), logDate);
  executeInTransaction(*apartment_, fmt::format("UpdateInventory {},1", ticketNo));
  saveCustomerPreferences(custSeqNumber, ticketNo);
}

std::string Invoice::updateTicketText(const SaveRequest& request) {
  calculateInvDueDate();
  extendInvDueDateFromLines();
  quotePreferences();
  const std::string amounts = customerAndMoney(request), sums = sumsAndNames(request);
  dropEmptyDepartmentLines();
  const std::string ready = readyTimeOn(*apartment_, InvDueDate);
  return fmt::format("UpdateTicket {},'{}',{},'{}',{},{},'{}',{}, {:d}", ticketNo,
                     escapeSqlValue(routeText()), request.employee, InvDueDate.text(), amounts, sums,
                     escapeSqlValue(invoiceType), ready.empty() ? "NULL" : "'" + escapeSqlValue(ready) + "'",
                     state_.prepayEnabled);
}

void Invoice::extendInvDueDateFromLines() {
  lineItems->clearFilter();
  InvDueDate = latestDueDate(*lineItems, dueDate, InvDueDate);
}

// A quick drop-off that has been itemised to the last piece is a normal ticket.
void Invoice::dropEmptyDepartmentLines() {
  if (invoiceType != "Q") return;
  bool kept = false;
  lineItems->setFilter("itemType='DE'");
  for (; !lineItems->eof(); lineItems->moveNext()) {
    if (!lineItems->isNull(quantity) && lineItems->integer(quantity) > 0)
      kept = true;
    else
      lineItems->deleteRow();
  }
  if (!kept) invoiceType = "D";
  lineItems->clearFilter();
}

}  // namespace ondrel
