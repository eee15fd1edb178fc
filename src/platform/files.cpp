#include "platform/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <vector>

#include "base/error.h"
#include "base/text.h"
#include "platform/environment.h"

namespace ondrel {
namespace {

constexpr mode_t kOwnerAndGroup = 0660;

std::string drivesOfHost() {
  return environmentValue("ONDREL_DRIVES", environmentValue("HOME", ".") + "/.ondrel/drives");
}

// Descriptions name no path: a folder is the shop's own business.
[[noreturn]] void failAccess() {
  throw Error(ErrorNumber::PathAccess, "Files", "Path/File access error");
}

// The folders and the name without "." and "..", which ends at the top of the drive.
std::vector<std::string> stepsOf(std::string_view path) {
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
  return steps;
}

std::string joined(const std::vector<std::string>& steps) {
  std::string result;
  for (const std::string& step : steps) result += (result.empty() ? "" : "/") + step;
  return result;
}

// The name that `step` has in the folder: its own, or the first that differs from it in case alone.
std::string nameIn(const std::string& folder, const std::string& step) {
  std::error_code failure;
  if (std::filesystem::exists(folder + "/" + step, failure)) return step;
  std::string found;
  for (auto it = std::filesystem::directory_iterator(folder, failure);
       !failure && it != std::filesystem::directory_iterator(); it.increment(failure)) {
    const std::string name = it->path().filename().string();
    if (equalsIgnoringCase(name, step) && (found.empty() || name < found)) found = name;
  }
  return found.empty() ? step : found;
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
  if (path.size() > 1 && path[1] == ':' && isLetter(path[0])) {
    std::string place = drives_ + "/" + toLower(path.substr(0, 1));
    std::string steps;
    for (const std::string& step : stepsOf(path.substr(2))) steps += "/" + nameIn(place + steps, step);
    return place + (steps.empty() ? "/" : steps);
  }
  const bool isRooted = !path.empty() && (path[0] == '\\' || path[0] == '/');
  return (isRooted ? "/" : "") + joined(stepsOf(path));
}

bool Files::exists(std::string_view path) const {
  std::error_code failure;
  return std::filesystem::is_regular_file(hostPath(path), failure);
}

void Files::makeFolder(std::string_view path) const {
  std::error_code failure;
  std::filesystem::create_directories(hostPath(path), failure);
  if (failure) failAccess();
}

void Files::makeReadOnly(std::string_view path) const {
  using std::filesystem::perms;
  std::error_code failure;
  std::filesystem::permissions(hostPath(path), perms::owner_write | perms::group_write | perms::others_write,
                               std::filesystem::perm_options::remove, failure);
  if (failure) failAccess();
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
  std::error_code failure;
  const auto size = std::filesystem::file_size(hostPath(path), failure);
  std::string text(failure ? limit : std::min<std::uintmax_t>(limit, size), '\0');
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<size_t>(file.gcount()));
  return text;
}

}  // namespace ondrel
