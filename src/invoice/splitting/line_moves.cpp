#include "invoice/splitting/line_moves.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "invoice/splitting/child_tickets.h"

// How lines are taken apart for a split, go to a child, and come back.

namespace ondrel {
namespace {

// What a line brings back from a child.
// clang-format off
constexpr std::array<Column, 34> kReturned = {
    col::lineNumber, col::parentLineNumber, col::deptId, col::deptName, col::itemType, col::lineItemId,
    col::itemName, col::originalUnitPrice, col::unitPrice, col::quantity, col::lineItemTotal, col::totalTax,
    col::totalSurcharge, col::prepay, col::taxableAmt, col::daysToProcess, col::notes, col::balance,
    col::upchargeTotal, col::colorTotal, col::patternTotal, col::discountable, col::couponable,
    col::VIPDiscountable, col::parentId, col::saleOnly, col::pkgQuantity, col::priceLater, col::dueDate,
    col::originalLineNumber, col::promptResponse, col::redo, col::invoiceNumber, col::heatSeal};
// What it takes to the child besides.
constexpr std::array<Column, 4> kTakenOnly = {col::chargeTaxCode, col::flattenedGroup, col::origQuantity,
                                              col::outsideService};
// What the pieces of one line share out, and add up to when they are joined again.
constexpr std::array kAmounts = {col::lineItemTotal, col::totalTax,      col::totalSurcharge, col::taxableAmt,
                                 col::balance,       col::upchargeTotal, col::colorTotal,     col::patternTotal};
// clang-format on

constexpr std::int32_t kMostPieces = 32'000;         // of a line on a child
constexpr std::int32_t kMostPiecesToSplit = 10'000;  // of a line

void addReturned(Recordset& target, const Recordset& source) {
  std::array<Variant, kReturned.size()> values;
  for (size_t k = 0; k < values.size(); ++k) values[k] = source.value(kReturned[k]);
  target.addNew(kReturned, values);
}

void capPieces(Recordset& line, Column column) {
  if (!line.isNull(column)) line.setValue(column, std::min(line.integer(column), kMostPieces));
}

double inCents(double amount) {
  return std::round(amount * 100) / 100;
}

// Equal parts, of whole cents where the amount is. The last part is what the others leave, so that adding
// them up in order gives the very amount back.
std::vector<double> evenParts(double amount, std::int32_t count) {
  const bool wholeCents = inCents(amount) == amount;
  std::vector<double> parts;
  double given = 0;
  for (std::int32_t k = 1; k < count; ++k) {
    const double until = amount * k / count;
    parts.push_back(wholeCents ? inCents(inCents(until) - given) : amount / count);
    given += parts.back();
  }
  parts.push_back(amount - given);
  return parts;
}

// A line of pieces becomes a line a piece. The last piece keeps the line's number, and with it what hangs on the
// line: it is the one into which collectLineItems joins the others.
void divideIntoPieces(Recordset& line, Recordset& target, std::int32_t& nextNumber) {
  std::vector<Column> columns;
  std::vector<Variant> values;
  for (int index = 0; index < line.fieldCount(); ++index) {
    columns.emplace_back(index);
    values.push_back(line.value(columns.back()));
  }
  const auto cell = [&](LineColumn column) -> Variant& { return values[static_cast<size_t>(column)]; };
  const std::int32_t pieces = cell(col::quantity).toLong();
  const Variant ownNumber = cell(col::lineNumber);
  std::array<std::vector<double>, kAmounts.size()> parts;
  for (size_t k = 0; k < kAmounts.size(); ++k)
    if (const Variant& amount = cell(kAmounts[k]); !amount.isNull())
      parts[k] = evenParts(amount.toDouble(), pieces);

  line.deleteRow();
  cell(col::quantity) = 1;
  cell(col::flattenedGroup) = ownNumber;
  for (std::int32_t piece = 1; piece <= pieces; ++piece) {
    cell(col::lineNumber) = piece == pieces ? ownNumber : Variant(nextNumber++);
    for (size_t k = 0; k < kAmounts.size(); ++k)
      if (!parts[k].empty()) cell(kAmounts[k]) = parts[k][static_cast<size_t>(piece - 1)];
    target.addNew(columns, values);
  }
}

// Joins the current piece with the next of its group, which becomes current; false for the last of its group.
bool joinWithNext(Lines& lines, Recordset& piece) {
  const Variant group = piece.value(col::flattenedGroup);
  const Variant pieces = piece.value(col::quantity);
  const std::int32_t number = piece.integer(col::lineNumber);
  std::array<Variant, kAmounts.size()> amounts;
  for (size_t k = 0; k < amounts.size(); ++k) amounts[k] = piece.value(kAmounts[k]);

  piece.moveNext();
  const bool isLast = piece.eof();
  const bool sameGroup = !isLast && isEqual(piece.value(col::flattenedGroup), group);
  piece.movePrevious();
  if (!sameGroup) {
    if (!isLast) piece.setValue(col::flattenedGroup, 0);
    return false;
  }
  piece.deleteRow();
  piece.moveNext();
  piece.setValue(col::quantity, piece.value(col::quantity) + pieces);
  for (size_t k = 0; k < amounts.size(); ++k)
    piece.setValue(kAmounts[k], piece.value(kAmounts[k]) + amounts[k]);
  const std::int32_t joined = piece.integer(col::lineNumber);
  lines.each(fmt::format("parentLineNumber = {}", number),
             [&](Recordset& child) { child.setValue(col::parentLineNumber, joined); });
  return true;
}

}  // namespace

// ---------------------------------------------------------------- piece by piece

// A line that was mistyped into millions of pieces is refused while the invoice is whole: each piece becomes a line.
void flattenLines(Invoice& invoice) {
  Lines& lines = invoice.lines();
  invoice.lineItems->setSort("quantity DESC");
  const auto piecesBeyond = [](std::int32_t pieces) {
    return fmt::format("{} AND quantity > {}", ofKind(kind::garment), pieces);
  };
  if (lines.any(piecesBeyond(kMostPiecesToSplit)))
    throw Error(ErrorNumber::Overflow, invoice.className(),
                fmt::format("A line of more than {} pieces cannot be split", kMostPiecesToSplit));
  const RecordsetRef target = invoice.lineItems->clone();
  lines.each(piecesBeyond(1),
             [&](Recordset& line) { divideIntoPieces(line, *target, invoice.currentLineNumber); });
}

void Invoice::collectLineItems() {
  if (!lines_.any("")) return;
  lineItems->setSort("flattenedGroup");
  const LineSet piece = lines_.where("flattenedGroup > 0");
  while (piece && !piece->bof())
    if (!joinWithNext(lines_, *piece)) piece->moveNext();
}

// ---------------------------------------------------------------- to a child and back

void copyLine(Recordset& target, const Recordset& line) {
  addReturned(target, line);
  for (const Column column : kTakenOnly) target.setValue(column, line.value(column));
  capPieces(target, col::quantity);
  capPieces(target, col::origQuantity);
}

void moveLine(Recordset& line, Invoice& child, std::string& attached) {
  copyLine(*child.lineItems, line);
  attached +=
      fmt::format("{}parentLineNumber={}", attached.empty() ? "" : " OR ", line.integer(col::lineNumber));
  line.deleteRow();
}

double moveAttachedLines(Lines& lines, Invoice& child, std::string filter) {
  double moved = 0;
  while (!filter.empty()) {
    lines.each(std::exchange(filter, {}), [&](Recordset& line) {
      moved += line.number(col::lineItemTotal);
      raiseLineNumber(child, line.integer(col::lineNumber));
      moveLine(line, child, filter);
    });
  }
  return moved;
}

void raiseLineNumber(Invoice& child, std::int32_t number) {
  child.currentLineNumber = std::max(child.currentLineNumber, number);
}

std::vector<std::shared_ptr<Invoice>> splitChildren(const Invoice& invoice) {
  return childTickets<Invoice>(invoice.invoicesDictionary, invoice.className());
}

void mergeSplitInvoices(Invoice& invoice) {
  if (!invoice.invoicesDictionary) return;
  invoice.splitTheInvoice = false;
  for (const auto& child : splitChildren(invoice))
    for (const RecordsetRef lines = child->lineItems->clone(); !lines->eof(); lines->moveNext())
      addReturned(*invoice.lineItems, *lines);
  invoice.invoicesDictionary = nullptr;
}

}  // namespace ondrel
