#include "data/dialect/procedures/ticket_procedures.h"

namespace ondrel::sql {
namespace {

constexpr int kQuickStore = 0, kQuickNumber = 1, kQuickCustomer = 5;

// What the arguments mean, by position from 0.
// clang-format off
constexpr HeaderColumn kQuickColumns[] = {
    // column of Ticket         argument
    {"storeId",                 kQuickStore},
    // invoiceNumber            1, drawn when it is Null
    {"priceListId",              2},
    {"createdByEmployeeId",      3},
    {"lastModifiedByEmployeeId", 3},
    {"dueDate",                  4},
    {"customerSequenceNumber",  kQuickCustomer},
    {"starchPreferenceName",     6},
    {"finishPreferenceName",     7},
    {"onHold",                   8},
    {"terminalId",               9},
    //                          10: always 0
    {"employeeName",            11},
    {"storeName",               12},
    {"pickupTime",              13},  // ready time of day
};
// clang-format on

}  // namespace

// A ticket of pieces that nobody has looked at yet: uncounted, active, without money.
RecordsetRef insertQuickInvoice(ProcedureCall& call) {
  return writeNewTicket(call, {kQuickStore, kQuickNumber, kQuickCustomer, kQuickColumns,
                               ", invoiceType, ticketStatus", ", 'Q', 'AC'", "NULL", "NULL"});
}

}  // namespace ondrel::sql
