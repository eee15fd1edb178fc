#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
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
  garmentFlag,
  garmentMoney,  // of garments alone, of others 0 and NULL
};

struct LineValue {
  std::string_view separator;  // before it
  As as;
  Column column{0};
};

// clang-format off
constexpr LineValue kLineValues[] = {
  {"",   As::ticket},
  {",",  As::whole,        lineNumber},
  {",",  As::employee},                       // who created it
  {",",  As::employee},                       // who changed it last
  {",",  As::whole,        parentLineNumber},
  {",",  As::whole,        lineNumber},       // the place in the display
  {",",  As::whole,        deptId},
  {",",  As::quoted,       deptName},
  {",",  As::bareQuoted,   itemType},
  {",",  As::whole,        lineItemId},
  {",",  As::garmentFlag,  saleOnly},
  {",",  As::quoted,       itemName},
  {",",  As::money,        originalUnitPrice},
  {",",  As::money,        unitPrice},
  {",",  As::whole,        quantity},
  {",",  As::money,        lineItemTotal},
  {",",  As::money,        totalTax},
  {",",  As::money,        totalSurcharge},
  {",",  As::money,        taxableAmt},
  {", ", As::textOrNull,   notes},
  {", ", As::flag,         outsideService},
  {", ", As::garmentMoney, upchargeTotal},
  {", ", As::whole,        chargeTaxCode},
  {", ", As::whole,        pkgQuantity},
  {",",  As::whole,        daysToProcess},
  {",",  As::bareQuoted,   dueDate},
  {", ", As::flag,         priceLater},
  {", ", As::textOrNull,   promptResponse},
  {", ", As::flag,         redo},
  {", ", As::number,       prepay},
  {", ", As::quoted,       invoiceNumber},
  {", ", As::flag,         pickedUp},
  {", ", As::textOrNull,   heatSeal},
};
// clang-format on

constexpr std::size_t kLineLength = 1024;  // of most statements

// Writes the values of lines behind the head of their statement, over the ones of the line before.
class LineWriter {
 public:
  LineWriter(const Recordset& lines, std::int32_t ticket, std::int32_t employee)
      : line_(lines), ticket_(ticket), employee_(employee) {
    text_.reserve(kLineLength);
    text_ = kLineInsert;
  }

  // The statement for the current line, until the next one.
  std::string_view statement() {
    text_.resize(kLineInsert.size());
    isGarment_ = line_.textView(itemType) == kind::garment;
    for (const LineValue& value : kLineValues) {
      text_ += value.separator;
      write(value);
    }
    return text_ += ')';
  }

 private:
  void write(const LineValue& value) {
    const Column column = value.column;
    switch (value.as) {
      case As::ticket:
        return appendNumber(text_, ticket_);
      case As::employee:
        return appendNumber(text_, employee_);
      case As::whole:
        return line_.isNull(column) ? writeNull() : appendNumber(text_, line_.integer(column));
      case As::number:
        return appendNumber(text_, line_.number(column));
      case As::money:
        return appendFixed(text_, line_.number(column), 2);
      case As::flag:
        return writeFlag(line_.flag(column));
      case As::quoted:
        return appendSqlQuoted(text_, line_.textView(column));
      case As::bareQuoted:
        text_.append(1, '\'').append(line_.value(column).joined()).append(1, '\'');
        return;
      case As::textOrNull:
        return line_.textView(column).empty() ? writeNull() : appendSqlQuoted(text_, line_.textView(column));
      case As::garmentFlag:
        return writeFlag(isGarment_ && line_.flag(column));
      case As::garmentMoney:
        return isGarment_ && !line_.isNull(column) ? appendFixed(text_, line_.number(column), 2)
                                                   : writeNull();
    }
  }
  void writeNull() { text_ += "NULL"; }
  void writeFlag(bool flag) { text_ += flag ? '1' : '0'; }

  const Recordset& line_;
  std::int32_t ticket_, employee_;
  std::string text_;
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
