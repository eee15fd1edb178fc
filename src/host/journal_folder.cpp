#include "host/journal_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <system_error>

#include "base/error.h"

namespace ondrel {
namespace {

constexpr const char* kJournalFolderSource = "Host";

}  // namespace

FolderLock::FolderLock(const std::filesystem::path& folder)
    : file_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (file_ >= 0 && ::flock(file_, LOCK_EX | LOCK_NB) == 0) return;
  if (file_ >= 0) ::close(file_);
  throw Error(ErrorNumber::PathAccess, kJournalFolderSource,
              "The folder of journals is another host's: " + folder.string());
}

FolderLock::~FolderLock() {
  if (file_ >= 0) ::close(file_);
}

std::unique_ptr<FolderLock> prepareJournals(const std::filesystem::path& folder,
                                            std::chrono::milliseconds idle) {
  if (folder.empty()) return nullptr;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
  if (error)
    throw Error(ErrorNumber::PathAccess, kJournalFolderSource,
                "The folder of journals cannot be used: " + folder.string());
  auto lock = std::make_unique<FolderLock>(folder);
  const auto oldest = std::filesystem::file_time_type::clock::now() - idle;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.path().extension() == ".journal" && entry.last_write_time() < oldest)
      std::filesystem::remove(entry.path(), error);
  return lock;
}

}  // namespace ondrel
