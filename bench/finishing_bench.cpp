// What a press on "Done" costs: invoiceDone2 on an invoice of so many garments, each with an upcharge, with a
// coupon, taxes and surcharges.
//
// statements, database_us and outside_us are figures of one call: what was sent, the time below the door to
// the database and the time above it. growth is outside_us over that of the size before.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>

#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

using Stopwatch = std::chrono::steady_clock;

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
    const auto start = Stopwatch::now();
    step();
    use_.microseconds += std::chrono::duration<double, std::micro>(Stopwatch::now() - start).count();
  }

  std::unique_ptr<Connection> connection_;
  DatabaseUse& use_;
};

// A counter of its own with an invoice of so many garments.
class Counter {
 public:
  explicit Counter(int garments)
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
    fill(garments);
    invoice_->invoiceDone2();
    use_ = {};
  }

  void finish() { invoice_->invoiceDone2(); }
  const DatabaseUse& use() const { return use_; }

 private:
  void fill(int garments) {
    struct Entry {
      int item;
      const char* upcharge;
    };
    constexpr std::array kEntries = {
        Entry{101, "Cuffs"},     Entry{103, "Hand Finish"},  Entry{106, "Stain Treatment"},
        Entry{108, "Silk"},      Entry{201, "French Cuffs"}, Entry{203, "Studs"},
        Entry{401, "King Size"}, Entry{110, "Lining"},
    };
    for (int k = 0; k < garments; ++k) {
      const Entry& entry = kEntries[static_cast<size_t>(k) % kEntries.size()];
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

void invoiceDone(benchmark::State& state) {
  static double outsideBefore = 0;
  Counter counter(static_cast<int>(state.range(0)));
  const auto start = Stopwatch::now();
  for (auto _ : state) counter.finish();
  const double total = std::chrono::duration<double, std::micro>(Stopwatch::now() - start).count();

  const double calls = static_cast<double>(state.iterations());
  const double outside = (total - counter.use().microseconds) / calls;
  state.counters["statements"] = counter.use().statements / calls;
  state.counters["database_us"] = counter.use().microseconds / calls;
  state.counters["outside_us"] = outside;
  state.counters["growth"] = outsideBefore > 0 ? outside / outsideBefore : 0;
  outsideBefore = outside;
}
BENCHMARK(invoiceDone)->Arg(10)->Arg(40)->Arg(160)->Unit(benchmark::kMicrosecond)->MinTime(1.0);

}  // namespace
}  // namespace ondrel

BENCHMARK_MAIN();
