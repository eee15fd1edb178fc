#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/statement_text.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"

namespace ondrel {
namespace {

using enum LineColumn;

constexpr std::string_view kRedoDepartment = "Redo";

constexpr std::string_view kLineInsert =
    "INSERT INTO TicketLineItem(ticketNumber, lineItemNumber,  createdByEmployeeID, lastModifiedByEmployeeID,  "
    "parentLineNumber, displaySequence, departmentID,  departmentName, ticketLineType, lineItemID, saleOnly,  "
    "lineItemName, originalUnitPrice, unitPrice, quantity,  lineItemTotal, totalTaxPercent, "
    "totalSurchargePercent,  lineItemTaxableAmount, itemNotes,  outsideService, totalUpchargeAmount, "
    "chargeTaxCode, packagedQuantity, daysToProcess, dueDate, priceLater, promptResponse, redo, "
    "prepaydiscount, invoicenumber, pickedup, heatseal) VALUES(";

// How a value of a line is written. A Null that stands bare goes out as NULL, a Null text or date between quotes
// as the empty text.
enum class As {
  ticket,
  employee,
  whole,
  number,
  money,
  flag,
  quoted,      // between quotes, which are doubled inside
  bareQuoted,  // between quotes, as it stands
  textOrNull,  // quoted, an empty one as NULL
  date,
  garmentFlag,
  garmentMoney,  // of garments alone, of others 0 and NULL
};

enum class Separator { none, comma, commaAndBlank };

struct LineValue {
  Separator before;
  As as;
  Column column{0};
};

using enum Separator;

// clang-format off
constexpr LineValue kLineValues[] = {
  {none,          As::ticket},
  {comma,         As::whole,        lineNumber},
  {comma,         As::employee},                       // who created it
  {comma,         As::employee},                       // who changed it last
  {comma,         As::whole,        parentLineNumber},
  {comma,         As::whole,        lineNumber},       // the place in the display
  {comma,         As::whole,        deptId},
  {comma,         As::quoted,       deptName},
  {comma,         As::bareQuoted,   itemType},
  {comma,         As::whole,        lineItemId},
  {comma,         As::garmentFlag,  saleOnly},
  {comma,         As::quoted,       itemName},
  {comma,         As::money,        originalUnitPrice},
  {comma,         As::money,        unitPrice},
  {comma,         As::whole,        quantity},
  {comma,         As::money,        lineItemTotal},
  {comma,         As::money,        totalTax},
  {comma,         As::money,        totalSurcharge},
  {comma,         As::money,        taxableAmt},
  {commaAndBlank, As::textOrNull,   notes},
  {commaAndBlank, As::flag,         outsideService},
  {commaAndBlank, As::garmentMoney, upchargeTotal},
  {commaAndBlank, As::whole,        chargeTaxCode},
  {commaAndBlank, As::whole,        pkgQuantity},
  {comma,         As::whole,        daysToProcess},
  {comma,         As::date,         dueDate},
  {commaAndBlank, As::flag,         priceLater},
  {commaAndBlank, As::textOrNull,   promptResponse},
  {commaAndBlank, As::flag,         redo},
  {commaAndBlank, As::number,       prepay},
  {commaAndBlank, As::quoted,       invoiceNumber},
  {commaAndBlank, As::flag,         pickedUp},
  {commaAndBlank, As::textOrNull,   heatSeal},
};
// clang-format on

// Writes the statements of lines, one after the other.
class LineWriter {
 public:
  LineWriter(const Recordset& lines, std::int32_t ticket, std::int32_t employee)
      : line_(lines), ticket_(ticket), employee_(employee) {}

  // The statement for the current line, until the next one.
  std::string_view statement() {
    statement_.restart();
    isGarment_ = line_.textView(itemType) == kind::garment;
    for (const LineValue& value : kLineValues) {
      if (value.before != none) statement_.add(',');
      if (value.before == commaAndBlank) statement_.add(' ');
      write(value.as, value.column);
    }
    statement_.add(')');
    return statement_.text();
  }

 private:
  void write(As as, Column column) {
    switch (as) {
      case As::ticket:
        return statement_.addNumber(ticket_);
      case As::employee:
        return statement_.addNumber(employee_);
      case As::whole:
        return line_.isNull(column) ? writeNull() : statement_.addNumber(line_.integer(column));
      case As::number:
        return statement_.addNumber(line_.number(column));
      case As::money:
        return statement_.addFixed(line_.number(column), 2);
      case As::flag:
        return writeFlag(line_.flag(column));
      case As::quoted:
        return statement_.addQuoted(line_.textView(column));
      case As::bareQuoted:
        statement_.add('\'');
        statement_.add(line_.textView(column));
        return statement_.add('\'');
      case As::textOrNull:
        return line_.textView(column).empty() ? writeNull() : statement_.addQuoted(line_.textView(column));
      case As::date:
        return statement_.addQuoted(line_.text(column));
      case As::garmentFlag:
        return writeFlag(isGarment_ && line_.flag(column));
      case As::garmentMoney:
        return isGarment_ && !line_.isNull(column) ? write(As::money, column) : writeNull();
    }
  }
  void writeNull() { statement_.add("NULL"); }
  void writeFlag(bool flag) { statement_.add(flag ? '1' : '0'); }

  const Recordset& line_;
  std::int32_t ticket_, employee_;
  StatementText statement_{kLineInsert};
  bool isGarment_ = false;
};

}  // namespace

void Invoice::insertTicketLineItems(std::int32_t employeeId) {
  lineItems->clearFilter();
  deleteTaggedItemLinks(ticketNo);
  bool redoPending = true;
  LineWriter writer(*lineItems, ticketNo, employeeId);
  for (; !lineItems->eof(); lineItems->moveNext()) {
    // Somebody calls the customer of a re-clean: one copy of him a ticket.
    if (redoPending && lineItems->textView(deptName) == kRedoDepartment) {
      addRedoCustomer();
      redoPending = false;
    }
    if (lineItems->isNull(pkgQuantity)) lineItems->setValue(pkgQuantity, 1);
    executeInTransaction(*apartment_, writer.statement());
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
                    sqlString(entry.value(LogColumn::itemName)),
                    fixedText(entry.number(LogColumn::amount), 2)));
  }
}

}  // namespace ondrel
