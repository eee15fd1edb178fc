#include <fmt/format.h>

#include "data/dialect/procedures/ticket_procedures.h"
#include "data/values.h"

namespace ondrel::sql {
namespace {

// Arguments that do not go into a column as they are.
constexpr int kTicket = 0, kRoute = 1, kChangedCustomer = 4, kChangedPickupName = 13,
              kChangedPickupPlace = 14;

// What the arguments mean, by position from 0.
// clang-format off
constexpr HeaderColumn kChangedColumns[] = {
    // column of Ticket         argument
    // ticketNumber             0: the ticket to change
    // routeNumber              1: a text, NULL for none
    {"lastModifiedByEmployeeId", 2},
    {"dueDate",                  3},
    {"customerSequenceNumber",  kChangedCustomer},
    {"starchPreferenceName",     5},
    {"finishPreferenceName",     6},
    {"onHold",                   7},
    {"terminalId",               8},
    {"amountPaid",               9},
    {"netTotal",                10},  // to pay
    {"taxTotal",                11},
    {"surchargeTotal",          12},
    // TicketCustomer           13, 14: name and place of another person's pickup
    {"vipQualifyingAmount",     15},
    {"couponTotal",             16},
    {"promotionTotal",          17},
    //                          18: always 0
    {"invoiceTotal",            19},  // goods with their taxes and surcharges
    {"priceChangeTotal",        20},
    {"accessoryTotal",          21},
    {"employeeName",            22},
    {"storeName",               23},
    //                          24: always 0
    {"invoiceType",             25},
    {"pickupTime",              26},  // ready time of day
    {"prepayEnabled",           27},
};
// clang-format on

std::string routeOf(const ProcedureCall& call) {
  const bool none = call.isNull(kRoute) || call.text(kRoute) == "NULL" || call.text(kRoute).empty();
  return none ? "NULL" : std::to_string(call.integer(kRoute));
}

// A ticket that was called up to be edited does not know who collects it and where: what the call leaves out stays.
struct OtherPickup {
  std::string name, place;
};

OtherPickup otherPickupOf(ProcedureCall& call, std::int32_t ticket) {
  const RecordsetRef known = call.query(fmt::format(
      "select multiPickupCustomerName as name, multiPickupLocation as place from TicketCustomer where ticketNumber = {}",
      ticket));
  const auto given = [&](int argument, std::string_view column) {
    return call.isNull(argument) && !known->eof() ? sqlQuotedOrNull(known->value(column))
                                                  : call.sql(argument);
  };
  return {given(kChangedPickupName, "name"), given(kChangedPickupPlace, "place")};
}

}  // namespace

// Writes the header over that of a ticket and takes the customer's copy anew. Who wrote the ticket, when, its
// invoice number and its status stay. Gives TicketNumber and LogDate, the moment of the change.
RecordsetRef updateTicket(ProcedureCall& call) {
  const std::int32_t ticket = call.integer(kTicket);
  if (call.query(fmt::format("select ticketNumber from Ticket where ticketNumber = {}", ticket))->eof())
    throw Error(ErrorNumber::StatementFailed, "UpdateTicket", fmt::format("There is no ticket {}", ticket));
  const std::string now = call.now().text();
  std::string changes = fmt::format("lastModifiedDate = '{}', routeNumber = {}", now, routeOf(call));
  for (const HeaderColumn& column : kChangedColumns)
    changes += fmt::format(", {} = {}", column.name, call.sql(column.argument));
  call.execute(fmt::format("update Ticket set {} where ticketNumber = {}", changes, ticket));
  const OtherPickup other = otherPickupOf(call, ticket);
  call.execute(fmt::format("delete from TicketCustomer where ticketNumber = {}", ticket));
  copyCustomer(call, ticket, call.sql(kChangedCustomer), other.name, other.place);
  return call.query(fmt::format(
      "select ticketNumber as TicketNumber, lastModifiedDate as LogDate from Ticket where ticketNumber = {}",
      ticket));
}

}  // namespace ondrel::sql
