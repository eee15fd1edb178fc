#include "invoice/seals/tagged_items.h"

#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/splitting/line_moves.h"
#include "invoice/ticket_tag.h"

namespace ondrel {
namespace {

bool hasTags(const Invoice& invoice) {
  return invoice.ticketTags && invoice.ticketTags->count() > 0;
}

TicketTag& tagOf(const Variant& item) {
  auto* tag = dynamic_cast<TicketTag*>(item.toObject().get());
  if (!tag)
    throw Error(ErrorNumber::ObjectRequired, "invoice", "ticketTags holds something that is no TicketTag");
  return *tag;
}

// ---------------------------------------------------------------- garments known by their seal

// The new number is known on the connection that drew it, so the insert and the question share one.
std::string addTaggedItem(Apartment& apartment, const std::string& seal, const std::string& priceListItem) {
  openTransaction(apartment);
  executeInTransaction(
      apartment, fmt::format(" insert into taggeditem (OccupationPercent, PriceListItemID)  values (25, {}) ",
                             priceListItem));
  const RecordsetRef row = queryInTransaction(apartment, " select @@identity as newID ");
  const std::string taggedItem = row->eof() ? "" : row->value("newID").joined();
  commitTransaction(apartment);
  if (!taggedItem.empty())
    executeInTransaction(
        apartment, fmt::format("insert into taggedpiece(heatsealid, taggeditemid)  values ('{}', '{}')", seal,
                               taggedItem));
  return taggedItem;
}

// Number of the garment that the seal is known for, whose item becomes `priceListItem`; a new one for an unknown
// seal. Both are SQL text.
std::string findTaggedItem(Apartment& apartment, const std::string& seal, const std::string& priceListItem) {
  const RecordsetRef piece =
      queryDatabase(apartment, fmt::format(" select * from taggedpiece where heatsealid = '{}'", seal));
  if (piece->eof()) return addTaggedItem(apartment, seal, priceListItem);
  const std::string taggedItem = piece->value("taggedItemID").joined();
  executeInTransaction(apartment,
                       fmt::format(" update taggeditem set pricelistitemid = {} where taggeditemid = {}",
                                   priceListItem, taggedItem));
  return taggedItem;
}

// | step | acts on                 | effect                                                              |
// |------|-------------------------|---------------------------------------------------------------------|
// | 1    | the garment of the seal | follows a change of its item; made, with its seal, when unknown     |
// | 2    | its descriptors         | forgotten, then those of the line remembered, one-shots left out    |
// | 3    | the ticket              | linked to the garment                                               |
void saveTaggedItem(Invoice& invoice, const Recordset& garment) {
  Apartment& apartment = *invoice.apartment();
  const std::int32_t line = garment.integer(col::lineNumber);
  const std::string taggedItem = findTaggedItem(apartment, escapeSqlValue(garment.value(col::heatSeal)),
                                                sqlNumber(garment.value(col::lineItemId)));
  if (taggedItem.empty()) return;

  executeInTransaction(apartment,
                       fmt::format(" delete from taggeditemdescriptor where taggeditemid = {}", taggedItem));
  for (auto child = invoice.lines().peek(fmt::format("parentLineNumber={}", line)); child; child.next()) {
    if (!kind::isDescriptor(toUpper(child->text(col::itemType))) || child->flag(col::oneShot)) continue;
    executeInTransaction(
        apartment,
        fmt::format(" insert into taggeditemdescriptor (taggeditemid, descriptorname, descriptortype)  "
                    "values ('{}', '{}', '{}')",
                    taggedItem, escapeSqlValue(child->text(col::itemName)), child->text(col::itemType)));
  }
  executeInTransaction(apartment,
                       fmt::format(" INSERT INTO TicketLineItemTaggedItem (taggedItemID, ticketNumber, "
                                   "lineItemNumber)  VALUES ('{}', '{}', '{}')",
                                   taggedItem, invoice.ticketNo, line));
}

}  // namespace

void saveTaggedItems(Invoice& invoice) {
  invoice.lines().each(ofKind(kind::garment), [&](const Recordset& garment) {
    if (!garment.textView(col::heatSeal).empty()) saveTaggedItem(invoice, garment);
  });
}

// ---------------------------------------------------------------- paper tags

void saveTicketTags(const Invoice& invoice, std::string_view userAction) {
  if (!hasTags(invoice)) return;
  if (userAction == "edit")
    executeInTransaction(*invoice.apartment(),
                         fmt::format("Delete TicketTag Where ticketNumber={}", invoice.ticketNo));
  for (const Variant& item : invoice.ticketTags->items()) {
    const TicketTag& tag = tagOf(item);
    executeInTransaction(
        *invoice.apartment(),
        fmt::format("INSERT INTO TicketTag (ticketNumber, tagNumber, tagNumberType, tagColor, "
                    "lotNumber)  VALUES({},'{}', 'T' ,'{}', '{}')",
                    invoice.ticketNo, tag.TagNumber, tag.TagColor, tag.LotNumber));
  }
}

void Invoice::insertTagsForTicket(const Variant&) {
  const auto drawTags = [this](const Invoice& ticket) {
    if (hasTags(ticket)) return;
    // The seals counted are those of the whole order, also for a ticket split off it.
    executeInTransaction(*apartment_, fmt::format("InsertTicketTags {},'{}',{}", ticket.ticketNo,
                                                  ticket.invoiceNo, getHeatSealCount().toLong()));
  };
  openTransaction(*apartment_);
  drawTags(*this);
  for (const auto& child : splitChildren(*this)) drawTags(*child);
  commitTransaction(*apartment_);
}

}  // namespace ondrel
