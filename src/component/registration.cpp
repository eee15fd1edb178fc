#include "component/registration.h"

#include <vector>

#include "automation/class_factory.h"

namespace ondrel {
namespace {

const std::string kClasses = "Software\\Classes\\";

std::string braced(std::string_view id) {
  return "{" + std::string(id) + "}";
}

std::string fullName(const PublicClass& row) {
  return std::string(kProjectName) + "." + std::string(row.name);
}

// What is entered for the classes.
std::vector<Settings::Change> entries(const std::string& library) {
  const std::string typeLibrary = braced(kTypeLibraryId);
  std::vector<Settings::Change> result = {
      {kClasses + "TypeLib\\" + typeLibrary,
       {{"Name", std::string(kProjectName)},
        {"Version", std::to_string(kTypeLibraryMajor) + "." + std::to_string(kTypeLibraryMinor)}}}};
  for (const PublicClass& row : publicClasses()) {
    result.push_back({kClasses + fullName(row), {{"CLSID", braced(row.classId)}}});
    result.push_back({kClasses + "CLSID\\" + braced(row.classId),
                      {{"ProgID", fullName(row)},
                       {"InprocServer32", library},
                       {"Interface", braced(row.interfaceId)},
                       {"TypeLib", typeLibrary}}});
    result.push_back(
        {kClasses + "Interface\\" + braced(row.interfaceId), {{"Name", "_" + std::string(row.name)}}});
  }
  return result;
}

}  // namespace

void registerClasses(const Settings& settings, const std::string& library) {
  settings.apply(entries(library));
}

void unregisterClasses(const Settings& settings) {
  std::vector<Settings::Change> removals = entries("");
  for (Settings::Change& change : removals) change.values.clear();
  settings.apply(removals);
}

std::optional<std::string> registeredClassId(const Settings& settings, std::string_view name) {
  return settings.find(kClasses + std::string(name), "CLSID");
}

}  // namespace ondrel
