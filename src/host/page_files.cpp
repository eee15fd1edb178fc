#include "host/page_files.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

#include "base/error.h"
#include "base/text.h"

namespace ondrel {
namespace {

constexpr size_t kLongestName = 200;
constexpr std::string_view kScriptEnding = ".js";
constexpr std::string_view kAssets = "assets/";
constexpr std::string_view kShared = "shared/";

struct AssetKind {
  std::string_view ending;
  std::string_view type;
};

// clang-format off
constexpr std::array<AssetKind, 10> kAssetKinds = {{
    {".css",   "text/css; charset=utf-8"},
    {".js",    "text/javascript; charset=utf-8"},
    {".json",  "application/json"},
    {".html",  "text/html; charset=utf-8"},
    {".txt",   "text/plain; charset=utf-8"},
    {".svg",   "image/svg+xml"},
    {".png",   "image/png"},
    {".jpg",   "image/jpeg"},
    {".ico",   "image/x-icon"},
    {".woff2", "font/woff2"},
}};
// clang-format on

bool isNameCharacter(char c, bool withDots) {
  return isLetter(c) || isDigit(c) || c == '-' || c == '_' || (withDots && c == '.');
}

// Words of name characters between single slashes; none is empty or begins with a dot.
bool isName(std::string_view name, bool withDots) {
  if (name.empty() || name.size() > kLongestName || name.back() == '/') return false;
  char before = '/';
  for (const char c : name) {
    if (c == '/' ? before == '/' : !isNameCharacter(c, withDots) || (c == '.' && before == '/')) return false;
    before = c;
  }
  return true;
}

std::string versionOf(const struct stat& status) {
  return fmt::format("{}.{:09}-{}-{}", status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_size,
                     status.st_ino);
}

}  // namespace

std::string_view assetType(std::string_view name) {
  for (const AssetKind& kind : kAssetKinds)
    if (name.ends_with(kind.ending)) return kind.type;
  return {};
}

PageFiles::PageFiles(const std::filesystem::path& folder) {
  std::error_code error;
  folder_ = std::filesystem::canonical(folder, error);
  if (error || !std::filesystem::is_directory(folder_, error))
    throw Error(ErrorNumber::PathAccess, "Host", "There is no folder of pages: " + folder.string());
}

std::optional<PageFile> PageFiles::find(const std::string& name) const {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::canonical(folder_ / name, error);
  if (error) return std::nullopt;
  const auto [end, rest] = std::mismatch(folder_.begin(), folder_.end(), path.begin(), path.end());
  if (end != folder_.end()) return std::nullopt;
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return PageFile{name, path, versionOf(status)};
}

std::optional<PageFile> PageFiles::page(std::string_view path) const {
  if (path == "/") path = "/index";
  if (!path.starts_with('/')) return std::nullopt;
  path.remove_prefix(1);
  if (!isName(path, false) || path.starts_with(kAssets) || path.starts_with(kShared)) return std::nullopt;
  return find(std::string(path) + std::string(kScriptEnding));
}

std::optional<PageFile> PageFiles::asset(std::string_view path) const {
  if (!path.starts_with('/')) return std::nullopt;
  path.remove_prefix(1);
  if (!isName(path, true) || !path.starts_with(kAssets) || assetType(path).empty()) return std::nullopt;
  return find(std::string(path));
}

std::optional<PageFile> PageFiles::script(std::string_view name) const {
  if (!name.ends_with(kScriptEnding) || !isName(name, true) || name.starts_with(kAssets)) return std::nullopt;
  return find(std::string(name));
}

std::string PageFiles::textOf(const PageFile& file) {
  std::ifstream stream(file.path, std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(stream), {});
  if (!stream) throw Error(ErrorNumber::FileNotFound, "Host", "File not found: " + file.name);
  return text;
}

}  // namespace ondrel
