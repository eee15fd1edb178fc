#include <fmt/format.h>

#include <string_view>

#include "data/dialect/procedures/ticket_procedures.h"

namespace ondrel::sql {

// (ticket, taken): takes the pieces of the ticket's sold items off the stock with `taken` 1 and puts them
// back with 0. An item of which no stock is kept is passed over.
RecordsetRef updateInventory(ProcedureCall& call) {
  const std::string_view sign = call.integer(1) == 0 ? "+" : "-";
  const RecordsetRef sold = call.query(fmt::format(
      "select lineItemID, sum(quantity * isnull(packagedQuantity, 1)) as pieces from TicketLineItem where "
      "ticketNumber = {} and ticketLineType = 'IT' and saleOnly = 1 group by lineItemID",
      call.integer(0)));
  for (; !sold->eof(); sold->moveNext()) {
    if (sold->isNull("lineItemID") || sold->isNull("pieces")) continue;
    call.execute(
        fmt::format("update inventory set quantityOnHand = quantityOnHand {} {} where priceListItemId = {}",
                    sign, sold->integer("pieces"), sold->integer("lineItemID")));
  }
  return nullptr;
}

}  // namespace ondrel::sql
