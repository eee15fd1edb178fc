#include "services/db_tool.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/temporary_folder.h"

namespace ondrel {
namespace {

TEST(DbTool, ReadsTheNamedDatabasesOfTheMachine) {
  const TemporaryFolder folder;
  const std::string file = folder.path + "/settings.json";
  std::ofstream(file) << R"({"Software": {"Ondrel Corporation": {"OVS": {"DB": {
      "default": {"Connection String": "Data Source=counter", "Command Line": "osql -d counter"},
      "Training": {"Connection String": "Data Source=training"}}}}}})";
  const DbTool tool{Settings({file})};
  const std::vector<DbOptionRef> options = tool.GetDbOptions();
  ASSERT_EQ(options.size(), 2u);
  EXPECT_EQ(options[0]->DbName, "default");
  EXPECT_EQ(options[0]->ConnectionString, "Data Source=counter");
  EXPECT_EQ(options[0]->CommandLine, "osql -d counter");
  EXPECT_EQ(options[1]->DbName, "training");
  EXPECT_EQ(options[1]->ConnectionString, "Data Source=training");
  EXPECT_EQ(options[1]->CommandLine, "");
  EXPECT_EQ(tool.GetDefaultConnectionString(), "Data Source=counter");
  EXPECT_EQ(tool.GetDefaultCommandLine(), "osql -d counter");
  EXPECT_EQ(tool.GetDbOption("elsewhere")->DbName, "elsewhere");
  EXPECT_EQ(tool.GetDbOption("elsewhere")->ConnectionString, "");
}

}  // namespace
}  // namespace ondrel
