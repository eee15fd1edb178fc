#include <fmt/format.h>

#include <cmath>
#include <span>

#include "base/ignore_errors.h"
#include "base/text.h"
#include "base/whole_number.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/tickets/receipt_groups.h"
#include "pickup/pickup.h"
#include "pickup/pickup_columns.h"

namespace ondrel {
namespace {

constexpr std::int32_t kLinesPerTicket = 1000;

bool isModifier(std::string_view type) {
  return type == "UP" || type == "CO" || type == "PA" || type == "BR";
}

}  // namespace

// A column of displayRst and the column of the read that it is copied from.
struct Pickup::CopiedColumn {
  DisplayColumn to;
  std::string_view from;
};

// clang-format off
constexpr size_t kModifierColumns = 10;
constexpr Pickup::CopiedColumn kCopiedColumns[] = {
    {DisplayColumn::lineNumber,       "lineNumber"},  // as a display line number
    {DisplayColumn::parentLineNumber, "parentLineNumber"},
    {DisplayColumn::itemName,         "itemName"},
    {DisplayColumn::itemType,         "itemType"},
    {DisplayColumn::quantity,         "quantity"},
    {DisplayColumn::ticketNumber,     "ticketNumber"},
    {DisplayColumn::lineItemId,       "lineItemId"},
    {DisplayColumn::pkgQuantity,      "packagedQuantity"},
    {DisplayColumn::saleOnly,         "saleOnly"},
    {DisplayColumn::notes,            "itemnotes"},
    // a modifier has no more
    {DisplayColumn::deptName,         "departmentName"},
    {DisplayColumn::daysToProcess,    "daysToProcess"},
    {DisplayColumn::dueDate,          "dueDate"},
    {DisplayColumn::promptResponse,   "promptResponse"},
    {DisplayColumn::invoiceNumber,    "invoicenumber"},
    {DisplayColumn::pickedUp,         "pickedUp"},
    {DisplayColumn::deptId,           "departmentid"},
    {DisplayColumn::heatSeal,         "heatseal"},
};
// clang-format on

// ---------------------------------------------------------------- display line numbers

Variant Pickup::getTicketNumberFromLine(const Variant& lineNumber) const {
  const auto place = wholeNumber<size_t>(std::floor(lineNumber.toDouble() / kLinesPerTicket));
  const std::vector<PickupInvoiceRef> all = tickets();
  if (!place || *place >= all.size())
    throw Error(ErrorNumber::SubscriptOutOfRange, "pickup", "Subscript out of range");
  return all[*place]->ticketNumber;
}

Variant Pickup::getTicketLineNumberFromLine(const Variant& lineNumber) const {
  return lineNumber.toLong() % kLinesPerTicket;
}

std::int32_t Pickup::toDisplayLineNumber(std::int32_t ticketNumber, std::int32_t line) const {
  if (line < 0) return line;
  std::int32_t place = 0;
  for (const PickupInvoiceRef& ticket : tickets()) {
    if (ticket->ticketNumber == ticketNumber) return place * kLinesPerTicket + line % kLinesPerTicket;
    ++place;
  }
  return line;
}

// ---------------------------------------------------------------- picked up

void Pickup::markLinePickedUp(const Variant&, const Variant& lineNumber) {
  executeInTransaction(
      *apartment_,
      fmt::format(" update ticketlineitem set pickedup = 1  where ticketnumber = {} and lineitemnumber = {}",
                  getTicketNumberFromLine(lineNumber).toText(),
                  getTicketLineNumberFromLine(lineNumber).toText()));
}

void Pickup::markInvoicePickedUp(const Variant& InvoiceNumber) {
  populateLineItemsToDisplay();
  displayRst->setFilter("invoiceNumber='" + escapeSqlValue(InvoiceNumber) + "'");
  for (; !displayRst->eof(); displayRst->moveNext())
    markLinePickedUp(InvoiceNumber, displayRst->value(DisplayColumn::lineNumber));
}

// ---------------------------------------------------------------- the table

void Pickup::initDisplayRst() {
  displayRst = Recordset::create(kDisplayLayout);
}

void Pickup::populateLineItemsToDisplay() {
  initDisplayRst();
  std::string numbers;
  ignoreErrors([&] { numbers = constructTicketNosStrForInvDetails(); });
  if (numbers.empty()) return;
  RecordsetRef rows;
  ignoreErrors([&] {
    rows = queryDatabaseBatch(
        *apartment_,
        fmt::format(
            "Select t.ticketNumber, case t.invoiceNumber when '' then ticket.invoicenumber else "
            "t.invoicenumber end as invoicenumber, t.lineItemNumber as lineNumber, t.parentLineNumber as "
            "parentLineNumber, t.lineItemName as itemName, t.ticketLineType as itemType,  t.quantity, "
            "t.unitPrice, t.lineItemTotal, t.lineItemId, IsNull(t.packagedQuantity,1) as packagedQuantity,  "
            "t.saleOnly, isnull(t.itemNotes,'') as itemnotes  ,isnull(p.notes, '') as notes  , "
            "isnull(p.printNotes, 0) as printNotes, t.departmentName as departmentName, t.daysToProcess as "
            "daysToProcess, t.dueDate as dueDate, t.promptResponse,  t.pickedUp, t.departmentid, "
            "isnull(t.heatseal, '') as heatseal  From TicketLineItem t inner join ticket on t.ticketnumber = "
            "ticket.ticketnumber  left outer join Pricelistitem p on t.lineItemId = p.priceListItemId  Where "
            "t.ticketNumber IN ({})  order by t.ticketnumber, t.invoicenumber ",
            numbers));
  });
  if (!rows) return;
  for (; !rows->eof(); rows->moveNext()) ignoreErrors([&] { addDisplayLine(*rows); });
}

// | kind             | row                                                                          |
// |------------------|------------------------------------------------------------------------------|
// | CU               | one for a coupon and ticket, with the sum                                    |
// | IT               | its own, with the note of the price list where it prints that                |
// | UP, CO, PA, BR   | a modifier's: few columns, with the note of the descriptor for that garment  |
// | anything else    | its own, without a note                                                      |
void Pickup::addDisplayLine(Recordset& row) {
  const std::int32_t ticket = row.integer("ticketNumber");
  for (const char* column : {"lineNumber", "parentLineNumber"})
    row.setValue(column, toDisplayLineNumber(ticket, row.integer(column)));
  const double total = roundMoney("total", row.number("lineItemTotal"));
  const std::string type = toUpper(row.text("itemType"));
  if (type == "CU")
    addDisplayCoupon(row, total);
  else if (isModifier(type))
    addDisplayModifierRow(row, total);
  else
    addDisplayRow(row, total, type == "IT" && row.flag("printNotes") ? row.text("notes") : "");
}

void Pickup::addDisplayCoupon(const Recordset& row, double total) {
  ignoreErrors([&] {
    displayRst->setFilter(fmt::format("ticketNumber={} And lineItemId={} And itemType='CU'",
                                      row.integer("ticketNumber"), sqlNumber(row.value("lineItemId"))));
    if (displayRst->eof())
      addDisplayRow(row, total, "");
    else
      displayRst->setValue(DisplayColumn::lineItemTotal,
                           displayRst->number(DisplayColumn::lineItemTotal) + total);
  });
  displayRst->clearFilter();
}

void Pickup::addDisplayRow(const Recordset& row, double total, const std::string& notes) {
  addDisplayColumns(row, kCopiedColumns, total, notes);
}

void Pickup::addDisplayModifierRow(const Recordset& row, double total) {
  std::string note;
  ignoreErrors([&] { note = modifierNote(row); });
  displayRst->clearFilter();
  addDisplayColumns(row, std::span(kCopiedColumns).first(kModifierColumns), total, note);
}

void Pickup::addDisplayColumns(const Recordset& row, std::span<const CopiedColumn> copied, double total,
                               const std::string& peNotes) {
  std::vector<Column> columns = {DisplayColumn::lineItemTotal, DisplayColumn::peNotes};
  std::vector<Variant> values = {total, peNotes};
  for (const CopiedColumn& column : copied) {
    columns.emplace_back(column.to);
    values.push_back(row.value(column.from));
  }
  displayRst->addNew(columns, values);
}

// What the price list prints for the descriptor on the garment that it hangs on; the garment must have its row
// already.
std::string Pickup::modifierNote(const Recordset& row) {
  displayRst->setFilter(fmt::format("lineNumber={} AND ticketnumber={}", row.integer("parentLineNumber"),
                                    row.integer("ticketNumber")));
  std::int32_t garment = 0;
  if (!displayRst->eof() && !displayRst->isNull(DisplayColumn::lineItemId))
    garment = displayRst->integer(DisplayColumn::lineItemId);
  displayRst->clearFilter();
  if (garment == 0) return "";
  const RecordsetRef found = queryDatabase(
      *apartment_,
      fmt::format(" select isnull(Notes,'')  as notes from ItemDescriptorPrice where printnotes = 1 and "
                  "priceListItemId='{}' And descriptorName='{}' And descriptorType='{}'",
                  garment, escapeSql(row.text("itemName")), escapeSql(row.text("itemType"))));
  return found->eof() ? "" : found->text("Notes");
}

// ---------------------------------------------------------------- read from the table

// What is sold counts by its quantity, what is cleaned by the pieces of its pack.
std::int32_t Pickup::getTotalItemCount() {
  using enum DisplayColumn;
  if (!displayRst) return 0;
  displayRst->setFilter("itemType='IT' OR itemType='AC' OR itemType='DE'");
  std::int32_t count = 0;
  for (; !displayRst->eof(); displayRst->moveNext()) {
    const bool byPack = !displayRst->isNull(saleOnly) && !displayRst->flag(saleOnly);
    count += displayRst->integer(quantity) * (byPack ? displayRst->integer(pkgQuantity) : 1);
  }
  displayRst->clearFilter();
  return count;
}

RecordsetRef Pickup::getLineItemsGroupDetails() {
  if (!displayRst) initDisplayRst();
  return groupLines(*displayRst, BrandWords::yes);
}

}  // namespace ondrel
