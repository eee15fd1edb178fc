#pragma once

#include <chrono>
#include <filesystem>
#include <memory>

namespace ondrel {

// Holds a folder for one host: another would bring the same work back, and delete what it does not know.
class FolderLock {
 public:
  // Error 75 when another host has it.
  explicit FolderLock(const std::filesystem::path& folder);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  int file_ = -1;
};

// Readies the folder for this host: journals are their owner's alone, and those that nobody came back to within
// `idle` go. Nothing without a folder; error 75 when it cannot be used.
std::unique_ptr<FolderLock> prepareJournals(const std::filesystem::path& folder,
                                            std::chrono::milliseconds idle);

}  // namespace ondrel
