// What a press on "Done" costs: invoiceDone2 on an invoice of so many garments, each with an upcharge, with a
// coupon, taxes and surcharges.
//
// statements, database_us and outside_us are figures of one call: what was sent, the processor time below the
// door to the database and the time above it. growth is outside_us over that of the size before.

#include <benchmark/benchmark.h>
#include <array>
#include <cstdint>
#include <iterator>
#include <map>
#include <span>
#include <utility>

#include "measured_connection.h"

namespace ondrel {
namespace {

struct Entry {
  int item;
  const char* upcharge;
};

// Promised in three days and more, which no rush tier covers.
constexpr std::array kCleaning = {
    Entry{101, "Cuffs"},  Entry{103, "Hand Finish"}, Entry{106, "Stain Treatment"}, Entry{108, "Silk"},
    Entry{102, "Lining"}, Entry{105, "Pleats"},      Entry{401, "King Size"},       Entry{110, "Lining"},
};
// Promised in two days, for which the store has a tier but no upcharge on these: each line asks for one and
// has its prepay and taxes worked out again.
constexpr std::array kShirts = {Entry{201, "French Cuffs"}, Entry{203, "Studs"}};

void fill(Invoice& invoice, std::span<const Entry> entries, int garments) {
  for (int k = 0; k < garments; ++k) {
    const Entry& entry = entries[static_cast<size_t>(k) % entries.size()];
    const Variant line = invoice.addItem(entry.item, 0, 1, 1.0, 0.01);
    invoice.addUpcharge2(line, entry.upcharge, 1);
  }
  invoice.getQualifyingCoupons();
  invoice.addCoupon(3);
}

void invoiceDone(benchmark::State& state, std::span<const Entry> entries) {
  static std::map<std::pair<const Entry*, std::int64_t>, double> outsideBySize;
  MeasuredCounter counter;
  Invoice& invoice = counter.invoice();
  fill(invoice, entries, static_cast<int>(state.range(0)));
  invoice.invoiceDone2();
  counter.takeUse();
  const double start = processorMicroseconds();
  for (auto _ : state) invoice.invoiceDone2();
  const auto calls = static_cast<double>(state.iterations());
  const double total = processorMicroseconds() - start;
  const DatabaseUse use = counter.takeUse();
  const double outside = (total - use.microseconds) / calls;
  state.counters["statements"] = use.statements / calls;
  state.counters["database_us"] = use.microseconds / calls;
  state.counters["outside_us"] = outside;
  const auto here = outsideBySize.insert_or_assign({entries.data(), state.range(0)}, outside).first;
  if (here != outsideBySize.begin() && std::prev(here)->first.first == entries.data())
    state.counters["growth"] = outside / std::prev(here)->second;
}
BENCHMARK_CAPTURE(invoiceDone, cleaning, kCleaning)
    ->Arg(10)
    ->Arg(40)
    ->Arg(160)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(invoiceDone, rushTierWithoutUpcharge, kShirts)
    ->Arg(10)
    ->Arg(40)
    ->Arg(160)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace ondrel

BENCHMARK_MAIN();
