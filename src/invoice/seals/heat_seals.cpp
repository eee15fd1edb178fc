#include <fmt/format.h>

#include <array>

#include "base/text.h"
#include "data/query_database.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"

namespace ondrel {
namespace {

using enum LineColumn;

constexpr std::string_view kSealed = "heatSeal <> ''";

// Between the first and the last seal of a roll, and as long as both.
bool isOfRoll(const std::string& seal, const std::string& first, const std::string& last) {
  const size_t length = characterCount(seal);
  return seal >= first && seal <= last && characterCount(first) == length && characterCount(last) == length;
}

}  // namespace

// ---------------------------------------------------------------- may a seal be used

// The first check that fails tells what is wrong; the others do not run.
//
// | check             | looks at                                       | passes                     |
// |-------------------|------------------------------------------------|----------------------------|
// | sealRangeFault    | the rolls that the shop bought                 | a seal of one of them      |
// | sealInvoiceFault  | this invoice                                   | a seal on none of its lines |
// | sealActiveFault   | tickets in the shop or out with the driver     | one of this very invoice   |
// | sealCustomerFault | all tickets                                    | one of this customer       |
// | sealDisabledFault | the garment's item, department and price list  | none of the three disabled |
Variant Invoice::isHeatSealValid(Variant& seal, Variant& message) {
  constexpr std::array kChecks = {&Invoice::sealRangeFault, &Invoice::sealInvoiceFault,
                                  &Invoice::sealActiveFault, &Invoice::sealCustomerFault,
                                  &Invoice::sealDisabledFault};
  const std::string text = seal.joined();
  for (const auto check : kChecks) {
    const std::string fault = (this->*check)(text);
    if (fault.empty()) continue;
    message = fault;
    return false;
  }
  return true;
}

std::string Invoice::sealRangeFault(const std::string& seal) {
  const RecordsetRef rolls = queryDatabase(*apartment_, " select starths, endhs from validheatsealranges ");
  for (; !rolls->eof(); rolls->moveNext())
    if (isOfRoll(seal, rolls->text("starths"), rolls->text("endhs"))) return {};
  return fmt::format("Heat seal '{}' is not within a valid heat seal range.", seal);
}

std::string Invoice::sealInvoiceFault(const std::string& seal) {
  lineItems->setFilter(fmt::format("heatSeal='{}'", escapeSqlValue(seal)));
  const bool found = !lineItems->eof();
  lineItems->clearFilter();
  return found ? fmt::format("Heat seal {} is already on this invoice.", seal) : "";
}

std::string Invoice::sealActiveFault(const std::string& seal) {
  const std::string otherInvoice =
      invoiceNo.empty() ? "" : fmt::format(" and invoiceNumber <> '{}'", invoiceNo);
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format(" select ticket.invoicenumber  from ticket  inner join ticketlineitemtaggeditem on "
                  "ticketlineitemtaggeditem.ticketnumber = ticket.ticketnumber  inner join taggedpiece on "
                  "taggedpiece.taggeditemid = ticketlineitemtaggeditem.taggeditemid  where "
                  "taggedpiece.heatsealid = '{}' {} and ticket.ticketstatus in ('ac', 'od') ",
                  seal, otherInvoice));
  if (rows->eof()) return {};
  return fmt::format("Heat seal '{}' is already on active invoice {}.", seal,
                     rows->value("invoicenumber").joined());
}

std::string Invoice::sealCustomerFault(const std::string& seal) {
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format(
          " select customer.customername  from ticket  inner join customer on "
          "ticket.customersequencenumber = customer.customersequencenumber  inner join "
          "ticketlineitemtaggeditem on ticketlineitemtaggeditem.ticketnumber = ticket.ticketnumber  "
          "inner join taggedpiece on taggedpiece.taggeditemid = ticketlineitemtaggeditem.taggeditemid  "
          "where taggedpiece.heatsealid = '{}'  and ticket.customersequencenumber <> {}",
          seal, custSeqNumber));
  if (rows->eof()) return {};
  return fmt::format("This heat seal '{}' does not belong to this customer. It was previous used with {}.",
                     seal, rows->value("customername").joined());
}

std::string Invoice::sealDisabledFault(const std::string& seal) {
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format(
          " select taggedpiece.HeatSealID, PriceListItem.disabled as plid, department.disabled as dd, "
          "pricelist.disable as pd  from TaggedItem inner join TaggedPiece on taggeditem.TaggedItemID = "
          "TaggedPiece.TaggedItemID inner join PriceListItem on taggeditem.PriceListItemID = "
          "PriceListItem.priceListItemID inner join Department on pricelistitem.departmentID = "
          "department.departmentID inner join PriceList on department.priceListID = "
          "pricelist.priceListID Where (PriceListItem.disabled = 1 Or Department.disabled = 1 Or "
          "pricelist.disable = 1) and taggedpiece.HeatSealID = '{}' ",
          seal));
  if (rows->eof()) return {};
  constexpr std::array<std::pair<std::string_view, std::string_view>, 3> kWords = {
      {{"plid", "item"}, {"dd", "department"}, {"pd", "pricelist"}}};
  std::string disabled;
  for (const auto& [column, word] : kWords) {
    if (!rows->flag(column)) continue;
    if (!disabled.empty()) disabled += ", ";
    disabled += word;
  }
  return fmt::format("This heat seal '{}' does can not be used. The {} is disabled.", seal, disabled);
}

// ---------------------------------------------------------------- seals on lines

Variant Invoice::setLineHeatSeal(const Variant& line, Variant& seal) {
  // The page goes on whether or not the line took the seal; isMissingHeatSeals tells in the end.
  try {
    if (findLine(line)) lineItems->setValue(heatSeal, seal);
  } catch (const Error&) {
  }
  return {};
}

void Invoice::addHeatSeal(const Variant& line, Variant& seal) {
  if (findLine(line)) {
    removeNewHeatSeal(seal);
    lineItems->setValue(heatSeal, seal);
  }
  lineItems->clearFilter();
}

void Invoice::clearHeatSeals() {
  lineItems->setFilter(kSealed);
  if (!lineItems->eof()) lineItems->setValue(heatSeal, "");
}

Variant Invoice::getHeatSealCount() {
  lineItems->setFilter(kSealed);
  const int count = lineItems->recordCount();
  lineItems->clearFilter();
  return count;
}

Variant Invoice::isMissingHeatSeals() {
  lineItems->setFilter("heatSeal = '' and requiresHeatSeal = 1");
  const bool missing = lineItems->recordCount() > 0;
  lineItems->clearFilter();
  return missing;
}

Variant Invoice::getDescriptorText(Variant& line) {
  std::string text;
  // A description is for the eye only: what cannot be read is left out.
  try {
    const RecordsetRef children = lineItems->clone();
    children->setFilter("parentLineNumber = " + line.joined());
    for (; !children->eof(); children->moveNext())
      if (kind::isDescriptor(toUpper(children->text(itemType))))
        text = trim(text + " " + children->text(itemName));
  } catch (const Error&) {
  }
  return std::string(trim(text));
}

}  // namespace ondrel
