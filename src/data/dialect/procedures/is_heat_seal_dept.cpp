#include <fmt/format.h>

#include "data/dialect/procedures/ticket_procedures.h"

namespace ondrel::sql {

// (ticket): Result is 1 when the ticket has a line of a department that works with heat seals, otherwise 0.
RecordsetRef isHeatSealDept(ProcedureCall& call) {
  return call.query(fmt::format(
      "select case when count(*) > 0 then 1 else 0 end as Result from TicketLineItem l inner join "
      "Department d on d.departmentID = l.departmentID where l.ticketNumber = {} and "
      "d.useHeatSeals = 1",
      call.integer(0)));
}

}  // namespace ondrel::sql
