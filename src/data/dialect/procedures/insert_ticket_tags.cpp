#include <fmt/format.h>

#include "data/dialect/procedures/ticket_procedures.h"

namespace ondrel::sql {

// (ticket, invoice number, heat seals): draws a tag for every piece to be cleaned that has neither a heat
// seal nor a tag already. Tag numbers run per shop and say nothing of the invoice, whose number is not used.
RecordsetRef insertTicketTags(ProcedureCall& call) {
  const std::int32_t ticket = call.integer(0);
  const std::int32_t seals = call.integer(2);
  const RecordsetRef row = call.query(fmt::format(
      "select storeId, (select isnull(sum(quantity * isnull(packagedQuantity, 1)), 0) from TicketLineItem "
      "where ticketNumber = {0} and ticketLineType = 'IT' and isnull(saleOnly, 0) = 0) as pieces, (select "
      "count(*) from TicketTag where ticketNumber = {0}) as tags from Ticket where ticketNumber = {0}",
      ticket));
  if (row->eof()) return nullptr;
  const std::int32_t count = row->integer("pieces") - seals - row->integer("tags");
  if (count <= 0) return nullptr;
  const std::int32_t first =
      drawTagNumbers(call, row->isNull("storeId") ? 0 : row->integer("storeId"), count);
  for (std::int32_t tag = first; tag < first + count; ++tag)
    call.execute(
        fmt::format("insert into TicketTag (ticketNumber, tagNumber, tagNumberType) values ({}, '{}', 'T')",
                    ticket, tag));
  return nullptr;
}

}  // namespace ondrel::sql
