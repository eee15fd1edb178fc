#include "platform/settings.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "base/error.h"
#include "base/text.h"
#include "platform/environment.h"

namespace ondrel {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kFile = "/ondrel/settings.json";
constexpr int kIndent = 2;

std::vector<std::string> splitAt(std::string_view text, char separator) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const size_t end = std::min(text.find(separator), text.size());
    if (end > 0) parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

std::vector<std::string> filesOfMachine() {
  if (const std::string only = environmentValue("ONDREL_SETTINGS", ""); !only.empty()) return {only};
  std::vector<std::string> files = {
      environmentValue("XDG_CONFIG_HOME", environmentValue("HOME", ".") + "/.config").append(kFile)};
  for (const std::string& folder : splitAt(environmentValue("XDG_CONFIG_DIRS", "/etc/xdg"), ':'))
    files.push_back(std::string(folder).append(kFile));
  return files;
}

[[noreturn]] void failFormat(const std::string& file, const std::string& reason) {
  throw Error(ErrorNumber::InvalidFileFormat, "Settings", "Settings file " + file + ": " + reason);
}

// Error 75 for what cannot be read, such as a folder.
std::string textOf(const std::string& file) {
  try {
    std::ifstream stream(file, std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(stream), {});
    if (stream) return text;
  } catch (const std::ios_base::failure&) {  // of the read itself: the next line tells of it
  }
  throw Error(ErrorNumber::PathAccess, "Settings", "Settings file " + file + " cannot be read");
}

// The file's object; an empty one where there is no file.
Json readFile(const std::string& file) {
  std::error_code failure;
  if (!std::filesystem::exists(file, failure)) return Json::object();
  try {
    Json root = Json::parse(textOf(file));
    if (!root.is_object()) failFormat(file, "an object was expected");
    return root;
  } catch (const Json::parse_error& error) {
    failFormat(file, "no JSON at byte " + std::to_string(error.byte));
  } catch (const Json::exception& error) {
    failFormat(file, error.what());
  }
}

Json::iterator findIn(Json& object, std::string_view name) {
  auto it = object.begin();
  while (it != object.end() && !equalsIgnoringCase(it.key(), name)) ++it;
  return it;
}

// The object of a key, nullptr where there is none.
Json* findKey(Json& root, std::string_view key) {
  Json* place = &root;
  for (const std::string& step : splitAt(key, '\\')) {
    const auto found = findIn(*place, step);
    if (found == place->end() || !found->is_object()) return nullptr;
    place = &*found;
  }
  return place;
}

Json& makeKey(Json& root, std::string_view key, const std::string& file) {
  Json* place = &root;
  for (const std::string& step : splitAt(key, '\\')) {
    const auto found = findIn(*place, step);
    Json& next = found == place->end() ? (*place)[step] = Json::object() : *found;
    if (!next.is_object()) failFormat(file, "'" + step + "' is a value and no key");
    place = &next;
  }
  return *place;
}

// Removes the last step, and above it the steps that are then empty.
void removeKey(Json& place, const std::vector<std::string>& steps, size_t depth) {
  const auto found = findIn(place, steps[depth]);
  if (found == place.end() || !found->is_object()) return;
  if (depth + 1 < steps.size()) removeKey(*found, steps, depth + 1);
  if (depth + 1 == steps.size() || found->empty()) place.erase(found);
}

void applyChange(Json& root, const Settings::Change& change, const std::string& file) {
  if (change.values.empty()) {
    const std::vector<std::string> steps = splitAt(change.key, '\\');
    if (!steps.empty()) removeKey(root, steps, 0);
    return;
  }
  Json& key = makeKey(root, change.key, file);
  for (const auto& [name, value] : change.values) {
    const auto found = findIn(key, name);
    (found == key.end() ? key[name] : *found) = value;
  }
}

void writeFile(const std::string& file, const Json& root) {
  const std::string before = file + "." + std::to_string(::getpid()) + ".new";
  const std::filesystem::path folder = std::filesystem::path(file).parent_path();
  std::error_code failure;
  if (!folder.empty()) std::filesystem::create_directories(folder, failure);
  std::ofstream stream(before, std::ios::binary);
  stream << root.dump(kIndent, ' ', false, Json::error_handler_t::replace) << '\n';
  stream.close();
  if (stream) std::filesystem::rename(before, file, failure);
  if (stream && !failure) return;
  std::filesystem::remove(before, failure);
  throw Error(ErrorNumber::PathAccess, "Settings", "Settings file " + file + " cannot be written");
}

}  // namespace

Settings::Settings() : files_(filesOfMachine()) {}

std::optional<std::string> Settings::find(std::string_view key, std::string_view name) const {
  for (const std::string& file : files_) {
    Json root = readFile(file);
    Json* place = findKey(root, key);
    if (!place) continue;
    const auto found = findIn(*place, name);
    if (found == place->end()) continue;
    if (!found->is_string())
      failFormat(file, "'" + std::string(key) + "', '" + std::string(name) + "' is no text");
    return found->get<std::string>();
  }
  return std::nullopt;
}

std::string Settings::value(std::string_view key, std::string_view name) const {
  return find(key, name).value_or("");
}

void Settings::apply(const std::vector<Change>& changes) const {
  const std::string& file = files_.front();
  const Json before = readFile(file);
  Json root = before;
  for (const Change& change : changes) applyChange(root, change, file);
  if (root != before) writeFile(file, root);
}

}  // namespace ondrel
