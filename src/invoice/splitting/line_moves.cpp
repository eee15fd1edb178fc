#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "invoice/invoice.h"

// How lines are taken apart for a split, go to a child, and come back.

namespace ondrel {
namespace {

using enum LineColumn;

// What a line brings back from a child.
// clang-format off
constexpr std::array<Column, 34> kReturned = {
    lineNumber, parentLineNumber, deptId, deptName, itemType, lineItemId, itemName, originalUnitPrice,
    unitPrice, quantity, lineItemTotal, totalTax, totalSurcharge, prepay, taxableAmt, daysToProcess,
    notes, balance, upchargeTotal, colorTotal, patternTotal, discountable, couponable, VIPDiscountable,
    parentId, saleOnly, pkgQuantity, priceLater, dueDate, originalLineNumber, promptResponse, redo,
    invoiceNumber, heatSeal};
// What it takes to the child besides.
constexpr std::array<Column, 4> kTakenOnly = {chargeTaxCode, flattenedGroup, origQuantity, outsideService};
// clang-format on

// Most pieces of a line on a child.
constexpr std::int32_t kMostPieces = 32000;

// What the pieces of one line share out, and add up to when they are joined again.
constexpr std::array kAmounts = {lineItemTotal, totalTax,      totalSurcharge, taxableAmt,
                                 balance,       upchargeTotal, colorTotal,     patternTotal};

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

constexpr int kMostPiecesToSplit = 10'000;  // of a line

}  // namespace

// ---------------------------------------------------------------- piece by piece

// The last piece keeps the line's number, and with it what hangs on the line: it is the one into which
// collectLineItems joins the others. A line that was mistyped into millions of pieces is refused while the invoice is
// whole: each piece becomes a line.
void Invoice::flattenLineItems() {
  lineItems->setFilter("itemType = 'IT' AND quantity > 1");
  lineItems->setSort("quantity DESC");
  if (!lineItems->eof() && lineItems->value(quantity).toDouble() > kMostPiecesToSplit) {
    lineItems->clearFilter();
    throw Error(ErrorNumber::Overflow, className(),
                fmt::format("A line of more than {} pieces cannot be split", kMostPiecesToSplit));
  }
  for (; !lineItems->eof(); lineItems->moveNext()) divideIntoPieces();
  lineItems->clearFilter();
}

void Invoice::divideIntoPieces() {
  std::vector<Column> columns;
  std::vector<Variant> values;
  for (int index = 0; index < lineItems->fieldCount(); ++index) {
    columns.emplace_back(index);
    values.push_back(lineItems->value(columns.back()));
  }
  const auto cell = [&](LineColumn column) -> Variant& { return values[static_cast<size_t>(column)]; };
  const std::int32_t pieces = cell(quantity).toLong();
  const Variant ownNumber = cell(lineNumber);
  std::array<std::vector<double>, kAmounts.size()> parts;
  for (size_t k = 0; k < kAmounts.size(); ++k)
    if (const Variant& amount = cell(kAmounts[k]); !amount.isNull())
      parts[k] = evenParts(amount.toDouble(), pieces);

  lineItems->deleteRow();
  cell(quantity) = 1;
  cell(flattenedGroup) = ownNumber;
  const RecordsetRef target = lineItems->clone();
  for (std::int32_t piece = 1; piece <= pieces; ++piece) {
    cell(lineNumber) = piece == pieces ? ownNumber : Variant(currentLineNumber++);
    for (size_t k = 0; k < kAmounts.size(); ++k)
      if (!parts[k].empty()) cell(kAmounts[k]) = parts[k][static_cast<size_t>(piece - 1)];
    target->addNew(columns, values);
  }
}

void Invoice::collectLineItems() {
  lineItems->clearFilter();
  if (lineItems->recordCount() == 0) return;
  lineItems->setFilter("flattenedGroup > 0");
  lineItems->setSort("flattenedGroup");
  while (!lineItems->eof() && !lineItems->bof())
    if (!mergeFlattenedLine()) lineItems->moveNext();
  lineItems->clearFilter();
}

bool Invoice::mergeFlattenedLine() {
  const Variant group = lineItems->value(flattenedGroup);
  const Variant pieces = lineItems->value(quantity);
  const std::int32_t oldParent = lineItems->integer(lineNumber);
  std::array<Variant, kAmounts.size()> amounts;
  for (size_t k = 0; k < amounts.size(); ++k) amounts[k] = lineItems->value(kAmounts[k]);

  lineItems->moveNext();
  if (lineItems->eof()) {
    lineItems->movePrevious();
    return false;
  }
  const bool sameGroup = isEqual(lineItems->value(flattenedGroup), group);
  lineItems->movePrevious();
  if (!sameGroup) {
    lineItems->setValue(flattenedGroup, 0);
    return false;
  }
  lineItems->deleteRow();
  lineItems->moveNext();
  lineItems->setValue(quantity, lineItems->value(quantity) + pieces);
  for (size_t k = 0; k < amounts.size(); ++k)
    lineItems->setValue(kAmounts[k], lineItems->value(kAmounts[k]) + amounts[k]);
  moveChildLines(oldParent, lineItems->integer(lineNumber));
  return true;
}

void Invoice::moveChildLines(std::int32_t oldParent, std::int32_t newParent) {
  const Variant filter = lineItems->filter();
  const std::string sort = lineItems->sort();
  lineItems->setFilter(fmt::format("parentLineNumber = {}", oldParent));
  for (; !lineItems->eof(); lineItems->moveNext()) lineItems->setValue(parentLineNumber, newParent);
  lineItems->setFilter(filter);
  lineItems->setSort(sort);
  lineItems->moveFirst();
}

// ---------------------------------------------------------------- to a child and back

void Invoice::copyLineItem(Recordset& target, const Recordset& source) {
  addReturned(target, source);
  for (const Column column : kTakenOnly) target.setValue(column, source.value(column));
  capPieces(target, quantity);
  capPieces(target, origQuantity);
}

void Invoice::moveLine(Invoice& child, std::string& attached) {
  copyLineItem(*child.lineItems, *lineItems);
  attached +=
      fmt::format("{}parentLineNumber={}", attached.empty() ? "" : " OR ", lineItems->integer(lineNumber));
  lineItems->deleteRow();
}

double Invoice::moveAttachedLines(Invoice& child, std::string filter) {
  double moved = 0;
  while (!filter.empty()) {
    lineItems->setFilter(filter);
    filter.clear();
    for (; !lineItems->eof(); lineItems->moveNext()) {
      moved += lineItems->number(lineItemTotal);
      child.raiseLineNumber(lineItems->integer(lineNumber));
      moveLine(child, filter);
    }
  }
  return moved;
}

void Invoice::raiseLineNumber(std::int32_t number) {
  currentLineNumber = std::max(currentLineNumber, number);
}

void Invoice::mergeSplitInvoices() {
  if (!invoicesDictionary) return;
  splitTheInvoice = false;
  for (const auto& child : splitChildren())
    for (const RecordsetRef lines = child->lineItems->clone(); !lines->eof(); lines->moveNext())
      addReturned(*lineItems, *lines);
  invoicesDictionary = nullptr;
}

}  // namespace ondrel
