#include "services/db_tool.h"

namespace ondrel {
namespace {

constexpr const char* kDatabaseKey = "Software\\Ondrel Corporation\\OVS\\DB\\";
constexpr const char* kDefault = "default";
constexpr const char* kTraining = "training";

}  // namespace

DbOptionRef DbTool::GetDbOption(const std::string& name) const {
  auto option = std::make_shared<DbOption>();
  const std::string key = kDatabaseKey + name;
  option->DbName = name;
  option->ConnectionString = settings_.value(key, "Connection String");
  option->CommandLine = settings_.value(key, "Command Line");
  return option;
}

std::vector<DbOptionRef> DbTool::GetDbOptions() const {
  return {GetDbOption(kDefault), GetDbOption(kTraining)};
}

std::string DbTool::GetDefaultConnectionString() const {
  return GetDbOption(kDefault)->ConnectionString;
}

std::string DbTool::GetDefaultCommandLine() const {
  return GetDbOption(kDefault)->CommandLine;
}

}  // namespace ondrel
