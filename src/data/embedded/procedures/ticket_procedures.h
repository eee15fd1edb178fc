#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "data/embedded/procedures/procedure.h"

namespace ondrel {

// Bodies of the procedures that write tickets; what each argument means stands in the file of the body.
RecordsetRef insertTicket(ProcedureCall& call);
RecordsetRef updateTicket(ProcedureCall& call);
RecordsetRef updateInventory(ProcedureCall& call);
RecordsetRef insertTicketTags(ProcedureCall& call);

// ---- parts that these and other procedures share

// A column of Ticket and the argument that fills it.
struct HeaderColumn {
  std::string_view name;
  int argument;
};

// The next number that no ticket has, over all shops.
std::int32_t drawTicketNumber(ProcedureCall& call);
// The next number of the shop that no ticket has.
std::string drawInvoiceNumber(ProcedureCall& call, std::int32_t store);
// The first of `count` numbers of the shop that follow each other.
std::int32_t drawTagNumbers(ProcedureCall& call, std::int32_t store, std::int32_t count);

// Gives the ticket its copy of the customer; a customer who is not on file gives none. `name` and `place` of
// another person's pickup are SQL text.
void copyCustomer(ProcedureCall& call, std::int32_t ticket, const std::string& customer,
                  const std::string& name, const std::string& place);

}  // namespace ondrel
