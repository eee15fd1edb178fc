#include "platform/settings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "support/error_of.h"
#include "support/temporary_folder.h"

namespace ondrel {
namespace {

class SettingsTest : public ::testing::Test {
 protected:
  std::string file(const std::string& name, const std::string& text) {
    std::ofstream(folder.path + "/" + name) << text;
    return folder.path + "/" + name;
  }
  TemporaryFolder folder;
};

TEST_F(SettingsTest, TheFirstFileWithTheValueCounts) {
  const Settings settings({file("user.json", R"({"Software": {"Shop": {"Color": "red"}}})"),
                           file("system.json", R"({"software": {"shop": {"color": "blue", "Size": "9"}}})")});
  EXPECT_EQ(settings.value("Software\\Shop", "Color"), "red");
  EXPECT_EQ(settings.value("SOFTWARE\\shop\\", "size"), "9");
  EXPECT_EQ(settings.find("Software\\Shop", "Weight"), std::nullopt);
  EXPECT_EQ(settings.value("Software\\Shop\\Color", "Size"), "");
  EXPECT_EQ(Settings({folder.path + "/none.json"}).value("Software", "x"), "");
}

TEST_F(SettingsTest, ChangesKeepTheOtherValuesAndGoToTheFirstFile) {
  const std::string system = file("system.json", R"({"A": {"x": "system"}})");
  const Settings settings({folder.path + "/new/folder/user.json", system});
  settings.apply({{"A\\B\\C", {{"x", "1"}, {"y", "2 \"quoted\" Zoë"}}}, {"a\\b", {{"z", "3"}}}});
  settings.apply({{"A\\b\\c", {{"X", "4"}}}});
  EXPECT_EQ(settings.value("A\\B\\C", "x"), "4");
  EXPECT_EQ(settings.value("A\\B\\C", "y"), "2 \"quoted\" Zoë");
  settings.apply({{"A\\B\\C", {}}, {"A\\Unknown", {}}});
  EXPECT_EQ(settings.value("A\\B\\C", "y"), "");
  EXPECT_EQ(settings.value("A\\B", "z"), "3");
  settings.apply({{"A\\B", {}}});
  EXPECT_EQ(settings.value("A", "x"), "system");
  EXPECT_EQ(std::filesystem::file_size(settings.files()[0]), 3u) << "{} and the end of the line";
  const Settings spaced({file("spaced.json", "{   }"), system});
  spaced.apply({{"A", {}}});
  EXPECT_EQ(std::filesystem::file_size(spaced.files()[0]), 5u);  // not written anew
}

TEST_F(SettingsTest, AFileOfAnotherFormIsAnError) {
  for (const char* text : {"", "{", "[]", R"({"A": {"x": 1}})", R"({"a": 1e999})"}) {
    const Settings settings({file("bad.json", text)});
    EXPECT_EQ(errorOf([&] { settings.value("A", "x"); }), 321) << text;
  }
  EXPECT_EQ(errorOf([&] { Settings({folder.path}).value("A", "x"); }), 75);
  const Settings settings({file("value.json", R"({"A": "text"})")});
  EXPECT_EQ(errorOf([&] { settings.apply({{"A\\B", {{"x", "1"}}}}); }), 321);
}

TEST(SettingsFiles, AreThoseOfTheEnvironmentTheUserAndTheSystem) {
  const std::string file = "/ondrel/settings.json";
  using Files = std::vector<std::string>;
  for (const char* name : {"ONDREL_SETTINGS", "XDG_CONFIG_HOME"}) ::unsetenv(name);
  ::setenv("HOME", "/home/zoe", 1);
  ::setenv("XDG_CONFIG_DIRS", "/a:/b", 1);
  EXPECT_EQ(Settings().files(), (Files{"/home/zoe/.config" + file, "/a" + file, "/b" + file}));
  ::unsetenv("XDG_CONFIG_DIRS");
  ::setenv("XDG_CONFIG_HOME", "/config", 1);
  EXPECT_EQ(Settings().files(), (Files{"/config" + file, "/etc/xdg" + file}));
  ::setenv("ONDREL_SETTINGS", "/only.json", 1);
  EXPECT_EQ(Settings().files(), Files{"/only.json"});
  ::unsetenv("ONDREL_SETTINGS");
}

}  // namespace
}  // namespace ondrel
