#include "host/metrics.h"

#include <fmt/format.h>

#include <iterator>

namespace ondrel {
namespace {

double secondsOf(std::chrono::nanoseconds time) {
  return std::chrono::duration<double>(time).count();
}

void head(std::string& text, std::string_view name, std::string_view kind, std::string_view help) {
  fmt::format_to(std::back_inserter(text), "# HELP {0} {2}\n# TYPE {0} {1}\n", name, kind, help);
}

template <class Value>
void metric(std::string& text, std::string_view name, std::string_view kind, std::string_view help,
            Value value) {
  head(text, name, kind, help);
  fmt::format_to(std::back_inserter(text), "{} {}\n", name, value);
}

}  // namespace

void Metrics::add(std::string_view page, int status, std::chrono::nanoseconds time, const PageRun& run) {
  const double seconds = secondsOf(time);
  const std::lock_guard lock(mutex_);
  const auto found = pages_.find(page);
  PageMetrics& metrics = found != pages_.end() ? found->second : pages_[std::string(page)];
  ++metrics.requests[status];
  ++metrics.count;
  metrics.seconds += seconds;
  for (size_t k = 0; k < kBounds.size(); ++k)
    if (seconds <= kBounds[k]) ++metrics.within[k];
  pageSeconds_ += secondsOf(run.total - run.library - run.database);
  librarySeconds_ += secondsOf(run.library);
  databaseSeconds_ += secondsOf(run.database);
  statements_ += run.statements;
}

std::string Metrics::text(const HostState& state) const {
  const std::lock_guard lock(mutex_);
  std::string text;
  const auto out = std::back_inserter(text);
  head(text, "ondrel_requests_total", "counter", "Requests answered.");
  for (const auto& [page, metrics] : pages_)
    for (const auto& [status, count] : metrics.requests)
      fmt::format_to(out, "ondrel_requests_total{{page=\"{}\",status=\"{}\"}} {}\n", page, status, count);
  head(text, "ondrel_request_seconds", "histogram", "From the request to its answer.");
  for (const auto& [page, metrics] : pages_) {
    for (size_t k = 0; k < kBounds.size(); ++k)
      fmt::format_to(out, "ondrel_request_seconds_bucket{{page=\"{}\",le=\"{}\"}} {}\n", page, kBounds[k],
                     metrics.within[k]);
    fmt::format_to(out, "ondrel_request_seconds_bucket{{page=\"{}\",le=\"+Inf\"}} {}\n", page, metrics.count);
    fmt::format_to(out, "ondrel_request_seconds_sum{{page=\"{}\"}} {:.6f}\n", page, metrics.seconds);
    fmt::format_to(out, "ondrel_request_seconds_count{{page=\"{}\"}} {}\n", page, metrics.count);
  }
  head(text, "ondrel_seconds_total", "counter", "Where the time of the pages went.");
  fmt::format_to(out, "ondrel_seconds_total{{in=\"page\"}} {:.6f}\n", pageSeconds_);
  fmt::format_to(out, "ondrel_seconds_total{{in=\"library\"}} {:.6f}\n", librarySeconds_);
  fmt::format_to(out, "ondrel_seconds_total{{in=\"database\"}} {:.6f}\n", databaseSeconds_);
  // clang-format off
  metric(text, "ondrel_statements_total", "counter", "Statements sent to the database.", statements_);
  metric(text, "ondrel_sessions", "gauge", "Open sessions.", state.sessions);
  metric(text, "ondrel_script_memory_bytes", "gauge", "Memory of the sessions' scripts.", state.scriptMemory);
  metric(text, "ondrel_connections", "gauge", "Open connections of browsers.", state.connections);
  metric(text, "ondrel_database_connections", "gauge", "Connections to the database in use.", state.databaseConnections);
  metric(text, "ondrel_runners", "gauge", "Threads that run pages.", state.workers);
  metric(text, "ondrel_runners_busy", "gauge", "Of them at work.", state.busyWorkers);
  metric(text, "ondrel_runners_lost", "gauge", "Threads held by pages that passed their time.", state.lostWorkers);
  metric(text, "ondrel_requests_waiting", "gauge", "Requests that wait for a runner.", state.waitingRequests);
  // clang-format on
  return text;
}

}  // namespace ondrel
