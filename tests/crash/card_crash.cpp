// Kills a counter between the steps of a card sale and looks for the sale with the queries of docs/cards.md.
//
//   card_crash
//
// Each case has a store of its own, in which another sale of the same customer, with the same approval code, was
// booked in the morning. Then a child process sells, kills itself at a statement, and the queries must tell what
// became of the second sale, and nothing of the first.
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "cards/credit_card_processing.h"
#include "child_process.h"
#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"
#include "data/query_database.h"

namespace ondrel {
namespace {

namespace fs = std::filesystem;

struct KillPoint {
  const char* statement;
  bool isCommitted;    // killed behind the commit of the statement, or in front of it
  const char* lost;    // code and waiting rows of the sale without a ledger row
  const char* unread;  // requests without an answer
};

// clang-format off
constexpr KillPoint kPoints[] = {
    {"insert into XChargeTransaction", true,  "",         "1"},
    {" update xchargetransaction",     false, "",         "1"},
    {" update xchargetransaction",     true,  "A777 | 0", ""},
    {" INSERT INTO TerminalPayment",   false, "A777 | 0", ""},
    {" INSERT INTO TerminalPayment",   true,  "A777 | 1", ""},
    {"ApplyPrePayPayment",             false, "A777 | 1", ""},
    {"ApplyPrePayPayment",             true,  "",         ""},
};
// clang-format on

class KillingConnection : public Connection {
 public:
  KillingConnection(std::unique_ptr<Connection> connection, const KillPoint& point)
      : connection_(std::move(connection)), point_(point) {}

  void setCommandTimeout(int seconds) override { connection_->setCommandTimeout(seconds); }
  void open() override { connection_->open(); }
  void begin() override { connection_->begin(); }
  void commit() override {
    if (isHit_ && !point_.isCommitted) raise(SIGKILL);
    connection_->commit();
    if (isHit_) raise(SIGKILL);
  }
  void execute(std::string_view sql) override {
    connection_->execute(sql);
    isHit_ = isHit_ || sql.starts_with(point_.statement);
  }
  RecordsetRef query(std::string_view sql) override { return connection_->query(sql); }
  void close() override { connection_->close(); }

 private:
  std::unique_ptr<Connection> connection_;
  KillPoint point_;
  bool isHit_ = false;
};

// Approves the request in the folder while the sale sleeps.
class ApprovingClock : public FixedClock {
 public:
  ApprovingClock(Date now, fs::path folder) : FixedClock(now), folder_(std::move(folder)) {}
  void sleep(std::chrono::milliseconds duration) override {
    FixedClock::sleep(duration);
    for (const auto& entry : fs::directory_iterator(folder_)) {
      fs::path path = entry.path();
      if (path.extension() != ".req") continue;
      fs::remove(path);
      std::ofstream(path.replace_extension(".ans")) << "\"YA777\"\r\n";
      return;
    }
  }

 private:
  fs::path folder_;
};

struct CrashStore {
  fs::path folder;

  std::string database() const { return (folder / "store.db").string(); }
  fs::path exchange() const { return folder / "c" / "xc"; }
  ApartmentRef apartment(const Date& now) const {
    const auto result = std::make_shared<Apartment>();
    result->DBConnectionString = embeddedConnectionString(database());
    result->connect = connectEmbedded;
    result->files = Files(folder.string());
    result->clock = std::make_shared<ApprovingClock>(now, exchange());
    return result;
  }
};

// 5.00 and then 6.00 on ticket 1008 of customer 1.
void sell(const ApartmentRef& apartment, double amount) {
  const ApartmentScope scope(apartment);
  CreditCardProcessing cards;
  cards.setXChargeDirectory("C:/xc");
  cards.setXChargeTimeout(60);
  const auto fields = std::make_shared<CreditCardFields>();
  fields->accountnumber = "4111111111111111";
  Variant code;
  if (!cards.ProcessFullTransaction(1, 2, 4, 1, "1008", fields, amount, "", 2, code))
    throw std::runtime_error("not approved: " + code.toText());
}

// The statements of docs/cards.md, in their order.
std::vector<std::string> documentedQueries() {
  std::ifstream file(ONDREL_SOURCE_DIR "/docs/cards.md");
  const std::string text(std::istreambuf_iterator<char>(file), {});
  constexpr std::string_view kStart = "```sql\n";
  std::vector<std::string> queries;
  for (size_t start = text.find(kStart); start != std::string::npos; start = text.find(kStart, start)) {
    start += kStart.size();
    queries.push_back(text.substr(start, text.find("```", start) - start));
  }
  if (queries.size() != 2) throw std::runtime_error("docs/cards.md has other queries");
  return queries;
}

void expect(const std::string& found, const std::string& expected, const char* what) {
  if (found != expected)
    throw std::runtime_error(std::string(what) + ": '" + found + "', not '" + expected + "'");
}

void lookForTheSale(const ApartmentRef& apartment, const KillPoint& point) {
  const std::vector<std::string> queries = documentedQueries();
  std::string lost;
  for (const RecordsetRef row = queryDatabase(*apartment, queries[0]); !row->eof(); row->moveNext())
    lost += row->text("answer") + " | " + row->value("waitingRows").toText();
  const int unread = queryDatabase(*apartment, queries[1])->recordCount();
  expect(lost, point.lost, "sales that are lost");
  expect(unread > 0 ? std::to_string(unread) : "", point.unread, "answers that nobody read");
}

// What is wrong; nothing when the sale was found as it should.
bool tryPoint(const KillPoint& point) {
  const CrashStore store{fs::temp_directory_path() / ("ondrel_card_crash_" + std::to_string(getpid()))};
  fs::create_directories(store.exchange());
  const int made = statusOf(inChild([&] {
    createDatabaseFile(store.database(), StoreContents::Sample);
    sell(store.apartment(Date::of(2026, 11, 24, 9, 0)), 5);
  }));
  const int killed = statusOf(inChild([&] {
    const ApartmentRef apartment = store.apartment(Date::of(2026, 11, 24, 10, 30));
    apartment->connect = [&](const ConnectionSettings& settings) {
      return std::make_unique<KillingConnection>(connectEmbedded(settings), point);
    };
    sell(apartment, 6);
  }));
  const int found =
      statusOf(inChild([&] { lookForTheSale(store.apartment(Date::of(2026, 11, 24, 11, 0)), point); }));
  fs::remove_all(store.folder);
  const bool isGood = made == 0 && WIFSIGNALED(killed) && found == 0;
  if (!isGood) std::cerr << "killed at '" << point.statement << "', committed " << point.isCommitted << "\n";
  return isGood;
}

}  // namespace
}  // namespace ondrel

int main() {
  int failures = 0;
  for (const ondrel::KillPoint& point : ondrel::kPoints) failures += !ondrel::tryPoint(point);
  std::cout << std::size(ondrel::kPoints) << " kills, " << failures << " sales not found as documented\n";
  return failures > 0;
}
