#include <fmt/format.h>

#include "data/dialect/procedures/ticket_procedures.h"

namespace ondrel::sql {
namespace {

// The first of `count` numbers. The update comes first: it takes the place of whoever else draws. A counter
// that was never used starts at `firstNumber`, a statement for one number.
std::int32_t draw(ProcedureCall& call, std::int32_t store, std::string_view counter,
                  std::string_view firstNumber, std::int32_t count = 1) {
  const std::string where = fmt::format("where storeId = {} and counterName = '{}'", store, counter);
  call.execute(fmt::format("update NumberCounter set nextNumber = nextNumber + {} {}", count, where));
  RecordsetRef row = call.query("select nextNumber from NumberCounter " + where);
  if (!row->eof()) return row->integer("nextNumber") - count;
  const std::int32_t first = call.query(firstNumber)->integer("number");
  call.execute(
      fmt::format("insert into NumberCounter (storeId, counterName, nextNumber) values ({}, '{}', {})", store,
                  counter, first + count));
  return first;
}

constexpr std::string_view kFromOne = "select 1 as number";

}  // namespace

std::int32_t drawTicketNumber(ProcedureCall& call) {
  std::int32_t number = 0;
  do {
    number = draw(call, 0, "TICKET", "select isnull(max(ticketNumber), 0) + 1 as number from Ticket");
  } while (
      !call.query(fmt::format("select ticketNumber from Ticket where ticketNumber = {}", number))->eof());
  return number;
}

// A number that a page brought itself is passed over, so that no two tickets of a shop have one.
std::string drawInvoiceNumber(ProcedureCall& call, std::int32_t store) {
  std::string number;
  do {
    number = std::to_string(draw(call, store, "INVOICE", kFromOne));
  } while (
      !call.query(fmt::format("select ticketNumber from Ticket where invoiceNumber = '{}' and storeId = {}",
                              number, store))
           ->eof());
  return number;
}

std::int32_t drawTagNumbers(ProcedureCall& call, std::int32_t store, std::int32_t count) {
  return draw(call, store, "TAG", kFromOne, count);
}

}  // namespace ondrel::sql
