#include <fmt/format.h>

#include "data/dialect/procedures/ticket_procedures.h"

namespace ondrel::sql {

// (action, ticket): leaves a message for the conveyor, which fetches it by itself.
RecordsetRef sendToWhiteAdc(ProcedureCall& call) {
  call.execute(
      fmt::format("insert into ConveyorQueue (action, ticketNumber, queuedDate) values ({}, {}, '{}')",
                  call.sql(0), call.sql(1), call.now().text()));
  return nullptr;
}

}  // namespace ondrel::sql
