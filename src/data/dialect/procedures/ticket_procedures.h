#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "data/dialect/procedures/procedure.h"

namespace ondrel::sql {

// Bodies of the procedures that write tickets; what each argument means stands in the file of the body.
RecordsetRef insertTicket(ProcedureCall& call);
RecordsetRef insertQuickInvoice(ProcedureCall& call);
RecordsetRef updateTicket(ProcedureCall& call);
RecordsetRef updateInventory(ProcedureCall& call);
RecordsetRef insertTicketTags(ProcedureCall& call);
RecordsetRef isHeatSealDept(ProcedureCall& call);
RecordsetRef sendToWhiteAdc(ProcedureCall& call);

// ---- parts that these and other procedures share

// A column of Ticket and the argument that fills it.
struct HeaderColumn {
  std::string_view name;
  int argument;
};

// What a procedure knows of the ticket that it makes: places of its arguments, and SQL text.
struct NewTicket {
  int store, invoiceNumber, customer;  // the number is drawn when it is Null
  std::span<const HeaderColumn> columns;
  std::string_view fixedNames, fixedValues;  // columns that no argument fills, each with a comma in front
  std::string pickupName, pickupPlace;       // of another person's pickup
};
// Writes the header of a new ticket and its copy of the customer. Gives TicketNumber and InvoiceNumber.
RecordsetRef writeNewTicket(ProcedureCall& call, const NewTicket& ticket);

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

}  // namespace ondrel::sql
