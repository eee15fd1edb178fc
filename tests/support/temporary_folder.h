#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace ondrel {

// A new folder for the length of a test.
struct TemporaryFolder {
  TemporaryFolder() {
    if (!::mkdtemp(path.data())) throw std::runtime_error("no temporary folder");
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path = (std::filesystem::temp_directory_path() / "ondrelXXXXXX").string();
};

}  // namespace ondrel
