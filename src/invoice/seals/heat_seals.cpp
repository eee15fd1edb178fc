#include <fmt/format.h>

#include <array>

#include "base/text.h"
#include "data/query_database.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

constexpr std::string_view kSealed = "heatSeal <> ''";

// Between the first and the last seal of a roll, and as long as both.
bool isOfRoll(const std::string& seal, const std::string& first, const std::string& last) {
  const size_t length = characterCount(seal);
  return seal >= first && seal <= last && characterCount(first) == length && characterCount(last) == length;
}

// ---------------------------------------------------------------- what is wrong with a seal, or ""

std::string sealRangeFault(Invoice& invoice, const std::string& seal) {
  const RecordsetRef rolls =
      queryDatabase(*invoice.apartment(), " select starths, endhs from validheatsealranges ");
  for (; !rolls->eof(); rolls->moveNext())
    if (isOfRoll(seal, rolls->text("starths"), rolls->text("endhs"))) return {};
  return fmt::format("Heat seal '{}' is not within a valid heat seal range.", seal);
}

std::string sealInvoiceFault(Invoice& invoice, const std::string& seal) {
  return invoice.lines().any(fmt::format("heatSeal='{}'", escapeSqlValue(seal)))
             ? fmt::format("Heat seal {} is already on this invoice.", seal)
             : "";
}

std::string sealActiveFault(Invoice& invoice, const std::string& seal) {
  const std::string otherInvoice =
      invoice.invoiceNo.empty() ? "" : fmt::format(" and invoiceNumber <> '{}'", invoice.invoiceNo);
  const RecordsetRef rows = queryDatabase(
      *invoice.apartment(),
      fmt::format(" select ticket.invoicenumber  from ticket  inner join ticketlineitemtaggeditem on "
                  "ticketlineitemtaggeditem.ticketnumber = ticket.ticketnumber  inner join taggedpiece on "
                  "taggedpiece.taggeditemid = ticketlineitemtaggeditem.taggeditemid  where "
                  "taggedpiece.heatsealid = '{}' {} and ticket.ticketstatus in ('ac', 'od') ",
                  seal, otherInvoice));
  if (rows->eof()) return {};
  return fmt::format("Heat seal '{}' is already on active invoice {}.", seal,
                     rows->value("invoicenumber").joined());
}

std::string sealCustomerFault(Invoice& invoice, const std::string& seal) {
  const RecordsetRef rows = queryDatabase(
      *invoice.apartment(),
      fmt::format(
          " select customer.customername  from ticket  inner join customer on "
          "ticket.customersequencenumber = customer.customersequencenumber  inner join "
          "ticketlineitemtaggeditem on ticketlineitemtaggeditem.ticketnumber = ticket.ticketnumber  "
          "inner join taggedpiece on taggedpiece.taggeditemid = ticketlineitemtaggeditem.taggeditemid  "
          "where taggedpiece.heatsealid = '{}'  and ticket.customersequencenumber <> {}",
          seal, invoice.custSeqNumber));
  if (rows->eof()) return {};
  return fmt::format("This heat seal '{}' does not belong to this customer. It was previous used with {}.",
                     seal, rows->value("customername").joined());
}

std::string sealDisabledFault(Invoice& invoice, const std::string& seal) {
  const RecordsetRef rows = queryDatabase(
      *invoice.apartment(),
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
  constexpr std::array kChecks = {&sealRangeFault, &sealInvoiceFault, &sealActiveFault, &sealCustomerFault,
                                  &sealDisabledFault};
  const std::string text = seal.joined();
  for (const auto check : kChecks) {
    const std::string fault = check(*this, text);
    if (fault.empty()) continue;
    message = fault;
    return false;
  }
  return true;
}

// ---------------------------------------------------------------- seals on lines

Variant Invoice::setLineHeatSeal(const Variant& line, Variant& seal) {
  // The page goes on whether or not the line took the seal; isMissingHeatSeals tells in the end.
  try {
    lines_.leaves(ofNumber(line));
    if (!lineItems->eof()) lineItems->setValue(col::heatSeal, seal);
  } catch (const Error&) {
  }
  return {};
}

void Invoice::addHeatSeal(const Variant& line, Variant& seal) {
  if (const LineSet found = lines_.find(line)) {
    removeNewHeatSeal(seal);
    found->setValue(col::heatSeal, seal);
  }
}

void Invoice::clearHeatSeals() {
  lines_.leaves(kSealed);
  if (!lineItems->eof()) lineItems->setValue(col::heatSeal, "");
}

Variant Invoice::getHeatSealCount() {
  return lines_.where(kSealed)->recordCount();
}

Variant Invoice::isMissingHeatSeals() {
  return lines_.any("heatSeal = '' and requiresHeatSeal = 1");
}

Variant Invoice::getDescriptorText(Variant& line) {
  std::string text;
  // A description is for the eye only: what cannot be read is left out.
  try {
    for (auto child = lines_.peek("parentLineNumber = " + line.joined()); child; child.next())
      if (kind::isDescriptor(toUpper(child->text(col::itemType))))
        text = trim(text + " " + child->text(col::itemName));
  } catch (const Error&) {
  }
  return std::string(trim(text));
}

}  // namespace ondrel
