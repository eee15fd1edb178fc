// What a press on "Done" costs: invoiceDone2 on an invoice of so many garments, each with an upcharge, with a
// coupon, taxes and surcharges.
//
// statements, database_us and outside_us are figures of one call: what was sent, the processor time below the
// door to the database and the time above it. growth is outside_us over that of the size before.

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <span>
#include <utility>

#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

// Of this thread, so that a busy machine does not count.
double processorMicroseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

struct DatabaseUse {
  double microseconds = 0;
  double statements = 0;
};

// Passes everything on to a connection and adds up the time that it takes.
class MeasuredConnection : public Connection {
 public:
  MeasuredConnection(std::unique_ptr<Connection> connection, DatabaseUse& use)
      : connection_(std::move(connection)), use_(use) {}
  ~MeasuredConnection() override {
    timed([&] { connection_.reset(); });
  }

  void setCommandTimeout(int seconds) override { connection_->setCommandTimeout(seconds); }
  void open() override {
    timed([&] { connection_->open(); });
  }
  void begin() override {
    timed([&] { connection_->begin(); });
  }
  void commit() override {
    timed([&] { connection_->commit(); });
  }
  void execute(std::string_view sql) override {
    ++use_.statements;
    timed([&] { connection_->execute(sql); });
  }
  RecordsetRef query(std::string_view sql) override {
    ++use_.statements;
    RecordsetRef table;
    timed([&] { table = connection_->query(sql); });
    return table;
  }
  void close() override {
    timed([&] { connection_->close(); });
  }

 private:
  template <class Step>
  void timed(Step step) {
    const double start = processorMicroseconds();
    step();
    use_.microseconds += processorMicroseconds() - start;
  }

  std::unique_ptr<Connection> connection_;
  DatabaseUse& use_;
};

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

// A counter of its own with an invoice of so many garments.
class Counter {
 public:
  Counter(std::span<const Entry> entries, int garments)
      : store_(StoreContents::Sample), apartment_(std::make_shared<Apartment>()), scope_(apartment_) {
    apartment_->clock = std::make_shared<FixedClock>(Date::of(2026, 11, 24, 10, 30));
    apartment_->DBConnectionString = store_.connectionString();
    apartment_->connect = [this](const ConnectionSettings& settings) {
      return std::make_unique<MeasuredConnection>(connectEmbedded(settings), use_);
    };
    invoice_ = std::make_unique<Invoice>();
    invoice_->custSeqNumber = 1;
    invoice_->priceListId = 1;
    invoice_->addOrEdit = "add";
    invoice_->setStoreDays(1);
    fill(entries, garments);
    invoice_->invoiceDone2();
    use_ = {};
  }

  void finish() { invoice_->invoiceDone2(); }
  const DatabaseUse& use() const { return use_; }

 private:
  void fill(std::span<const Entry> entries, int garments) {
    for (int k = 0; k < garments; ++k) {
      const Entry& entry = entries[static_cast<size_t>(k) % entries.size()];
      const Variant line = invoice_->addItem(entry.item, 0, 1, 1.0, 0.01);
      invoice_->addUpcharge2(line, entry.upcharge, 1);
    }
    invoice_->getQualifyingCoupons();
    invoice_->addCoupon(3);
  }

  DatabaseUse use_;
  EmbeddedStore store_;
  ApartmentRef apartment_;
  ApartmentScope scope_;
  std::unique_ptr<Invoice> invoice_;
};

void invoiceDone(benchmark::State& state, std::span<const Entry> entries) {
  static std::map<std::pair<const Entry*, std::int64_t>, double> outsideBySize;
  Counter counter(entries, static_cast<int>(state.range(0)));
  const double start = processorMicroseconds();
  for (auto _ : state) counter.finish();
  const double calls = static_cast<double>(state.iterations());
  const double outside = (processorMicroseconds() - start - counter.use().microseconds) / calls;
  state.counters["statements"] = counter.use().statements / calls;
  state.counters["database_us"] = counter.use().microseconds / calls;
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
