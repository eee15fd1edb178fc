#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/splitting/line_moves.h"
#include "invoice/ticket_tag.h"

namespace ondrel {
namespace {

using enum LineColumn;

bool hasTags(const Invoice& invoice) {
  return invoice.ticketTags && invoice.ticketTags->count() > 0;
}

TicketTag& tagOf(const Variant& item) {
  auto* tag = dynamic_cast<TicketTag*>(item.toObject().get());
  if (!tag)
    throw Error(ErrorNumber::ObjectRequired, "invoice", "ticketTags holds something that is no TicketTag");
  return *tag;
}

}  // namespace

// ---------------------------------------------------------------- garments known by their seal

void Invoice::saveTaggedItems() {
  lineItems->setFilter("itemType='IT'");
  for (; !lineItems->eof(); lineItems->moveNext())
    if (!lineItems->textView(heatSeal).empty()) saveTaggedItem(*lineItems);
  lineItems->clearFilter();
}

// | step | acts on                 | effect                                                              |
// |------|-------------------------|---------------------------------------------------------------------|
// | 1    | the garment of the seal | follows a change of its item; made, with its seal, when unknown     |
// | 2    | its descriptors         | forgotten, then those of the line remembered, one-shots left out    |
// | 3    | the ticket              | linked to the garment                                               |
void Invoice::saveTaggedItem(const Recordset& garment) {
  const std::int32_t line = garment.integer(lineNumber);
  const std::string taggedItem =
      findTaggedItem(escapeSqlValue(garment.value(heatSeal)), sqlNumber(garment.value(lineItemId)));
  if (taggedItem.empty()) return;

  executeInTransaction(*apartment_,
                       fmt::format(" delete from taggeditemdescriptor where taggeditemid = {}", taggedItem));
  const RecordsetRef lines = lineItems->clone();
  lines->setFilter(fmt::format("parentLineNumber={}", line));
  for (; !lines->eof(); lines->moveNext()) {
    if (!kind::isDescriptor(toUpper(lines->text(itemType))) || lines->flag(oneShot)) continue;
    executeInTransaction(
        *apartment_,
        fmt::format(" insert into taggeditemdescriptor (taggeditemid, descriptorname, descriptortype)  "
                    "values ('{}', '{}', '{}')",
                    taggedItem, escapeSqlValue(lines->text(itemName)), lines->text(itemType)));
  }
  executeInTransaction(*apartment_,
                       fmt::format(" INSERT INTO TicketLineItemTaggedItem (taggedItemID, ticketNumber, "
                                   "lineItemNumber)  VALUES ('{}', '{}', '{}')",
                                   taggedItem, ticketNo, line));
}

std::string Invoice::findTaggedItem(const std::string& seal, const std::string& priceListItem) {
  const RecordsetRef piece =
      queryDatabase(*apartment_, fmt::format(" select * from taggedpiece where heatsealid = '{}'", seal));
  if (piece->eof()) return addTaggedItem(seal, priceListItem);
  const std::string taggedItem = piece->value("taggedItemID").joined();
  executeInTransaction(*apartment_,
                       fmt::format(" update taggeditem set pricelistitemid = {} where taggeditemid = {}",
                                   priceListItem, taggedItem));
  return taggedItem;
}

// The new number is known on the connection that drew it, so the insert and the question share one.
std::string Invoice::addTaggedItem(const std::string& seal, const std::string& priceListItem) {
  openTransaction(*apartment_);
  executeInTransaction(
      *apartment_,
      fmt::format(" insert into taggeditem (OccupationPercent, PriceListItemID)  values (25, {}) ",
                  priceListItem));
  const RecordsetRef row = queryInTransaction(*apartment_, " select @@identity as newID ");
  const std::string taggedItem = row->eof() ? "" : row->value("newID").joined();
  commitTransaction(*apartment_);
  if (!taggedItem.empty())
    executeInTransaction(*apartment_,
                         fmt::format("insert into taggedpiece(heatsealid, taggeditemid)  values ('{}', '{}')",
                                     seal, taggedItem));
  return taggedItem;
}

// ---------------------------------------------------------------- paper tags

void Invoice::saveTicketTags(std::string_view userAction) {
  if (!ticketTags) return;
  if (userAction == "edit")
    executeInTransaction(*apartment_, fmt::format("Delete TicketTag Where ticketNumber={}", ticketNo));
  for (const Variant& item : ticketTags->items()) {
    const TicketTag& tag = tagOf(item);
    executeInTransaction(
        *apartment_, fmt::format("INSERT INTO TicketTag (ticketNumber, tagNumber, tagNumberType, tagColor, "
                                 "lotNumber)  VALUES({},'{}', 'T' ,'{}', '{}')",
                                 ticketNo, tag.TagNumber, tag.TagColor, tag.LotNumber));
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
