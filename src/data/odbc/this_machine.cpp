#include "data/odbc/this_machine.h"

#include <odbcinst.h>
#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <mutex>

#include "base/text.h"

namespace ondrel {
namespace {

constexpr size_t kSettingLength = 1024;

// The driver manager reads its files in a buffer that all threads share.
std::string setting(const char* file, std::string_view section, std::string_view key) {
  static std::mutex mutex;
  const std::scoped_lock guard(mutex);
  std::array<char, kSettingLength> value{};
  SQLGetPrivateProfileString(std::string(section).c_str(), std::string(key).c_str(), "", value.data(),
                             static_cast<int>(value.size()), file);
  return value.data();
}

std::string sourceSetting(std::string_view source, std::string_view key) {
  return setting("odbc.ini", source, key);
}

std::string driverLibrary(std::string_view driver) {
  const std::string library = setting("odbcinst.ini", driver, "Driver64");
  return library.empty() ? setting("odbcinst.ini", driver, "Driver") : library;
}

// The names stand one after the other, each with a zero behind it.
std::vector<std::string> installedDrivers() {
  std::array<char, 16 * kSettingLength> names{};
  WORD length = 0;
  std::vector<std::string> result;
  if (!SQLGetInstalledDrivers(names.data(), static_cast<WORD>(names.size()), &length)) return result;
  for (const char* name = names.data(); *name != '\0'; name += result.back().size() + 1)
    result.emplace_back(name);
  return result;
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

// Where FreeTDS looks for a user's own file, whatever HOME says.
std::string homeOfUser() {
  std::array<char, 4 * kSettingLength> room{};
  passwd entry{};
  passwd* found = nullptr;
  const int code = getpwuid_r(getuid(), &entry, room.data(), room.size(), &found);
  return code == 0 && found ? found->pw_dir : "";
}

bool dumps(const std::string& configuration) {
  std::ifstream file(configuration);
  for (std::string line; std::getline(file, line);) {
    std::string key = toLower(line.substr(0, line.find('=')));
    std::erase_if(key, [](char c) { return c == ' ' || c == '\t'; });
    if (key == "dumpfile") return true;
  }
  return false;
}

}  // namespace

const OdbcMachine& thisMachine() {
  static const OdbcMachine machine{installedDrivers(), sourceSetting, driverLibrary};
  return machine;
}

std::string trafficLog() {
  for (const char* name : {"TDSDUMP", "TDSDUMPCONFIG"})
    if (std::getenv(name)) return std::string("The environment variable ") + name;
  for (const std::string& file : {environment("FREETDSCONF"), environment("FREETDS") + "/etc/freetds.conf",
                                  environment("HOME") + "/.freetds.conf", homeOfUser() + "/.freetds.conf",
                                  std::string("/etc/freetds/freetds.conf"), std::string("/etc/freetds.conf"),
                                  std::string("/usr/local/etc/freetds.conf")})
    if (dumps(file)) return "The dump file of " + file;
  return "";
}

}  // namespace ondrel
