#pragma once

#include <time.h>

#include <memory>
#include <utility>

#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"
#include "invoice/invoice.h"

namespace ondrel {

// Processor time of this thread, so that a busy machine does not count.
inline double processorMicroseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

struct DatabaseUse {
  double microseconds = 0;
  double statements = 0;
};

// Passes everything on to a connection and adds up the processor time that it takes. Reading the clock, about a
// microsecond for a statement, counts in part.
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

// A counter of its own: a sample store on the morning of 24 November 2026, with a new ticket of customer 1. Its
// connections are measured unless told otherwise.
class MeasuredCounter {
 public:
  explicit MeasuredCounter(bool measured = true)
      : store_(StoreContents::Sample), apartment_(std::make_shared<Apartment>()), scope_(apartment_) {
    apartment_->clock = std::make_shared<FixedClock>(Date::of(2026, 11, 24, 10, 30));
    apartment_->DBConnectionString = store_.connectionString();
    apartment_->connect = [this, measured](const ConnectionSettings& settings) {
      std::unique_ptr<Connection> connection = connectEmbedded(settings);
      return measured ? std::make_unique<MeasuredConnection>(std::move(connection), use_)
                      : std::move(connection);
    };
    invoice_ = std::make_unique<Invoice>();
    invoice_->isAdd = true;
    invoice_->addOrEdit = "add";
    invoice_->custSeqNumber = 1;
    invoice_->priceListId = 1;
    invoice_->setStoreDays(1);
    invoice_->LoadDefaults();
  }

  Invoice& invoice() { return *invoice_; }
  const EmbeddedStore& store() const { return store_; }
  // What the database did since the last call.
  DatabaseUse takeUse() { return std::exchange(use_, {}); }

 private:
  DatabaseUse use_;
  EmbeddedStore store_;
  ApartmentRef apartment_;
  ApartmentScope scope_;
  std::unique_ptr<Invoice> invoice_;
};

}  // namespace ondrel
