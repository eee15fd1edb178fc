#pragma once

#include <array>
#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "host/page_engine.h"

namespace ondrel {

// What /metrics tells beside the counters of requests.
struct HostState {
  size_t sessions = 0;
  size_t scriptMemory = 0;  // bytes
  size_t connections = 0;
  size_t databaseConnections = 0;
  size_t workers = 0;
  size_t busyWorkers = 0;
  size_t lostWorkers = 0;
  size_t waitingRequests = 0;
};

// Counters of a host. Safe to share between threads.
class Metrics {
 public:
  // `page` is the page's name or what else answered: "asset", "health", "refused".
  void add(std::string_view page, int status, std::chrono::nanoseconds time, const PageRun& run);
  // In the text form that collectors of such metrics read.
  std::string text(const HostState& state) const;

 private:
  static constexpr std::array kBounds = {0.001, 0.0025, 0.005, 0.01, 0.025, 0.05,
                                         0.1,   0.25,   0.5,   1.0,  2.5,   10.0};

  struct PageMetrics {
    std::map<int, std::uint64_t> requests;  // by status
    std::array<std::uint64_t, kBounds.size()> within{};
    std::uint64_t count = 0;
    double seconds = 0;
  };

  mutable std::mutex mutex_;
  std::map<std::string, PageMetrics, std::less<>> pages_;
  double pageSeconds_ = 0;
  double librarySeconds_ = 0;
  double databaseSeconds_ = 0;
  std::uint64_t statements_ = 0;
};

}  // namespace ondrel
