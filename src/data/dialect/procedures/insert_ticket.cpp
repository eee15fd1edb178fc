#include <fmt/format.h>

#include "base/text.h"
#include "data/dialect/procedures/ticket_procedures.h"

namespace ondrel::sql {
namespace {

// Arguments that do not go into a column as they are.
constexpr int kStore = 0, kInvoiceNumber = 1, kCustomer = 8, kPickupName = 17, kPickupPlace = 18;

// What the arguments mean, by position from 0.
// clang-format off
constexpr HeaderColumn kColumns[] = {
    // column of Ticket         argument
    {"storeId",                 kStore},
    // invoiceNumber            1, drawn when it is Null
    {"invoiceType",              2},  // D dropped off, Q uncounted, C sold over the counter
    {"ticketStatus",             3},
    {"priceListId",              4},
    {"routeNumber",              5},
    {"createdByEmployeeId",      6},
    {"lastModifiedByEmployeeId", 6},
    {"dueDate",                  7},
    {"customerSequenceNumber",  kCustomer},
    {"starchPreferenceName",     9},
    {"finishPreferenceName",    10},
    {"onHold",                  11},
    {"terminalId",              12},
    {"amountPaid",              13},
    {"netTotal",                14},  // to pay
    {"taxTotal",                15},
    {"surchargeTotal",          16},
    // TicketCustomer           17, 18: name and place of another person's pickup
    {"firstVisit",              19},
    {"vipQualifyingAmount",     20},
    {"couponTotal",             21},
    {"promotionTotal",          22},
    //                          23: always 0
    {"invoiceTotal",            24},  // goods with their taxes and surcharges
    {"priceChangeTotal",        25},
    {"accessoryTotal",          26},
    {"employeeName",            27},
    {"storeName",               28},
    //                          29: always 0
    {"pickupTime",              30},  // ready time of day
    {"prepayEnabled",           31},
};
// clang-format on

// What a ticket keeps of its customer.
constexpr std::string_view kCustomerColumns =
    "customerID, multiplePickup, firstName, middleInitial, lastName, employer, billingAddress1, "
    "billingAddress2, billingAddress3, billingCity, billingState, billingZipCode, MainAreaCode, MainPhone, "
    "shippingAddress1, shippingAddress2, shippingAddress3, shippingCity, shippingState, shippingZipCode, "
    "AltAreaCode, AltPhone, email";

}  // namespace

RecordsetRef insertTicket(ProcedureCall& call) {
  return writeNewTicket(call, {kStore, kInvoiceNumber, kCustomer, kColumns, "", "", call.sql(kPickupName),
                               call.sql(kPickupPlace)});
}

RecordsetRef writeNewTicket(ProcedureCall& call, const NewTicket& ticket) {
  const std::int32_t number = drawTicketNumber(call);
  const std::string invoice = call.isNull(ticket.invoiceNumber)
                                  ? drawInvoiceNumber(call, call.integer(ticket.store))
                                  : call.text(ticket.invoiceNumber);
  const std::string invoiceText = "'" + replaceAll(invoice, "'", "''") + "'";
  const std::string now = call.now().text();
  std::string names =
      fmt::format("ticketNumber, invoiceNumber, createdDate, lastModifiedDate{}", ticket.fixedNames);
  std::string values = fmt::format("{}, {}, '{}', '{}'{}", number, invoiceText, now, now, ticket.fixedValues);
  for (const HeaderColumn& column : ticket.columns) {
    names += fmt::format(", {}", column.name);
    values += ", " + call.sql(column.argument);
  }
  call.execute(fmt::format("insert into Ticket ({}) values ({})", names, values));
  copyCustomer(call, number, call.sql(ticket.customer), ticket.pickupName, ticket.pickupPlace);
  return call.query(fmt::format("select {} as TicketNumber, {} as InvoiceNumber", number, invoiceText));
}

void copyCustomer(ProcedureCall& call, std::int32_t ticket, const std::string& customer,
                  const std::string& name, const std::string& place) {
  call.execute(
      fmt::format("insert into TicketCustomer (ticketNumber, multiPickupCustomerName, multiPickupLocation, "
                  "{0}) select {1}, {2}, {3}, {0} from Customer where customerSequenceNumber = {4}",
                  kCustomerColumns, ticket, name, place, customer));
}

}  // namespace ondrel::sql
