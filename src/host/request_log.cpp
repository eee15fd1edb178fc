#include "host/request_log.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <iterator>

#include "base/error.h"
#include "data/card_masking.h"
#include "host/url_text.h"

namespace ondrel {
namespace {

constexpr mode_t kOwnerOnly = 0600;

std::string momentText(Date moment) {
  const DateParts parts = moment.parts();
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", parts.year, parts.month, parts.day, parts.hour,
                     parts.minute, parts.second);
}

double milliseconds(std::chrono::nanoseconds time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

// Masked before it is quoted, so that no escape stands between the digits.
std::string textField(std::string_view name, std::string_view text) {
  return text.empty() ? "" : fmt::format(",\"{}\":{}", name, jsonText(maskCardData(text)));
}

}  // namespace

RequestLog::RequestLog(const std::filesystem::path& file) : file_(STDERR_FILENO) {
  if (file.empty()) return;
  file_ = ::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, kOwnerOnly);
  if (file_ < 0) throw Error(ErrorNumber::PathAccess, "Host", "The log cannot be written: " + file.string());
}

RequestLog::~RequestLog() {
  if (file_ != STDERR_FILENO) ::close(file_);
}

void RequestLog::add(const LogEntry& entry) {
  std::string line = fmt::format("{{\"time\":\"{}\",\"number\":{}", momentText(entry.moment), entry.number);
  line += textField("method", entry.method);
  line += textField("path", entry.path);
  fmt::format_to(std::back_inserter(line), ",\"status\":{},\"bytes\":{},\"ms\":{:.3f}", entry.status,
                 entry.bytes, milliseconds(entry.time));
  const PageRun& run = entry.run;
  if (run.total.count() > 0)
    fmt::format_to(std::back_inserter(line),
                   ",\"page_ms\":{:.3f},\"library_ms\":{:.3f},\"database_ms\":{:.3f},\"statements\":{}",
                   milliseconds(run.total - run.library - run.database), milliseconds(run.library),
                   milliseconds(run.database), run.statements);
  if (run.discarded > 0) fmt::format_to(std::back_inserter(line), ",\"discarded\":{}", run.discarded);
  line += textField("session", entry.session);
  line += textField("clerk", entry.clerk);
  line += textField("printed", run.printed);
  line += textField("failure", run.failure);
  line += textField("restored", run.restored);
  line += textField("note", entry.note);
  write(line + "}\n");
}

void RequestLog::note(Date moment, std::string_view text) {
  write(fmt::format("{{\"time\":\"{}\"{}}}\n", momentText(moment), textField("note", text)));
}

// A log that cannot be written stops nobody's work.
void RequestLog::write(std::string line) {
  [[maybe_unused]] const ssize_t written = ::write(file_, line.data(), line.size());
}

}  // namespace ondrel
