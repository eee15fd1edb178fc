#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

#include "base/date.h"
#include "host/page_engine.h"

namespace ondrel {

// A request as the log tells it.
struct LogEntry {
  Date moment;
  std::uint64_t number = 0;  // the one that an answer of status 500 shows
  std::string method;
  std::string path;
  int status = 0;
  std::string session;  // the beginning of a digest of its id
  std::string clerk;
  size_t bytes = 0;
  std::chrono::nanoseconds time{0};  // all of it, waiting included
  PageRun run;
  std::string note;
};

// A line of JSON for each request, and for what else happens to a host; card data is masked. Safe to share
// between threads: a line goes out in one piece.
class RequestLog {
 public:
  // To the file, at its end; to the error output without one. Error 75 when it cannot be opened.
  explicit RequestLog(const std::filesystem::path& file);
  ~RequestLog();
  RequestLog(const RequestLog&) = delete;
  RequestLog& operator=(const RequestLog&) = delete;

  void add(const LogEntry& entry);
  void note(Date moment, std::string_view text);

 private:
  void write(std::string line);

  int file_;
};

}  // namespace ondrel
