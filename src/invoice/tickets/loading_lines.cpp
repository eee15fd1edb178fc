#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"
#include "invoice/tickets/stored_lines.h"

namespace ondrel {
namespace {

using enum LineColumn;

// What a kind of line brings beyond the columns of all.
// clang-format off
constexpr FilledFrom kGarment[] = {
  {discountable,     "discountable"},
  {couponable,       "couponable"},
  {VIPDiscountable,  "VIPDiscountable"},
  {saleOnly,         "saleOnly"},
  {VIPQualified,     "VIPQualified"},
  {pkgQuantity,      "packagedQuantity"},
  {peNotes,          "notes"},
  {dueDate,          "dueDate"},
  {origQuantity,     "quantity"},
  {outsideService,   "outsideService"},
  {priceLater,       "priceLater"},
  {promptResponse,   "promptResponse"},
  {redo,             "redo"},
  {invoiceNumber,    "invoiceNumber"},
  {pickedUp,         "pickedUp"},
  {backgroundImage,  "imageFileName"},
  {backgroundColor,  "color"},
  {heatSeal,         "heatSeal"},
  {requiresHeatSeal, "useHeatSeals"},
};
constexpr FilledFrom kCharge[] = {
  {chargeTaxCode,    "chargeTaxCode"},
  {origQuantity,     "quantity"},
  {dueDate,          "dueDate"},
  {invoiceNumber,    "invoiceNumber"},
  {pickedUp,         "pickedUp"},
  {pkgQuantity,      "packagedQuantity"},
  {heatSeal,         "heatSeal"},
};
constexpr FilledFrom kQuick[] = {
  {origQuantity,     "quantity"},
  {dueDate,          "dueDate"},
};
constexpr FilledFrom kDescriptive[] = {
  {origQuantity,     "quantity"},
  {discountable,     "discountable"},
  {couponable,       "couponable"},
  {VIPDiscountable,  "VIPDiscountable"},
  {backgroundImage,  "imageFileName"},
  {backgroundColor,  "color"},
};
// clang-format on

// The sum of a garment that a descriptor adds to.
struct ParentSum {
  std::string_view type;
  LineColumn sum;
};
constexpr std::array<ParentSum, 3> kParentSums = {
    {{kind::upcharge, upchargeTotal}, {kind::color, colorTotal}, {kind::pattern, patternTotal}}};

}  // namespace

// How the lines of a kind come back; the row without a type stands for all kinds that are not named.
struct Invoice::LineLoader {
  std::string_view type;
  void (Invoice::*load)(const StoredLines& lines, const LoadStep& step);
  std::span<const FilledFrom> extra;
};

// A loader with its columns found in the view.
struct Invoice::LoadStep {
  const LineLoader* loader = nullptr;
  StoredLines::Filling filling;
  std::string type;  // of the line at hand, in upper case
};

void Invoice::loadTicketLines() {
  // clang-format off
  static constexpr LineLoader kLoaders[] = {
      // type             operation                       columns
      {kind::garment,     &Invoice::loadGarmentLine,      kGarment},
      {kind::charge,      &Invoice::loadDepartmentLine,   kCharge},
      {kind::department,  &Invoice::loadDepartmentLine,   kQuick},
      {kind::coupon,      &Invoice::loadMergedLine,       {}},
      {kind::loyalty,     &Invoice::loadMergedLine,       {}},
      {kind::vip,         nullptr,                        {}},  // worked out anew
      {"",                &Invoice::loadDescriptiveLine,  kDescriptive},
  };
  // clang-format on
  // Garments and charges come first, so that a descriptor finds its parent in the table.
  loadLines(
      fmt::format(
          "SELECT lineItemNumber, parentLineNumber, TicketLineItem.departmentID as departmentID,  "
          "TicketLineItem.departmentName, ticketLineType, lineItemID, TicketLineItem.saleOnly as saleOnly,  "
          "lineItemName, IsNull(originalUnitPrice,0.0) as originalUnitPrice, IsNull(unitPrice,0.0) as "
          "unitPrice, "
          "quantity, lineItemTotal,  IsNull(totalTaxPercent,0.0) as totalTaxPercent, "
          "IsNull(totalSurchargePercent,0.0) as totalSurchargePercent, lineItemTaxableAmount, itemNotes,  "
          "TicketLineItem.outsideService as outsideService, totalUpchargeAmount,  chargeTaxCode, "
          "PriceListItem.discountable, PriceListItem.couponable , PriceListItem.VIPDiscountable, "
          "PriceListItem.VIPQualified,  IsNull(packagedQuantity,1) as packagedQuantity,  "
          "pricelistitem.notes, "
          "TicketLineItem.daysToProcess, TicketLineItem.dueDate as dueDate, TicketLineItem.priceLater, "
          "TicketLineItem.promptResponse, TicketLineItem.redo,  TicketLineItem.prepayDiscount, "
          "TicketLineItem.InvoiceNumber, TicketLineItem.pickedUp,  isnull(PriceListItem.imageFileName, '') "
          "as "
          "imageFileName, '' as color, isnull(heatSeal, '') as heatSeal, department.useHeatSeals  From "
          "TicketLineItem "
          " left outer join PriceListItem on lineItemId = priceListItemId  left outer join department on "
          "TicketLineItem.departmentId = department.departmentID  Where ticketNumber = '{}' order by case "
          "ticketLineType when 'IT' then 0 when 'AC' then 1 else 2 end, TicketLineItem.displaySequence ",
          ticketNo),
      kLoaders);
}

void Invoice::loadPrintLines() {
  // clang-format off
  static constexpr LineLoader kLoaders[] = {
      // type             operation                          columns
      {kind::garment,     &Invoice::loadPrintGarmentLine,    kGarment},
      {kind::upcharge,    &Invoice::loadPrintDescriptorLine, kDescriptive},
      {kind::color,       &Invoice::loadPrintDescriptorLine, kDescriptive},
      {kind::pattern,     &Invoice::loadPrintDescriptorLine, kDescriptive},
      {kind::charge,      &Invoice::loadDepartmentLine,      kCharge},
      {kind::coupon,      &Invoice::loadMergedLine,          {}},
      {kind::loyalty,     &Invoice::loadMergedLine,          {}},
      {kind::tax,         &Invoice::loadMergedLine,          {}},
      {kind::surcharge,   &Invoice::loadMergedLine,          {}},
      {"",                &Invoice::loadDescriptiveLine,     kDescriptive},
  };
  // clang-format on
  loadLines(
      fmt::format(
          "SELECT t.lineItemNumber, t.parentLineNumber, T.departmentID,  t.departmentName, t.ticketLineType, "
          "t.lineItemID,   t.lineItemName, t.originalUnitPrice, t.unitPrice, t.quantity, t.lineItemTotal,  "
          "t.totalTaxPercent, t.totalSurchargePercent, t.lineItemTaxableAmount, t.itemNotes,  "
          "t.totalUpchargeAmount,  "
          "t.chargeTaxCode , notes , isnull(printNotes, 0) as printNotes, T.dueDate as dueDate,  "
          "T.daysToProcess as "
          "daysToProcess, T.outsideService, T.priceLater, T.promptResponse,  T.invoiceNumber, T.pickedUp, "
          "IsNull(t.packagedQuantity,1) as packagedQuantity, isnull(T.heatSeal, '') as heatSeal  From "
          "TicketLineItem "
          "T LEFT OUTER JOIN PriceListItem ON t.lineItemId = PriceListItem.priceListItemId  Where "
          "t.ticketNumber = "
          "'{}' order by t.displaySequence",
          ticketNo),
      kLoaders);
}

void Invoice::loadLines(const std::string& statement, std::span<const LineLoader> loaders) {
  const RecordsetRef rows = queryDatabase(*apartment_, statement);
  if (rows->eof()) return;
  StoredLines lines(rows);
  lineItems->reserveRows(static_cast<size_t>(rows->recordCount()));
  std::vector<LoadStep> steps;
  for (; !lines.atEnd(); lines.next()) {
    const std::string type = toUpper(lines.type());
    const auto loader = std::find_if(loaders.begin(), loaders.end(), [&](const LineLoader& each) {
      return each.type == type || each.type.empty();
    });
    if (!loader->load) continue;
    auto step = std::find_if(steps.begin(), steps.end(),
                             [&](const LoadStep& each) { return each.loader == &*loader; });
    if (step == steps.end()) step = steps.insert(step, {&*loader, lines.fillingOf(loader->extra), {}});
    step->type = type;
    (this->*loader->load)(lines, *step);
  }
  ++currentLineNumber;
  lineItems->clearFilter();  // the last line counts from here on
}

// ---------------------------------------------------------------- one loader a treatment

void Invoice::addStoredLine(const StoredLines& lines, const LoadStep& step) {
  lines.addLine(*lineItems, step.filling);
  currentLineNumber = std::max(currentLineNumber, lines.number());
}

// A garment without its price-list item cannot be priced again.
void Invoice::loadGarmentLine(const StoredLines& lines, const LoadStep& step) {
  if (lines.row().isNull("couponable")) isEdittable = false;
  addGarmentLine(lines, step);
}

void Invoice::loadPrintGarmentLine(const StoredLines& lines, const LoadStep& step) {
  addGarmentLine(lines, step);
  if (!lines.row().flag("printNotes")) lineItems->setValue(peNotes, Variant::null());
}

void Invoice::addGarmentLine(const StoredLines& lines, const LoadStep& step) {
  loadDepartmentLine(lines, step);
  for (const ParentSum& each : kParentSums) lineItems->setValue(each.sum, 0);
}

// Garments, charges and department lines put their department on the list of the invoice.
void Invoice::loadDepartmentLine(const StoredLines& lines, const LoadStep& step) {
  addStoredLine(lines, step);
  // A line of a quick drop-off keeps its kind as it was written.
  if (step.type != kind::department) lineItems->setValue(itemType, step.type);
  if (lineItems->isNull(deptId)) return;
  const std::int32_t department = lineItems->integer(deptId);
  if (isDepartmentLoaded(department)) return;
  state_.departments.back() = department;
  state_.departments.push_back(0);
}

// The shares of one offer, tax or surcharge become one line again.
void Invoice::loadMergedLine(const StoredLines& lines, const LoadStep& step) {
  lineItems->setFilter(fmt::format("lineItemId={} AND itemType='{}'", sqlNumber(lines.itemId()), step.type));
  if (lineItems->eof())
    addStoredLine(lines, step);
  else
    lineItems->setValue(lineItemTotal, lineItems->number(lineItemTotal) + lines.total());
  lineItems->clearFilter();
}

void Invoice::loadDescriptiveLine(const StoredLines& lines, const LoadStep& step) {
  Variant parent = Variant::null();
  if (findLine(lines.parentNumber())) {
    parent = lineItems->value(lineItemId);
    for (const ParentSum& each : kParentSums)
      if (each.type == step.type)
        lineItems->setValue(each.sum, lineItems->value(each.sum).joined().empty()
                                          ? Variant(lines.total())
                                          : lineItems->value(each.sum) + lines.total());
  }
  lineItems->clearFilter();
  addStoredLine(lines, step);
  lineItems->setValue(parentId, parent);
}

void Invoice::loadPrintDescriptorLine(const StoredLines& lines, const LoadStep& step) {
  loadDescriptiveLine(lines, step);
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format(" select isnull(Notes,'')  as notes from ItemDescriptorPrice where printnotes = 1 and "
                  "priceListItemId='{}' And descriptorName='{}' And descriptorType='{}'",
                  lineItems->value(parentId).joined(), escapeSqlValue(lineItems->text(itemName)),
                  lines.type()));
  if (!rows->eof()) lineItems->setValue(peNotes, rows->value("notes"));
}

}  // namespace ondrel
