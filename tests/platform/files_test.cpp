#include "platform/files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/guid.h"
#include "support/error_of.h"
#include "support/temporary_folder.h"

namespace ondrel {
namespace {

TEST(Files, ShopPathsLieInTheFoldersOfTheirDrives) {
  const Files files("/drives");
  const std::pair<const char*, const char*> cases[] = {{"C:\\xc\\in\\a.req", "/drives/c/xc/in/a.req"},
                                                       {"d:/x\\..\\..\\..\\etc\\a", "/drives/d/etc/a"},
                                                       {"\\tmp\\.\\a", "/tmp/a"},
                                                       {"xc\\a", "xc/a"},
                                                       {"C:", "/drives/c/"},
                                                       {"", ""}};
  for (const auto& [path, host] : cases) EXPECT_EQ(files.hostPath(path), host);
}

TEST(Files, AreWrittenRenamedReadAndRemoved) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.path + "/c");
  const Files files(folder.path);
  files.write("C:\\a", "first text");
  files.write("C:\\a", "second");
  files.rename("C:\\a", "C:\\b");
  EXPECT_FALSE(files.exists("C:\\a"));
  EXPECT_EQ(files.read("C:\\b", 100), "second");
  EXPECT_EQ(files.read("C:\\b", 3), "sec");
  EXPECT_EQ(files.read("C:\\", 10), std::nullopt);
  files.makeFolder("c:\\Letters\\Store");
  files.write("C:\\LETTERS\\store\\Note.rtf", "note");
  EXPECT_EQ(files.read("c:\\letters\\STORE\\note.RTF", 100), "note");
  EXPECT_EQ(files.hostPath("c:\\letters\\new.rtf"), folder.path + "/c/Letters/new.rtf");
  EXPECT_TRUE(files.remove("C:\\b"));
  EXPECT_FALSE(files.remove("C:\\b"));
  EXPECT_EQ(errorOf([&] { files.rename("C:\\b", "C:\\a"); }), static_cast<int>(ErrorNumber::FileNotFound));
  EXPECT_EQ(errorOf([&] { files.write("Q:\\b", ""); }), static_cast<int>(ErrorNumber::PathAccess));
}

TEST(Guids, HaveTheirRegistryFormAndDiffer) {
  const std::string guid = newGuid();
  ASSERT_EQ(guid.size(), 38u);
  EXPECT_EQ(guid.find_first_not_of("{}-0123456789ABCDEF"), std::string::npos);
  EXPECT_EQ(guid[15], '4');
  EXPECT_NE(guid, newGuid());
}

}  // namespace
}  // namespace ondrel
