// The filters and walks of a ticket's line table, in the form in which the peers' programs print theirs:
// peer,op,rows,ns_per_op,check for each operation and each number of rows. The check is the sum of the
// first eight results, the same for every program that does the same work.
//
//   recordset_peers_bench [ROWS...]      10 40 160 1000 unless told
//
// Peer `ondrel` reads through columns resolved once, as the library does; `ondrel_names` names the
// column at every read and write, as a page does. The memory of a table goes to stderr.
//
// | op | work                                                                | result                  |
// |----|---------------------------------------------------------------------|-------------------------|
// | A  | filter one line; read price, quantity, name                         | sum and length of name  |
// | B  | filter the upcharges of one name on one garment                     | count                   |
// | C  | filter garments and upcharges of a department; walk                 | sum of pieces * prepay  |
// | D  | filter garments; read four cells of each, write one                 | sum of what was written |
// | E  | sort by line number descending; walk                                | sum of place * number   |
// | F  | add a row that names the first 36 columns                           | unit price              |
// | G  | filter garments; for each, filter its children on a clone and walk  | sum of their totals     |
#include <fmt/format.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iterator>

#include "recordset_rows.h"

namespace ondrel::bench {
namespace {

constexpr size_t kAddedColumns = 36;
constexpr unsigned kAddedAtOnce = 64;
constexpr double kRun = 5e6;  // ns that a run takes at least

double now() {
  return static_cast<double>(std::chrono::steady_clock::now().time_since_epoch() /
                             std::chrono::nanoseconds(1));
}

// Warms up, then takes the median of five runs. operation(i) returns a result; undo() takes back, outside
// the measured time, what at most `batchLimit` operations did.
template <class Operation, class Undo>
void measure(std::string_view peer, char name, int rows, Operation operation, Undo undo,
             unsigned batchLimit) {
  double check = 0;
  for (unsigned i = 0; i < 8; ++i) check += operation(i);
  undo();

  unsigned batch = 1, done = 0;
  volatile double sink = 0;
  const auto timeBatch = [&] {
    double sum = 0;
    const double start = now();
    for (unsigned k = 0; k < batch; ++k) sum += operation(done++);
    const double taken = now() - start;
    sink = sink + sum;
    undo();
    return taken;
  };
  for (double warm = 0; warm < kRun || done < 3;) {
    const double taken = timeBatch();
    warm += taken;
    if (taken < kRun / 10 && batch < batchLimit) batch *= 2;
  }
  std::array<double, 5> runs{};
  for (double& run : runs) {
    double taken = 0;
    const unsigned first = done;
    while (taken < kRun) taken += timeBatch();
    run = taken / (done - first);
  }
  std::nth_element(runs.begin(), runs.begin() + 2, runs.end());
  fmt::print("{},{},{},{:.2f},{:.3f}\n", peer, name, rows, runs[2], check);
}

template <class Operation>
void measure(std::string_view peer, char name, int rows, Operation operation) {
  measure(
      peer, name, rows, operation, [] {}, 1U << 20);
}

// Assigns a filter text composed in place.
template <class... Values>
void filter(Recordset& table, fmt::format_string<Values...> form, Values&&... values) {
  std::array<char, 256> text;
  const auto end = fmt::format_to_n(text.data(), text.size(), form, std::forward<Values>(values)...).out;
  table.setFilter(std::string_view(text.data(), static_cast<size_t>(end - text.data())));
}

struct ByColumn {
  static constexpr std::string_view peer = "ondrel";
  static Column of(Line column) { return column; }
  static std::vector<Column> list(size_t count) {
    std::vector<Column> columns;
    for (size_t k = 0; k < count; ++k) columns.emplace_back(static_cast<int>(k));
    return columns;
  }
};

struct ByName {
  static constexpr std::string_view peer = "ondrel_names";
  static std::string_view of(Line column) { return kLineColumns[static_cast<size_t>(column)].name; }
  static std::vector<std::string> list(size_t count) {
    std::vector<std::string> names;
    for (size_t k = 0; k < count; ++k) names.emplace_back(kLineColumns[k].name);
    return names;
  }
};

// The arguments of the i-th operation on a table of so many rows.
class Arguments {
 public:
  Arguments(const std::vector<LineRow>& all, int rows) : rows_(static_cast<unsigned>(rows)) {
    for (int row = 0; row < rows; ++row)
      if (cell(all[static_cast<size_t>(row)], Line::itemType).text() == "IT") garments_.push_back(row + 1);
  }
  int line(unsigned i) const { return 1 + static_cast<int>(i * 7 % rows_); }
  int garment(unsigned i) const { return garments_[i % garments_.size()]; }
  const char* upcharge(unsigned i) const { return kUpcharges[i % kUpcharges.size()]; }
  int dept(unsigned i) const { return 1 + static_cast<int>(i % 5); }

 private:
  unsigned rows_;
  std::vector<int> garments_;
};

// Reads and writes of one peer, on one table.
template <class By>
class Operations {
 public:
  Operations(const std::vector<LineRow>& all, int rows)
      : all_(all), rows_(rows), arguments_(all, rows), shared_(lineTable(all, rows)), table_(*shared_) {}

  void measureAll() {
    each('A', &Operations::findLine);
    each('B', &Operations::countUpcharges);
    each('C', &Operations::walkDepartment);
    each('D', &Operations::writeTotals);
    table_.clearFilter();
    each('E', &Operations::walkSorted);
    table_.setSort("");
    measure(
        By::peer, 'F', rows_, [this](unsigned i) { return addRow(i); }, [this] { takeOut(); }, kAddedAtOnce);
    each('G', &Operations::sumChildren);
  }

 private:
  void each(char name, double (Operations::*operation)(unsigned)) {
    measure(By::peer, name, rows_, [this, operation](unsigned i) { return (this->*operation)(i); });
  }

  double findLine(unsigned i) {
    filter(table_, "lineNumber={}", arguments_.line(i));
    return table_.number(of(Line::unitPrice)) + table_.number(of(Line::quantity)) +
           static_cast<double>(table_.text(of(Line::itemName)).size());
  }

  double countUpcharges(unsigned i) {
    filter(table_, "parentLineNumber={} And itemName='{}' And itemType='UP'", arguments_.garment(i),
           arguments_.upcharge(i));
    return table_.recordCount();
  }

  double walkDepartment(unsigned i) {
    const int dept = arguments_.dept(i);
    filter(table_,
           "(itemType='IT' and deptId = {} and redo = 0) or (itemType = 'UP' and deptId = {} and redo = 0)",
           dept, dept);
    double sum = 0;
    for (; !table_.eof(); table_.moveNext())
      sum += table_.number(of(Line::quantity)) * table_.number(of(Line::prepay));
    return sum;
  }

  double writeTotals(unsigned) {
    table_.setFilter("itemType='IT'");
    double sum = 0;
    for (; !table_.eof(); table_.moveNext()) {
      const double total = table_.number(of(Line::unitPrice)) * table_.number(of(Line::quantity)) -
                           table_.number(of(Line::prepay)) + table_.number(of(Line::totalTax));
      table_.setValue(of(Line::lineItemTotal), total);
      sum += total;
    }
    return sum;
  }

  double walkSorted(unsigned) {
    table_.setSort("lineNumber desc");
    double sum = 0, place = 0;
    for (; !table_.eof(); table_.moveNext()) sum += ++place * table_.number(of(Line::lineNumber));
    return sum;
  }

  double addRow(unsigned i) {
    const LineRow& row = all_[i % static_cast<unsigned>(rows_)];
    table_.addNew(added_, std::span(row).first(kAddedColumns));
    return table_.number(of(Line::unitPrice));
  }

  void takeOut() {
    while (table_.recordCount() > rows_) {
      table_.moveLast();
      table_.deleteRow();
    }
  }

  double sumChildren(unsigned) {
    const RecordsetRef clone = table_.clone();
    double sum = 0;
    for (table_.setFilter("itemType='IT'"); !table_.eof(); table_.moveNext())
      for (filter(*clone, "parentLineNumber={}", table_.integer(of(Line::lineNumber))); !clone->eof();
           clone->moveNext())
        sum += clone->number(of(Line::lineItemTotal));
    return sum;
  }

  static auto of(Line column) { return By::of(column); }

  const std::vector<LineRow>& all_;
  const int rows_;
  const Arguments arguments_;
  const RecordsetRef shared_;
  Recordset& table_;
  const decltype(By::list(0)) added_ = By::list(kAddedColumns);
};

void printMemory(const std::vector<LineRow>& all, int rows) {
  const size_t before = mallinfo2().uordblks;
  const RecordsetRef table = lineTable(all, rows);
  table->setFilter("itemType='IT' and heatSeal <> ''");
  const size_t used = mallinfo2().uordblks - before;
  fmt::print(stderr, "memory of {} columns, {} rows: {:.1f} KiB\n", kLineColumns.size(), rows,
             static_cast<double>(used) / 1024);
}

}  // namespace
}  // namespace ondrel::bench

int main(int argc, char** argv) {
  using namespace ondrel::bench;
  std::vector<int> sizes;
  for (int k = 1; k < argc; ++k) sizes.push_back(std::atoi(argv[k]));
  if (sizes.empty()) sizes = {10, 40, 160, 1000};
  const std::vector<LineRow> all = lineRows(*std::max_element(sizes.begin(), sizes.end()));
  for (const int rows : sizes) {
    if (rows < 1) continue;
    printMemory(all, rows);
    Operations<ByColumn>(all, rows).measureAll();
    Operations<ByName>(all, rows).measureAll();
  }
  return 0;
}
