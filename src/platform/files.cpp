#include "platform/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include "base/error.h"
#include "base/text.h"

namespace ondrel {
namespace {

constexpr mode_t kOwnerAndGroup = 0660;

std::string drivesOfHost() {
  if (const char* drives = std::getenv("ONDREL_DRIVES")) return drives;
  const char* home = std::getenv("HOME");
  return std::string(home ? home : ".") + "/.ondrel/drives";
}

// Descriptions name no path: a folder is the shop's own business.
[[noreturn]] void failAccess() {
  throw Error(ErrorNumber::PathAccess, "Files", "Path/File access error");
}

// The folders and the name without "." and "..", which ends at the top of the drive.
std::string stepsOf(std::string_view path) {
  std::vector<std::string> steps;
  while (!path.empty()) {
    const size_t end = std::min(path.find_first_of("\\/"), path.size());
    const std::string_view step = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    if (step == "..") {
      if (!steps.empty()) steps.pop_back();
    } else if (!step.empty() && step != ".") {
      steps.emplace_back(step);
    }
  }
  std::string result;
  for (const std::string& step : steps) result += (result.empty() ? "" : "/") + step;
  return result;
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {
    if (number_ < 0) failAccess();
  }
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  void writeAll(std::string_view text) {
    while (!text.empty()) {
      const ssize_t written = ::write(number_, text.data(), text.size());
      if (written < 0 && errno == EINTR) continue;
      if (written <= 0) failAccess();
      text.remove_prefix(static_cast<size_t>(written));
    }
    if (::fsync(number_) != 0) failAccess();
  }
  void close() {
    if (::close(std::exchange(number_, -1)) != 0) failAccess();
  }

 private:
  int number_;
};

}  // namespace

Files::Files() : Files(drivesOfHost()) {}

std::string Files::hostPath(std::string_view path) const {
  if (path.size() > 1 && path[1] == ':' && isLetter(path[0]))
    return drives_ + "/" + toLower(path.substr(0, 1)) + "/" + stepsOf(path.substr(2));
  const bool isRooted = !path.empty() && (path[0] == '\\' || path[0] == '/');
  return (isRooted ? "/" : "") + stepsOf(path);
}

bool Files::exists(std::string_view path) const {
  std::error_code failure;
  return std::filesystem::is_regular_file(hostPath(path), failure);
}

bool Files::remove(std::string_view path) const {
  std::error_code failure;
  const bool removed = std::filesystem::remove(hostPath(path), failure);
  if (failure) throw Error(ErrorNumber::PermissionDenied, "Files", "Permission denied");
  return removed;
}

void Files::write(std::string_view path, std::string_view text) const {
  Descriptor file(::open(hostPath(path).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kOwnerAndGroup));
  file.writeAll(text);
  file.close();
}

void Files::rename(std::string_view from, std::string_view to) const {
  std::error_code failure;
  std::filesystem::rename(hostPath(from), hostPath(to), failure);
  if (failure == std::errc::no_such_file_or_directory)
    throw Error(ErrorNumber::FileNotFound, "Files", "File not found");
  if (failure) failAccess();
}

std::optional<std::string> Files::read(std::string_view path, size_t limit) const {
  if (!exists(path)) return std::nullopt;
  std::ifstream file(hostPath(path), std::ios::binary);
  if (!file) return std::nullopt;
  std::string text(limit, '\0');
  file.read(text.data(), static_cast<std::streamsize>(limit));
  text.resize(static_cast<size_t>(file.gcount()));
  return text;
}

}  // namespace ondrel
