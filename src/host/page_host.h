#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/date.h"
#include "host/http_server.h"
#include "host/worker_pool.h"

namespace ondrel {

struct HostLimits {
  HttpLimits http;
  RunLimits runs;
  size_t workers = 0;  // threads that run pages; 0 for four times the processors, 8 at least
  size_t sessions = 200;
  size_t scriptMemory = size_t{64} << 20;         // bytes of a session's script values
  size_t answerSize = size_t{8} << 20;            // bytes of an answer
  std::chrono::milliseconds idle{8 * 3'600'000};  // after which a session ends
  // After which a session that has only looked may lose its place to a new one on a full host.
  std::chrono::milliseconds looking{60'000};
};

struct HostOptions {
  std::string connectionString;
  std::filesystem::path pages;
  std::string address = "127.0.0.1";
  int port = 8080;  // 0 for a free one
  // Where the sessions' journals lie; empty for none. Made when it is missing.
  std::filesystem::path journals;
  // The clerks who may sign in; with a file nobody works without.
  std::filesystem::path clerks;
  // Names by which browsers may call this host beside its address; without any, where it listens beyond this
  // machine, they call it by an address.
  std::vector<std::string> names;
  bool isBehindTls = false;   // the session cookie goes over TLS only
  std::filesystem::path log;  // empty for the error output
  std::optional<Date> now;    // fixes the clock of library and database
  // What the pages of this shop need to be told, by name.
  std::map<std::string, std::string> settings;
  HostLimits limits;
};

// Serves pages to browsers; docs/page-host.md tells how pages are written. Each browser session has a script
// engine and an apartment of its own. Sessions run side by side on the workers and share no lock while a page
// runs; the requests of one session run in the order of their arrival.
class PageHost {
 public:
  // Error 5 when it would listen beyond this machine without clerks; error 75 or 76 when a folder or a file cannot
  // be used.
  explicit PageHost(HostOptions options);
  // Stops.
  ~PageHost();
  PageHost(const PageHost&) = delete;
  PageHost& operator=(const PageHost&) = delete;

  // Begins to answer and returns the port.
  int start();
  // Takes no more requests, finishes those in progress and ends the sessions; their journals stay. False when a page
  // that passed its time is still at it: its thread is left behind.
  bool stop();

 private:
  class Work;
  std::unique_ptr<Work> work_;
};

}  // namespace ondrel
