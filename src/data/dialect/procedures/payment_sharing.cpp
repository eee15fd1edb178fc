#include "data/dialect/procedures/payment_sharing.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "base/text.h"
#include "data/card_numbers.h"
#include "data/values.h"

namespace ondrel::sql {
namespace {

constexpr double kUnitsPerDollar = 10'000;

std::int64_t unitsOf(double dollars) {
  return std::llround(dollars * kUnitsPerDollar);
}

std::string dollars(std::int64_t units) {
  return numberText(static_cast<double>(units) / kUnitsPerDollar);
}

[[noreturn]] void fail(std::string_view description) {
  throw Error(ErrorNumber::StatementFailed, "payments", description);
}

SharedTicket readTicket(ProcedureCall& call, std::string_view number) {
  if (number.find_first_not_of("0123456789") != std::string_view::npos)
    fail(fmt::format("\"{}\" is not the number of a ticket", number));
  const std::int32_t ticket = Variant(number).toLong();
  const RecordsetRef row =
      call.query(fmt::format("select amountPaid, netTotal, isnull(ticketStatus, '') as status from Ticket "
                             "where ticketNumber = {}",
                             ticket));
  if (row->eof()) fail(fmt::format("There is no ticket {}", number));
  const std::int64_t paid = unitsOf(row->number("amountPaid"));
  const std::int64_t open = unitsOf(row->number("netTotal")) - paid;
  return {ticket, paid, std::max<std::int64_t>(open, 0), 0, equalsIgnoringCase(row->text("status"), "FI")};
}

// The ledger keeps the last four digits of a card.
std::string cardOrCheckNumber(const Recordset& payment) {
  const bool isCard = equalsIgnoringCase(payment.text("paymentType"), "Credit Card");
  const Variant number = payment.value("checkOrCardNumber");
  if (!isCard || number.isNull()) return sqlQuotedOrNull(number);
  return sqlQuotedOrNull(maskedCardNumber(number.toText()));
}

void bookPart(ProcedureCall& call, const Recordset& payment, std::int32_t ticket, std::int64_t part,
              const BookingDetails& details) {
  const auto text = [&](std::string_view column) { return sqlQuotedOrNull(payment.value(column)); };
  call.execute(fmt::format(
      "insert into Payment (paymentDate, paymentAction, storeId, terminalId, employeeId, "
      "customerSequenceNumber, ticketNumber, paymentType, paymentAmount, checkOrCardNumber, creditCardType, "
      "creditCardId, creditCardExpirydate, approvalCode, transactionNumber, signatureId, claimReceiptId) "
      "values (getdate(), {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {})",
      sqlQuotedOrNull(details.action), details.store, details.terminal, details.employee, details.customer,
      ticket, text("paymentType"), dollars(part), cardOrCheckNumber(payment), text("creditCardType"),
      sqlNumber(payment.value("creditCardId")), text("creditCardExpirydate"), text("approvalCode"),
      text("transactionNumber"), sqlNumber(payment.value("signatureID")), details.claimReceipt));
}

void sharePayment(ProcedureCall& call, const Recordset& payment, std::vector<SharedTicket>& tickets,
                  const BookingDetails& details) {
  std::int64_t left = unitsOf(payment.number("paymentAmount"));
  if (left < 0) fail("A payment of less than 0 cannot be booked");
  if (left > 0 && tickets.empty()) fail("A payment needs a ticket to be booked on");
  for (SharedTicket& ticket : tickets) {
    const std::int64_t part = std::min(left, ticket.balance);
    if (part == 0) continue;
    bookPart(call, payment, ticket.number, part, details);
    ticket.balance -= part;
    ticket.booked += part;
    left -= part;
  }
}

}  // namespace

std::vector<SharedTicket> readTickets(ProcedureCall& call, std::string_view list) {
  std::vector<SharedTicket> result;
  while (!list.empty()) {
    const size_t comma = std::min(list.find(','), list.size());
    const std::string number(trim(replaceAll(list.substr(0, comma), "'", " ")));
    list.remove_prefix(std::min(comma + 1, list.size()));
    if (number.empty()) continue;
    const SharedTicket ticket = readTicket(call, number);
    const auto isSame = [&](const SharedTicket& other) { return other.number == ticket.number; };
    if (std::none_of(result.begin(), result.end(), isSame)) result.push_back(ticket);
  }
  return result;
}

void bookTerminalPayments(ProcedureCall& call, std::vector<SharedTicket>& tickets,
                          const BookingDetails& details) {
  const RecordsetRef payment = call.query(fmt::format(
      "select * from TerminalPayment where terminalId = {} order by terminalPaymentId", details.terminal));
  for (; !payment->eof(); payment->moveNext()) sharePayment(call, *payment, tickets, details);
  for (const SharedTicket& ticket : tickets)
    if (ticket.booked > 0)
      call.execute(fmt::format("update Ticket set amountPaid = {} where ticketNumber = {}",
                               dollars(ticket.paid + ticket.booked), ticket.number));
  call.execute(fmt::format("delete from TerminalPayment where terminalId = {}", details.terminal));
}

void releaseTickets(ProcedureCall& call, const std::vector<SharedTicket>& tickets,
                    const BookingDetails& details, const std::string& signature, const std::string& receipt) {
  for (const SharedTicket& ticket : tickets) {
    if (ticket.isOut) continue;
    call.execute(fmt::format(
        "update Ticket set ticketStatus = 'FI', dateout = getdate() where ticketNumber = {}", ticket.number));
    call.execute(fmt::format(
        "insert into TicketPickup (ticketNumber, pickupDate, storeId, terminalId, employeeId, "
        "customerSequenceNumber, amountPaid, signatureId, pickupReceipt, claimReceiptId) values ({}, "
        "getdate(), {}, {}, {}, {}, {}, {}, {}, {})",
        ticket.number, details.store, details.terminal, details.employee, details.customer,
        dollars(ticket.booked), signature, receipt, details.claimReceipt));
  }
}

}  // namespace ondrel::sql
