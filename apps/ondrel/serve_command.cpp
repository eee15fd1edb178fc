#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/error.h"
#include "cards/exchange_files.h"
#include "commands.h"
#include "data/embedded/database_upgrade.h"
#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"
#include "host/clerks.h"
#include "host/page_host.h"
#include "host/secrets.h"
#include "program_folders.h"

namespace ondrel {
namespace {

struct ServeArguments {
  HostOptions host;
  std::string listen = "127.0.0.1:8080";
  std::string now;
  std::string newClerk;
  std::vector<std::string> settings;
  bool withoutJournal = false;
  unsigned timeLimitSeconds = 30;
  unsigned idleMinutes = 480;
};

void setAddress(HostOptions& host, const std::string& listen) {
  const size_t colon = listen.rfind(':');
  const std::string port = colon == std::string::npos ? "" : listen.substr(colon + 1);
  const bool isPort = !port.empty() && port.size() <= 5 &&
                      port.find_first_not_of("0123456789") == std::string::npos && std::stoi(port) <= 65535;
  if (!isPort) throw CLI::ValidationError("--listen", "ADDRESS:PORT, 127.0.0.1:8080");
  host.address = listen.substr(0, colon);
  if (host.address.starts_with('[') && host.address.ends_with(']'))
    host.address = host.address.substr(1, host.address.size() - 2);
  host.port = std::stoi(port);
}

// Beside the database file; a database in memory is gone with the host, and its tickets with it. For a server in the
// user's home, a folder for each connection string.
std::filesystem::path usualJournals(const std::string& connectionString) {
  if (!isEmbeddedConnectionString(connectionString)) {
    const char* home = std::getenv("HOME");
    if (!home) throw CLI::ValidationError("--journal", "needed where the user has no home (or --no-journal)");
    return std::filesystem::path(home) / ".ondrel/sessions" /
           digestOf("database", connectionString).substr(0, 16);
  }
  const auto path = connectionStringValue(connectionString, "Database");
  return path && !path->starts_with(":memory:") ? *path + ".sessions" : std::string();
}

// The PIN comes from the input, so that no list of processes shows it.
int addClerk(const ServeArguments& arguments) {
  const size_t colon = arguments.newClerk.find(':');
  if (colon == std::string::npos || arguments.host.clerks.empty())
    throw CLI::ValidationError("--add-clerk", "NUMBER:NAME, together with --clerks FILE");
  std::string pin;
  std::getline(std::cin, pin);
  Clerks::enter(arguments.host.clerks,
                {arguments.newClerk.substr(0, colon), arguments.newClerk.substr(colon + 1)}, pin);
  std::puts("entered");
  return 0;
}

void takeSettings(const ServeArguments& arguments, HostOptions& host) {
  for (const std::string& setting : arguments.settings) {
    const size_t equals = setting.find('=');
    if (equals == 0 || equals == std::string::npos) throw CLI::ValidationError("--set", "NAME=VALUE");
    host.settings[setting.substr(0, equals)] = setting.substr(equals + 1);
  }
}

// Threads take over the mask of the one that starts them: the signals wait for this one.
void blockSignals(sigset_t& signals) {
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

// The pages write to tables that an older database lacks.
void refuseOlder(const std::string& connectionString) {
  const auto path = connectionStringValue(connectionString, "Database");
  if (!isEmbeddedConnectionString(connectionString) || !path) return;
  if (!missingFromDatabase(*path).empty())
    throw Error(ErrorNumber::ConnectionFailed, "ondrel",
                "An earlier version made this database; \"ondrel db upgrade\" brings it up to date");
}

int serve(ServeArguments& arguments) {
  sigset_t signals;
  blockSignals(signals);
  std::optional<EmbeddedStore> store;
  HostOptions& host = arguments.host;
  if (host.connectionString.empty()) {
    store.emplace(StoreContents::Sample);
    host.connectionString = store->connectionString();
  }
  refuseOlder(host.connectionString);
  if (host.journals.empty() && !arguments.withoutJournal)
    host.journals = usualJournals(host.connectionString);
  if (const auto folder = host.settings.find("cardFolder"); folder != host.settings.end())
    clearUnfinishedRequests(Files(), folder->second);
  PageHost pages(host);
  const int port = pages.start();
  const bool isIpv6 = host.address.find(':') != std::string::npos;
  std::printf(isIpv6 ? "http://[%s]:%d/\n" : "http://%s:%d/\n", host.address.c_str(), port);
  std::fflush(stdout);
  int signal = 0;
  sigwait(&signals, &signal);
  // A page that never ends keeps its thread, and nothing can be torn down around it.
  if (!pages.stop()) std::_Exit(0);
  return 0;
}

int run(ServeArguments& arguments) {
  if (!arguments.newClerk.empty()) return addClerk(arguments);
  setAddress(arguments.host, arguments.listen);
  takeSettings(arguments, arguments.host);
  if (!arguments.now.empty()) {
    arguments.host.now = Date::parse(arguments.now);
    if (!arguments.host.now) throw CLI::ValidationError("--now", "no date: " + arguments.now);
  }
  arguments.host.limits.runs.time = std::chrono::seconds(arguments.timeLimitSeconds);
  arguments.host.limits.idle = std::chrono::minutes(arguments.idleMinutes);
  return serve(arguments);
}

}  // namespace

void addServeCommand(CLI::App& app, int& exitCode) {
  CLI::App* command = app.add_subcommand("serve", "Serve the counter to browsers");
  const auto arguments = std::make_shared<ServeArguments>();
  HostOptions& host = arguments->host;
  host.pages = installedFolder(ONDREL_DATA_FOLDER "/counter", programFolder().parent_path() / "counter");
  command->add_option("--db", host.connectionString,
                      "Connection string; without it a private database with the sample store");
  command->add_option("--listen", arguments->listen, "ADDRESS:PORT; port 0 takes a free one")
      ->capture_default_str();
  command->add_option("--pages", host.pages, "Folder of the pages")->capture_default_str();
  auto* journal = command->add_option(
      "--journal", host.journals,
      "Folder for the journals of sessions; beside a database file, or in ~/.ondrel/sessions for a server, if not told");
  command->add_flag("--no-journal", arguments->withoutJournal, "Keep no journals")->excludes(journal);
  command->add_option("--clerks", host.clerks,
                      "File of the clerks who may sign in; then nobody works without");
  command->add_option("--add-clerk", arguments->newClerk,
                      "Enter NUMBER:NAME in the file of clerks, the PIN from the input, and end");
  command->add_option("--name", host.names, "Name by which browsers call this host; may be repeated");
  command->add_flag("--behind-tls", host.isBehindTls, "Browsers reach this host through TLS");
  command->add_option("--set", arguments->settings,
                      "NAME=VALUE that pages ask for, such as cardFolder; may be repeated");
  command->add_option("--log", host.log, "File for the log instead of the error output");
  command->add_option("--now", arguments->now, "Fix the clock: \"2026-11-24 10:30\"");
  command->add_option("--sessions", host.limits.sessions, "Most sessions")->capture_default_str();
  command->add_option("--time-limit", arguments->timeLimitSeconds, "Seconds that a page may take")
      ->capture_default_str()
      ->check(CLI::Range(1, 3600));
  command->add_option("--idle", arguments->idleMinutes, "Minutes after which an unused session ends")
      ->capture_default_str()
      ->check(CLI::Range(1, 100'000));
  command->callback([arguments, &exitCode] { exitCode = run(*arguments); });
}

}  // namespace ondrel
