// What saving and loading a ticket costs: so many garments, each with an upcharge and a color, finished with
// taxes and surcharges, on the embedded store in memory.
//
// statements is what one call sends, call_us the processor time of a call, plain_us that of the same statements on
// SQLite alone, prepared beforehand, in the same run, both in the quickest of some rounds; ratio is the one over the
// other.

#include <benchmark/benchmark.h>

#include <algorithm>

#include "measured_connection.h"
#include "plain_replay.h"

namespace ondrel {
namespace {

constexpr int kRounds = 20, kCalls = 10;  // of a round

void fill(Invoice& invoice, int garments) {
  for (int garment = 0; garment < garments; ++garment) {
    const Variant line = invoice.addItem(101 + garment % 3, 0, 1, 1.0, 0.01);
    invoice.addUpcharge2(line, "Stain Treatment", 1);
    invoice.addColor(line, "White", 1, true, 1.0, 0.01);
  }
  Variant customer = invoice.custSeqNumber, noTicket = "";
  invoice.loadCustomerPreferences(customer, noTicket);
  invoice.invoiceDone2();
}

void saveAsNew(Invoice& invoice) {
  invoice.invoiceNo.clear();
  invoice.starchPref.clear();
  invoice.finishPref.clear();
  invoice.saveInvoice("add", 1, 1, "0", "Dora Quill", "Fernhill Cleaners", false);
}

// The writes of a new ticket's header, which the trace tells as one call.
constexpr const char* kHeaderWrites[] = {
    "update NumberCounter set nextNumber = nextNumber + 1 where storeId = 0 and counterName = 'TICKET'",
    "select nextNumber from NumberCounter where storeId = 0 and counterName = 'TICKET'",
    "select ticketNumber from Ticket where ticketNumber = 1100",
    "update NumberCounter set nextNumber = nextNumber + 1 where storeId = 1 and counterName = 'INVOICE'",
    "select nextNumber from NumberCounter where storeId = 1 and counterName = 'INVOICE'",
    "select ticketNumber from Ticket where invoiceNumber = '1100' and storeId = 1",
    "insert into Ticket (ticketNumber, invoiceNumber, createdDate, lastModifiedDate, storeId, invoiceType, "
    "ticketStatus, priceListId, routeNumber, createdByEmployeeId, lastModifiedByEmployeeId, dueDate, "
    "customerSequenceNumber, onHold, terminalId, amountPaid, netTotal, taxTotal, surchargeTotal, firstVisit, "
    "vipQualifyingAmount, couponTotal, promotionTotal, invoiceTotal, priceChangeTotal, accessoryTotal, employeeName, "
    "storeName, pickupTime, prepayEnabled) values (1100, '1100', '2026-11-24 10:30:00', '2026-11-24 10:30:00', 1, "
    "'D', 'AC', 1, 0, 1, 1, '2026-11-30 10:30:00', 1, 0, 1, 0.00, 40.49, 3.17, 0.32, 1, 24.19, 0.00, 0.00, 40.47, "
    "0.00, 0.00, 'Dora Quill', 'Fernhill Cleaners', '5:00 PM', 0)",
    "insert into TicketCustomer (ticketNumber, customerID, firstName, lastName, billingAddress1, billingCity) "
    "select 1100, customerID, firstName, lastName, billingAddress1, billingCity from Customer where "
    "customerSequenceNumber = 1"};
constexpr const char* kStockRead =
    "select lineItemID, sum(quantity * ifnull(packagedQuantity, 1)) as pieces from TicketLineItem where ticketNumber = "
    "1100 and ticketLineType = 'IT' and saleOnly = 1 group by lineItemID";

void addToReplay(PlainReplay& plain, std::string_view statement, int ticket) {
  if (statement.starts_with("InsertTicket ")) {
    for (const char* write : kHeaderWrites)
      plain.add(replaceAll(write, "1100", std::to_string(ticket)), ticket);
  } else if (statement.starts_with("UpdateInventory ")) {
    plain.add(replaceAll(kStockRead, "1100", std::to_string(ticket)), ticket);
  } else {
    plain.add(statement, ticket);
  }
}

// Puts the statements of `call`, which works on `ticket`, on the list of the replay. Gives their number.
template <class Call>
int record(PlainReplay& plain, int ticket, Call call) {
  const ApartmentRef apartment = Apartment::current();
  apartment->trace.start();
  call();
  apartment->trace.stop();
  int statements = 0;
  for (const std::string& statement : apartment->trace.take()) {
    addToReplay(plain, statement, ticket);
    statements += !statement.starts_with('<');
  }
  return statements;
}

// `call` is timed against the list of the replay, which works on `ticket` and, with `step` 1, on those after it:
// some calls, as many replays, and so on, so that both databases grow alike and the machine's slow moments count
// for neither.
template <class Call>
void measure(benchmark::State& state, PlainReplay& plain, int ticket, int step, Call call) {
  double callTime = 1e9, plainTime = 1e9;
  for (auto _ : state) {
    const double start = processorMicroseconds();
    for (int time = 0; time < kCalls; ++time) call();
    const double middle = processorMicroseconds();
    for (int time = 0; time < kCalls; ++time, ticket += step) benchmark::DoNotOptimize(plain.replay(ticket));
    callTime = std::min(callTime, (middle - start) / kCalls);
    plainTime = std::min(plainTime, (processorMicroseconds() - middle) / kCalls);
  }
  state.counters["call_us"] = callTime;
  state.counters["plain_us"] = plainTime;
  state.counters["ratio"] = callTime / plainTime;
}

constexpr int kFirstTicket = 1100;

void save(benchmark::State& state) {
  MeasuredCounter counter(false);
  Invoice& invoice = counter.invoice();
  fill(invoice, static_cast<int>(state.range(0)));
  PlainReplay plain;
  state.counters["statements"] = record(plain, kFirstTicket, [&] { saveAsNew(invoice); });
  measure(state, plain, kFirstTicket, 1, [&] { saveAsNew(invoice); });
}

void load(benchmark::State& state) {
  MeasuredCounter counter(false);
  Invoice& invoice = counter.invoice();
  fill(invoice, static_cast<int>(state.range(0)));
  const auto loadOnce = [&] {
    Invoice loaded;
    loaded.getExistingDetails(kFirstTicket);
    benchmark::DoNotOptimize(loaded.currentLineNumber);
  };
  PlainReplay plain;
  record(plain, kFirstTicket, [&] { saveAsNew(invoice); });
  plain.replay(kFirstTicket);
  plain.clear();
  state.counters["statements"] = record(plain, kFirstTicket, loadOnce);
  measure(state, plain, kFirstTicket, 0, loadOnce);
}

#define TICKET(name) \
  BENCHMARK(name)->Arg(10)->Arg(40)->Arg(160)->Iterations(kRounds)->Unit(benchmark::kMicrosecond)
TICKET(save);
TICKET(load);

}  // namespace
}  // namespace ondrel

BENCHMARK_MAIN();
