// What a panel of a ticket of so many lines costs above the database, beside the least that its text can cost:
// appending the finished fragments, each tag and each text of it, to one string.
//
// Times are processor time. The database answers from what it said the first time, so that its work does not count;
// statements is what one call sends, statements_us what sending them alone takes, through the door to the
// database. append_us is what appending the fragments takes, times_append how often that goes into a call without
// its statements.

#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <unordered_map>

#include "data/query_database.h"
#include "measured_connection.h"
#include "web/invoice_json.h"
#include "web/panels.h"

namespace ondrel {
namespace {

// Garments and the upcharges that hang on them, in turn.
void fill(Invoice& invoice, int lines) {
  constexpr std::array kItems = {101, 102, 103, 106, 108, 110, 201, 202};
  for (int line = 0; line < lines; line += 2) {
    const Variant garment =
        invoice.addItem(kItems[static_cast<size_t>(line / 2) % kItems.size()], 0, 1, 1.0, 0.01);
    if (line % 4 == 0)
      invoice.addUpcharge2(garment, "Stain Treatment", 1);
    else
      invoice.addDescriptor(garment, "Arbelline", "BR", 1);
  }
}

// The tags and the texts between them.
std::vector<std::string> fragmentsOf(const std::string& panel) {
  std::vector<std::string> fragments;
  for (size_t from = 0; from < panel.size();) {
    size_t end = panel[from] == '<' ? panel.find('>', from) + 1 : panel.find('<', from + 1);
    end = std::min(end == 0 ? panel.size() : end, panel.size());
    fragments.push_back(panel.substr(from, end - from));
    from = end;
  }
  return fragments;
}

// Parts of a JSON text between its commas.
std::vector<std::string> membersOf(const std::string& json) {
  std::vector<std::string> members;
  for (size_t from = 0; from < json.size();) {
    const size_t end = std::min(json.find(',', from), json.size() - 1) + 1;
    members.push_back(json.substr(from, end - from));
    from = end;
  }
  return members;
}

double appendMicroseconds(const std::vector<std::string>& fragments) {
  constexpr int kRounds = 2000;
  const double start = processorMicroseconds();
  for (int round = 0; round < kRounds; ++round) {
    std::string all;
    for (const std::string& each : fragments) all += each;
    benchmark::DoNotOptimize(all.data());
  }
  return (processorMicroseconds() - start) / kRounds;
}

// Answers as another connection did the first time.
class KeptAnswers : public Connection {
 public:
  using Answers = std::unordered_map<std::string, RecordsetRef>;
  KeptAnswers(ConnectionSettings settings, Answers& answers, std::vector<std::string>* sent)
      : settings_(std::move(settings)), answers_(answers), sent_(sent) {}

  void setCommandTimeout(int) override {}
  void open() override {}
  void begin() override {}
  void commit() override {}
  void execute(std::string_view) override {}
  void close() override {}
  RecordsetRef query(std::string_view sql) override {
    if (sent_) sent_->emplace_back(sql);
    RecordsetRef& answer = answers_[std::string(sql)];
    if (!answer) {
      const auto connection = connectEmbedded(settings_);
      connection->open();
      answer = connection->query(sql);
      connection->close();
    }
    return answer->clone();
  }

 private:
  ConnectionSettings settings_;
  Answers& answers_;
  std::vector<std::string>* sent_;  // takes the statements, if they are asked for
};

double statementMicroseconds(const std::vector<std::string>& statements) {
  constexpr int kRounds = 200;
  const double start = processorMicroseconds();
  for (int round = 0; round < kRounds; ++round)
    for (const std::string& each : statements)
      benchmark::DoNotOptimize(queryDatabase(*Apartment::current(), each).get());
  return (processorMicroseconds() - start) / kRounds;
}

template <class Panel, class Split>
void measure(benchmark::State& state, Panel panel, Split split) {
  MeasuredCounter counter;
  Invoice& invoice = counter.invoice();
  invoice.excludeTaxes = true;
  fill(invoice, static_cast<int>(state.range(0)));
  KeptAnswers::Answers answers;
  std::vector<std::string> statements;
  std::vector<std::string>* sent = nullptr;
  Apartment::current()->connect = [&](const ConnectionSettings& settings) {
    return std::make_unique<KeptAnswers>(settings, answers, sent);
  };
  panel(invoice);  // what is asked once only does not count
  sent = &statements;
  const std::string text = panel(invoice).toText();
  sent = nullptr;
  const double append = appendMicroseconds(split(text)), sending = statementMicroseconds(statements);
  const double start = processorMicroseconds();
  for (auto _ : state) benchmark::DoNotOptimize(panel(invoice));
  const auto calls = static_cast<double>(state.iterations());
  const double call = (processorMicroseconds() - start) / calls;
  state.counters["statements"] = static_cast<double>(statements.size());
  state.counters["statements_us"] = sending;
  state.counters["bytes"] = static_cast<double>(text.size());
  state.counters["bytes_per_s"] = static_cast<double>(text.size()) / call * 1e6;
  state.counters["append_us"] = append;
  state.counters["times_append"] = (call - sending) / append;
}

void htmlLineItems(benchmark::State& state) {
  measure(
      state, [](Invoice& invoice) { return htmlLineItems(invoice, 1); }, fragmentsOf);
}

// Charges instead of garments: nothing is asked of the price list, and the writing alone is seen.
void htmlLineItemsOfCharges(benchmark::State& state) {
  bool changed = false;
  const auto panel = [&](Invoice& invoice) {
    if (!changed) {
      const RecordsetRef garments = invoice.lineItems->clone();
      garments->setFilter("itemType='IT'");
      for (; !garments->eof(); garments->moveNext()) garments->setValue(LineColumn::itemType, "AC");
      changed = true;
    }
    return htmlLineItems(invoice, 1);
  };
  measure(state, panel, fragmentsOf);
}

void htmlItems(benchmark::State& state) {
  measure(
      state, [](Invoice& invoice) { return htmlItems(invoice, "", 1); }, fragmentsOf);
}

void toJSON(benchmark::State& state) {
  measure(
      state, [](Invoice& invoice) { return toJSON(invoice); }, membersOf);
}

#define PANEL(name) BENCHMARK(name)->Arg(10)->Arg(40)->Arg(160)->Unit(benchmark::kMicrosecond)
PANEL(htmlLineItems);
PANEL(htmlLineItemsOfCharges);
PANEL(htmlItems);
PANEL(toJSON);

}  // namespace
}  // namespace ondrel

BENCHMARK_MAIN();
