// What a click costs the clerk on a ticket of so many lines: a garment with an upcharge for every two of them.
//
// Times are processor time. statements and database_us are figures of one click; outside is the share of it spent above the door to
// the database. The click that adds is followed by the one that takes away again, untimed, so that the ticket
// keeps its size.

#include <benchmark/benchmark.h>

#include <array>

#include "measured_connection.h"

namespace ondrel {
namespace {

constexpr int kSuit = 103;

void fill(Invoice& invoice, int lines) {
  constexpr std::array kItems = {101, 102, 103, 106, 108, 110};
  for (int line = 0; line < lines; line += 2) {
    const Variant garment =
        invoice.addItem(kItems[static_cast<size_t>(line / 2) % kItems.size()], 0, 1, 1.0, 0.01);
    invoice.addUpcharge2(garment, line % 4 == 0 ? "Stain Treatment" : "Hand Finish", 1);
  }
}

// `click` is timed and given the ticket's first suit; `undo` is not timed.
template <class Click, class Undo>
void measure(benchmark::State& state, Click click, Undo undo) {
  MeasuredCounter counter;
  Invoice& invoice = counter.invoice();
  fill(invoice, static_cast<int>(state.range(0)));
  const Variant suit = invoice.addItem(kSuit, 0, 2, 1.0, 0.01);
  counter.takeUse();
  DatabaseUse use;
  double total = 0;
  for (auto _ : state) {
    const double start = processorMicroseconds();
    const Variant made = click(invoice, suit);
    const double clickTime = processorMicroseconds() - start;
    state.SetIterationTime(clickTime / 1e6);
    total += clickTime;
    const DatabaseUse once = counter.takeUse();
    use.microseconds += once.microseconds;
    use.statements += once.statements;
    undo(invoice, suit, made);
    counter.takeUse();
  }
  const auto clicks = static_cast<double>(state.iterations());
  state.counters["statements"] = use.statements / clicks;
  state.counters["database_us"] = use.microseconds / clicks;
  state.counters["outside"] = 1 - use.microseconds / total;
}

void addItem(benchmark::State& state) {
  measure(
      state, [](Invoice& invoice, const Variant&) { return invoice.addItem(201, 0, 1, 1.0, 0.01); },
      [](Invoice& invoice, const Variant&, const Variant& made) { invoice.deleteItem(made); });
}

void addUpcharge(benchmark::State& state) {
  measure(
      state,
      [](Invoice& invoice, const Variant& suit) {
        invoice.addUpcharge2(suit, "Lining", 1);
        return suit;
      },
      [](Invoice& invoice, const Variant& suit, const Variant&) {
        invoice.removeDescriptor(suit, "Lining", "UP");
      });
}

void changeQuantity(benchmark::State& state) {
  measure(
      state,
      [](Invoice& invoice, const Variant& suit) {
        invoice.changeQuantity(3, suit);
        return suit;
      },
      [](Invoice& invoice, const Variant& suit, const Variant&) { invoice.changeQuantity(2, suit); });
}

void overRidePrice(benchmark::State& state) {
  measure(
      state,
      [](Invoice& invoice, const Variant& suit) {
        invoice.overRidePrice(12, suit);
        return suit;
      },
      [](Invoice& invoice, const Variant& suit, const Variant&) { invoice.overRidePrice(16, suit); });
}

void deleteItem(benchmark::State& state) {
  // The garment of the next click is put back in the untimed half, and its number kept.
  static Variant doomed;
  doomed = Variant();
  measure(
      state,
      [](Invoice& invoice, const Variant& suit) {
        invoice.deleteItem(doomed.isEmpty() ? suit : doomed);
        return suit;
      },
      [](Invoice& invoice, const Variant&, const Variant&) {
        doomed = invoice.addItem(kSuit, 0, 2, 1.0, 0.01);
      });
}

#define CLICK(name) \
  BENCHMARK(name)->Arg(10)->Arg(40)->Arg(160)->Unit(benchmark::kMicrosecond)->UseManualTime()
CLICK(addItem);
CLICK(addUpcharge);
CLICK(changeQuantity);
CLICK(overRidePrice);
CLICK(deleteItem);

}  // namespace
}  // namespace ondrel

BENCHMARK_MAIN();
