// Kills a counter in the middle of its work, over and over, and looks at what is left.
//
//   ticket_crash [KILLS [SEED]]     200 and 1 unless told
//
// A child process saves tickets of one to six garments into a database file and reports each number as soon as
// the ticket is committed. It is killed at a random moment; then
//   - the database opens and passes its integrity check,
//   - every ticket that was reported is there,
//   - every ticket that is there is whole: all its lines, as many as its header says, and its customer,
//   - no line belongs to a ticket that is not there.
// A kill takes the process, not the machine: what the disk would lose with the power is not tried here.

#include <fcntl.h>
#include <signal.h>
#include <sqlite3.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <set>
#include <string>
#include <thread>

#include "child_process.h"
#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"
#include "data/embedded/functions.h"
#include "invoice/invoice.h"

namespace ondrel {

using namespace sql;

namespace {

constexpr int kLongestRun = 60;  // milliseconds that a child may live

// Writes the number of a ticket to `report` right after its commit.
class ReportingConnection : public Connection {
 public:
  ReportingConnection(std::unique_ptr<Connection> connection, int report)
      : connection_(std::move(connection)), report_(report) {}

  void setCommandTimeout(int seconds) override { connection_->setCommandTimeout(seconds); }
  void open() override { connection_->open(); }
  void begin() override { connection_->begin(); }
  void commit() override {
    connection_->commit();
    if (ticket_ == 0) return;
    const std::string line = std::to_string(ticket_) + "\n";
    if (write(report_, line.data(), line.size()) < 0) _exit(2);
  }
  void execute(std::string_view sql) override { connection_->execute(sql); }
  RecordsetRef query(std::string_view sql) override {
    RecordsetRef table = connection_->query(sql);
    if (sql.starts_with("InsertTicket ")) ticket_ = table->integer("TicketNumber");
    return table;
  }
  void close() override { connection_->close(); }

 private:
  std::unique_ptr<Connection> connection_;
  int report_;
  std::int32_t ticket_ = 0;
};

// Tickets until somebody kills the process.
void saveTickets(const std::string& path, int report) {
  const auto apartment = std::make_shared<Apartment>();
  const ApartmentScope scope(apartment);
  apartment->DBConnectionString = embeddedConnectionString(path);
  apartment->connect = [report](const ConnectionSettings& settings) {
    return std::make_unique<ReportingConnection>(connectEmbedded(settings), report);
  };
  for (int count = 1;; count = count % 6 + 1) {
    Invoice invoice;
    invoice.storeNumber = 1;
    invoice.priceListId = 1;
    invoice.custSeqNumber = 10;
    invoice.setStoreDays(1);
    for (int garment = 0; garment < count; ++garment) invoice.addItem(101 + garment % 3, 0, 1, 1.0, 0.01);
    // The header tells how many lines belong to the ticket.
    invoice.lineItems->clearFilter();
    invoice.saveInvoice("add", 1, 1, "0", std::to_string(invoice.lineItems->recordCount()), "", false);
  }
}

// First value of the first row.
std::string ask(sqlite3* database, const std::string& sql) {
  std::string answer;
  const auto take = [](void* to, int, char** values, char**) {
    *static_cast<std::string*>(to) = values[0] ? values[0] : "";
    return 0;
  };
  char* message = nullptr;
  if (sqlite3_exec(database, sql.c_str(), take, &answer, &message) != SQLITE_OK)
    throw std::runtime_error(sql + ": " + (message ? message : "failed"));
  return answer;
}

int compareByStore(void*, int sizeA, const void* a, int sizeB, const void* b) {
  return compareStoreText({static_cast<const char*>(a), static_cast<size_t>(sizeA)},
                          {static_cast<const char*>(b), static_cast<size_t>(sizeB)});
}

// What is wrong with the database; nothing when all is as it must be.
std::string fault(const std::string& path, const std::set<int>& reported) {
  sqlite3* database = nullptr;
  if (sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
    return "does not open";
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> closing(database, sqlite3_close);
  sqlite3_create_collation(database, "store", SQLITE_UTF8, nullptr, compareByStore);
  if (const std::string found = ask(database, "pragma integrity_check"); found != "ok") return found;
  for (const int ticket : reported)
    if (ask(database, "select count(*) from Ticket where ticketNumber = " + std::to_string(ticket)) != "1")
      return "ticket " + std::to_string(ticket) + " was reported and is not there";
  const std::string partial = ask(
      database,
      "select count(*) from Ticket t where ticketNumber >= 1100 and (cast(employeeName as integer) <> (select count(*) "
      "from TicketLineItem l where l.ticketNumber = t.ticketNumber) or not exists (select 1 from TicketCustomer c "
      "where c.ticketNumber = t.ticketNumber))");
  if (partial != "0") return partial + " tickets are not whole";
  const std::string strays =
      ask(database,
          "select count(*) from TicketLineItem where ticketNumber not in (select ticketNumber from Ticket)");
  return strays == "0" ? "" : strays + " lines without a ticket";
}

// Lets a child work for a while, kills it, and gives the numbers that it reported.
std::set<int> killOnce(const std::string& path, std::chrono::milliseconds life) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("pipe failed");
  const pid_t child = inChild([&] {
    close(ends[0]);
    saveTickets(path, ends[1]);
  });
  close(ends[1]);
  std::this_thread::sleep_for(life);
  kill(child, SIGKILL);
  const int status = statusOf(child);
  FILE* report = fdopen(ends[0], "r");
  std::set<int> numbers;
  for (int number = 0; std::fscanf(report, "%d", &number) == 1;) numbers.insert(number);
  std::fclose(report);
  if (!WIFSIGNALED(status)) throw std::runtime_error("the child ended by itself");
  return numbers;
}

int run(int kills, unsigned seed) {
  const auto folder =
      std::filesystem::temp_directory_path() / ("ondrel_ticket_crash_" + std::to_string(getpid()));
  std::filesystem::create_directories(folder);
  const std::string path = (folder / "store.db").string();
  const int status = statusOf(inChild([&] { createDatabaseFile(path, StoreContents::Sample); }));

  std::mt19937 random(seed);
  std::uniform_int_distribution<int> life(1, kLongestRun);
  std::set<int> reported;
  std::string found = status == 0 ? "" : "no database was made";
  int killsInWork = 0;
  for (int round = 1; round <= kills && found.empty(); ++round) {
    const std::set<int> numbers = killOnce(path, std::chrono::milliseconds(life(random)));
    killsInWork += !numbers.empty();
    reported.insert(numbers.begin(), numbers.end());
    found = fault(path, reported);
    if (!found.empty()) std::cerr << "after kill " << round << ": " << found << "\n";
  }
  std::filesystem::remove_all(folder);
  std::cout << kills << " kills, " << killsInWork << " of them after a first ticket, " << reported.size()
            << " tickets reported" << (found.empty() ? ", all whole\n" : "\n");
  return found.empty() && killsInWork > 0 ? 0 : 1;
}

}  // namespace
}  // namespace ondrel

int main(int count, char** arguments) {
  const int kills = count > 1 ? std::atoi(arguments[1]) : 200;
  const int seed = count > 2 ? std::atoi(arguments[2]) : 1;
  return ondrel::run(kills, static_cast<unsigned>(seed));
}
