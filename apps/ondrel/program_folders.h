#pragma once

#include <filesystem>

namespace ondrel {

// The folder of the running program.
inline std::filesystem::path programFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

// A folder of the installation that the program belongs to, given from the one above the program's;
// `fallback` for a program that is not installed.
inline std::filesystem::path installedFolder(const char* name, const std::filesystem::path& fallback) {
  const std::filesystem::path folder = programFolder().parent_path() / name;
  return std::filesystem::exists(folder) ? folder : fallback;
}

}  // namespace ondrel
