// Clerks at work on the counter: each in a browser session of its own and with a customer of its own, who finds
// the customer, writes a ticket, finishes and saves it, and hands it out against cash. Prints clicks per second,
// latencies of each page and the memory of a session, and then looks whether every ticket that the host
// acknowledged stands in the database, whole and once.
//
//   host_load PROGRAM PAGES [--sessions 50] [--seconds 60] [--think 1000]
//
// PROGRAM is the ondrel program, PAGES the folder counter/. A clerk waits `think` milliseconds between clicks, on
// average; 0 has them press without a pause, which measures what the disk takes. Every tenth save and payment is
// sent twice, as a nervous hand or network would. The status is 1 when a ticket is missing, broken or there twice,
// or a click failed.

#include <fcntl.h>
#include <fmt/format.h>
#include <httplib.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <thread>

#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"
#include "host/url_text.h"

extern char** environ;

namespace ondrel {
namespace {

using SteadyClock = std::chrono::steady_clock;

struct LoadOptions {
  std::string program;
  std::string pages;
  size_t sessions = 50;
  int seconds = 60;
  int thinkMilliseconds = 1000;
};

// What the host said is saved: the tickets of one order, "1101,1102".
struct Acknowledged {
  std::string mark;
  std::string tickets;
  int garments = 0;
  int times = 1;  // that the save was sent
  bool isCollected = false;
};

using Latencies = std::map<std::string, std::vector<double>>;  // milliseconds by page

// ---- the host

class HostProcess {
 public:
  HostProcess(const LoadOptions& options, const std::filesystem::path& folder, const std::string& database) {
    int output[2] = {};
    if (::pipe2(output, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    std::vector<std::string> words = {options.program, "serve",       "--listen",
                                      "127.0.0.1:0",   "--db",        database,
                                      "--pages",       options.pages, "--log",
                                      folder / "log",  "--sessions",  std::to_string(options.sessions + 10)};
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    if (posix_spawn(&process_, options.program.c_str(), &actions, nullptr, arguments.data(), environ) != 0)
      throw std::runtime_error("cannot start " + options.program);
    posix_spawn_file_actions_destroy(&actions);
    ::close(output[1]);
    std::string address;
    char c = 0;
    while (::read(output[0], &c, 1) == 1 && c != '\n') address += c;
    ::close(output[0]);
    const size_t colon = address.rfind(':');
    if (colon == std::string::npos) throw std::runtime_error("the host did not start");
    port_ = std::stoi(address.substr(colon + 1));
  }
  ~HostProcess() { stop(); }
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;

  int port() const { return port_; }

  double residentMegabytes() const {
    std::ifstream status("/proc/" + std::to_string(process_) + "/status");
    for (std::string line; std::getline(status, line);)
      if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
    return 0;
  }

  int stop() {
    if (process_ == 0) return 0;
    int status = 0;
    ::kill(process_, SIGTERM);
    ::waitpid(process_, &status, 0);
    process_ = 0;
    return status;
  }

 private:
  pid_t process_ = 0;
  int port_ = 0;
};

// ---- a clerk

constexpr int kFirstCustomer = 5000;
constexpr int kEmployee = 4;
constexpr int kTerminal = 2;

class LoadClerk {
 public:
  LoadClerk(int port, size_t number, const LoadOptions& options)
      : client_("127.0.0.1", port),
        number_(number),
        customer_(std::to_string(kFirstCustomer + static_cast<int>(number))),
        options_(options),
        random_(static_cast<unsigned>(number)) {
    client_.set_keep_alive(true);
    client_.set_tcp_nodelay(true);
    client_.set_read_timeout(60);
    const auto answer = client_.Get("/place");
    const std::string marker = "name=\"request-token\" content=\"";
    const size_t token = answer ? answer->body.find(marker) : std::string::npos;
    if (token == std::string::npos) throw std::runtime_error("no session");
    const std::string cookie = answer->get_header_value("Set-Cookie");
    headers_ = {{"X-Request-Token", answer->body.substr(token + marker.size(), 64)},
                {"Cookie", "ondrel_session=" + std::string(cookieValue(cookie, "ondrel_session"))}};
    // Once a morning, so neither timed nor waited for.
    const std::string type = "application/x-www-form-urlencoded";
    client_.Post("/place", headers_, "terminal=" + std::to_string(kTerminal), type);
    client_.Post("/employee", headers_, "employee=" + std::to_string(kEmployee), type);
  }

  void workUntil(SteadyClock::time_point end) {
    while (SteadyClock::now() < end) serveCustomer();
  }

  Latencies latencies;
  std::vector<Acknowledged> orders;
  size_t failures = 0;

 private:
  int between(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }

  void serveCustomer() {
    look("/?part=1&q=Loadman", "/?q=");
    look("/customer?id=" + customer_, "/customer");
    Acknowledged order;
    order.mark = fmt::format("load {}-{}", number_, ++written_);
    writeTicket(order);
    order.tickets = saved(order);
    if (order.tickets.empty()) return;
    order.isCollected = isCollected(order.tickets);
    orders.push_back(order);
  }

  void writeTicket(Acknowledged& order) {
    static constexpr int items[] = {101, 102, 103, 106, 108, 201};
    form("/ticket/start", "customer=" + customer_);
    look("/ticket");
    order.garments = between(2, 8);
    for (int k = 0; k < order.garments; ++k)
      json("/ticket/act", fmt::format(R"({{"click":"item","id":{},"quantity":1}})", items[between(0, 5)]));
    json("/ticket/act", fmt::format(R"({{"click":"notes","line":1,"value":"{}"}})", order.mark));
    form("/ticket/finish", "");
    look("/finished");
  }

  // The tickets that an order has become; the answer sends the browser to where it is told.
  std::string saved(Acknowledged& order) {
    std::string place = twice("/ticket/save", order.times);
    const std::string start = "/saved?tickets=";
    if (!place.starts_with(start)) return {};
    look(place, "/saved");
    place.erase(0, start.size());
    std::ranges::replace(place, '-', ',');
    return place;
  }

  bool isCollected(const std::string& tickets) {
    form("/pickup/start", "customer=" + customer_);
    look("/pickup");
    std::istringstream numbers(tickets);
    for (std::string number; std::getline(numbers, number, ',');)
      json("/pickup/act", R"({"click":"add","ticket":)" + number + "}");
    json("/pickup/act", R"({"click":"tender","type":"Cash","amount":2000,"sure":true})");
    // What is not on the rack is asked about; the answer is the question.
    form("/pickup/pay", "");
    const std::string marker = "name=\"sure\" value=\"";
    const size_t start = answer_.find(marker);
    if (start == std::string::npos) return false;
    const size_t question = start + marker.size();
    const std::string sure =
        httplib::detail::encode_query_param(answer_.substr(question, answer_.find('"', question) - question));
    int times = 0;
    return twice("/pickup/pay", times, "sure=" + sure).starts_with("/collected");
  }

  void look(const std::string& path, const std::string& name = "") {
    timed(name.empty() ? path : name, [&] { return client_.Get(path, headers_); });
  }

  void json(const std::string& page, const std::string& body) {
    timed(page, [&] { return client_.Post(page, headers_, body, "application/json"); });
  }

  std::string form(const std::string& page, const std::string& fields, const std::string& number = "") {
    httplib::Headers headers = headers_;
    if (!number.empty()) headers.emplace("X-Request-Number", number);
    return timed(page,
                 [&] { return client_.Post(page, headers, fields, "application/x-www-form-urlencoded"); });
  }

  // A request with a number, now and then sent again.
  std::string twice(const std::string& page, int& times, const std::string& fields = "") {
    const std::string number = fmt::format("{}-{}", written_, page.substr(page.rfind('/') + 1));
    std::string place = form(page, fields, number);
    times = between(1, 10) == 1 ? 2 : 1;
    if (times == 2 && form(page, fields, number) != place) ++failures;
    return place;
  }

  // A click says in its answer what it could not do.
  static bool isDone(const httplib::Response& answer) {
    const bool isClick = answer.get_header_value("Content-Type") == "application/json";
    return answer.status < 400 && (!isClick || answer.body.find(R"("problem":"")") != std::string::npos);
  }

  // Gives the place to which the answer sends the browser.
  template <class Send>
  std::string timed(const std::string& page, Send send) {
    if (options_.thinkMilliseconds > 0)
      std::this_thread::sleep_for(std::chrono::milliseconds(between(1, 2 * options_.thinkMilliseconds)));
    const auto start = SteadyClock::now();
    const httplib::Result answer = send();
    latencies[page].push_back(std::chrono::duration<double, std::milli>(SteadyClock::now() - start).count());
    if (answer) answer_ = answer->body;
    if (answer && isDone(*answer)) return answer->get_header_value("Location");
    if (++failures == 1)
      fmt::print(stderr, "{} {}\n", page,
                 answer ? answer->body.substr(0, 500) : httplib::to_string(answer.error()));
    return {};
  }

  httplib::Client client_;
  size_t number_;
  std::string customer_;
  const LoadOptions& options_;
  std::mt19937 random_;
  httplib::Headers headers_;
  std::string answer_;  // the last
  int written_ = 0;
};

using LoadClerks = std::vector<std::unique_ptr<LoadClerk>>;

// ---- what came of it

double quantile(const std::vector<double>& sorted, double part) {
  return sorted[std::min(sorted.size() - 1, static_cast<size_t>(part * static_cast<double>(sorted.size())))];
}

void printLatencies(const LoadClerks& clerks, double seconds) {
  Latencies all;
  for (const auto& clerk : clerks)
    for (const auto& [page, times] : clerk->latencies) {
      all[page].insert(all[page].end(), times.begin(), times.end());
      all["all clicks"].insert(all["all clicks"].end(), times.begin(), times.end());
    }
  fmt::print("{:<16}{:>9}{:>11}{:>9}{:>9}{:>9}{:>9}\n", "page", "clicks", "per second", "p50 ms", "p95 ms",
             "p99 ms", "most ms");
  for (auto& [page, times] : all) {
    std::ranges::sort(times);
    fmt::print("{:<16}{:>9}{:>11.1f}{:>9.2f}{:>9.2f}{:>9.2f}{:>9.2f}\n", page, times.size(),
               static_cast<double>(times.size()) / seconds, quantile(times, 0.5), quantile(times, 0.95),
               quantile(times, 0.99), times.back());
  }
}

int numberOf(Connection& connection, const std::string& sql) {
  return connection.query(sql)->integer("n");
}

std::string complaintOf(Connection& connection, const Acknowledged& order) {
  const auto number = [&](const std::string& what) { return numberOf(connection, "select " + what); };
  const std::string those = " in (" + order.tickets + ")";
  const int tickets = static_cast<int>(std::ranges::count(order.tickets, ',')) + 1;
  if (number("count(*) as n from Ticket where ticketNumber" + those) != tickets) return "is missing";
  if (number("count(*) as n from TicketLineItem where itemNotes = '" + order.mark + "'") != 1)
    return "is there more than once";
  // Garments of one kind stand on one line.
  if (number("sum(quantity) as n from TicketLineItem where ticketLineType = 'IT' and ticketNumber" + those) !=
      order.garments)
    return "is not whole";
  if (order.isCollected && number("count(*) as n from Payment where ticketNumber" + those) != tickets)
    return "is not paid once";
  return {};
}

// The number of orders that are not as they should be.
int checkOrders(const std::string& database, const LoadClerks& clerks) {
  const auto connection = connectEmbedded({database, "", "", std::make_shared<SystemClock>()});
  connection->open();
  int orders = 0, repeated = 0, collected = 0, wrong = 0;
  for (const auto& clerk : clerks)
    for (const Acknowledged& order : clerk->orders) {
      ++orders;
      repeated += order.times > 1;
      collected += order.isCollected;
      const std::string complaint = complaintOf(*connection, order);
      if (complaint.empty()) continue;
      ++wrong;
      fmt::print("order of tickets {} ({}) {}\n", order.tickets, order.mark, complaint);
    }
  const int stored =
      numberOf(*connection, "select count(*) as n from TicketLineItem where itemNotes like 'load %'");
  fmt::print("{} orders acknowledged, {} of them sent twice, {} collected, {} in the database, {} wrong\n",
             orders, repeated, collected, stored, wrong);
  return wrong + (stored == orders ? 0 : 1);
}

// A customer for each clerk, so that nobody collects what another hands out.
void addCustomers(const std::string& database, size_t count) {
  const auto connection = connectEmbedded({database, "", "", std::make_shared<SystemClock>()});
  connection->open();
  for (size_t k = 0; k < count; ++k)
    connection->execute(fmt::format(
        "insert into Customer (customerSequenceNumber, customername, firstName, lastName, MainAreaCode, MainPhone, "
        "defaultPriceListId) values ({}, 'Number{} Loadman', 'Number{}', 'Loadman', '555', '555{:04}', 1)",
        kFirstCustomer + static_cast<int>(k), k, k, k));
}

int run(const LoadOptions& options) {
  const auto folder = std::filesystem::temp_directory_path() / ("host_load_" + std::to_string(::getpid()));
  std::filesystem::create_directories(folder);
  const std::string path = folder / "store.db";
  const std::string database = "Driver=Embedded;Database=" + path;
  createDatabaseFile(path, StoreContents::Sample);
  addCustomers(database, options.sessions);

  HostProcess host(options, folder, database);
  const double before = host.residentMegabytes();
  LoadClerks clerks;
  for (size_t k = 0; k < options.sessions; ++k)
    clerks.push_back(std::make_unique<LoadClerk>(host.port(), k, options));
  const auto start = SteadyClock::now();
  std::vector<std::thread> threads;
  for (const auto& clerk : clerks)
    threads.emplace_back([&] { clerk->workUntil(start + std::chrono::seconds(options.seconds)); });
  for (std::thread& thread : threads) thread.join();
  printLatencies(clerks, std::chrono::duration<double>(SteadyClock::now() - start).count());
  const double sessions = static_cast<double>(options.sessions);
  fmt::print("{} sessions, {:.0f} KB resident each; the host had {:.1f} MB before\n", options.sessions,
             (host.residentMegabytes() - before) * 1024 / sessions, before);
  const bool hasStopped = host.stop() == 0;
  size_t failures = hasStopped ? 0 : 1;
  for (const auto& clerk : clerks) failures += clerk->failures;
  fmt::print("{} clicks failed\n", failures);
  const int wrong = checkOrders(database, clerks);
  if (wrong == 0 && failures == 0 && !std::getenv("KEEP")) std::filesystem::remove_all(folder);
  return wrong == 0 && failures == 0 ? 0 : 1;
}

}  // namespace
}  // namespace ondrel

int main(int argc, char** argv) {
  ondrel::LoadOptions options;
  CLI::App app("Clerks at work on a page host.", "host_load");
  app.add_option("PROGRAM", options.program, "The ondrel program")->required();
  app.add_option("PAGES", options.pages, "Folder of the pages, counter/")->required();
  app.add_option("--sessions", options.sessions, "Clerks")->capture_default_str();
  app.add_option("--seconds", options.seconds, "How long they work")->capture_default_str();
  app.add_option("--think", options.thinkMilliseconds, "Milliseconds between clicks, on average")
      ->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  return ondrel::run(options);
}
