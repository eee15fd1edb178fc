#include "platform/files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "base/error.h"
#include "platform/delimited_text.h"
#include "platform/guid.h"
#include "platform/xml.h"

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
  std::string folder = (std::filesystem::temp_directory_path() / "filesXXXXXX").string();
  ASSERT_NE(::mkdtemp(folder.data()), nullptr);
  std::filesystem::create_directory(folder + "/c");
  const Files files(folder);
  files.write("C:\\a", "first text");
  files.write("C:\\a", "second");
  files.rename("C:\\a", "C:\\b");
  EXPECT_FALSE(files.exists("C:\\a"));
  EXPECT_EQ(files.read("C:\\b", 100), "second");
  EXPECT_EQ(files.read("C:\\b", 3), "sec");
  EXPECT_FALSE(files.exists("C:\\"));
  files.makeFolder("c:\\Letters\\Store");
  files.write("C:\\LETTERS\\store\\Note.rtf", "note");
  EXPECT_EQ(files.read("c:\\letters\\STORE\\note.RTF", 100), "note");
  EXPECT_EQ(files.hostPath("c:\\letters\\new.rtf"), folder + "/c/Letters/new.rtf");
  EXPECT_EQ(files.read("C:\\", 10), std::nullopt);
  EXPECT_TRUE(files.remove("C:\\b"));
  EXPECT_FALSE(files.remove("C:\\b"));
  EXPECT_THROW(files.rename("C:\\b", "C:\\a"), Error);
  EXPECT_THROW(files.write("Q:\\b", ""), Error);
  std::filesystem::remove_all(folder);
}

TEST(Guids, HaveTheirRegistryFormAndDiffer) {
  const std::string guid = newGuid();
  ASSERT_EQ(guid.size(), 38u);
  EXPECT_EQ(guid.find_first_not_of("{}-0123456789ABCDEF"), std::string::npos);
  EXPECT_EQ(guid[15], '4');
  EXPECT_NE(guid, newGuid());
}

TEST(Xml, GivesTheTextOfAnElement) {
  XmlDocument document;
  ASSERT_TRUE(document.loadXML("<?xml version=\"1.0\"?><a><b> x<c>y</c>&amp; </b><b>second</b><e/></a>"));
  EXPECT_EQ(document.textOf("//a/b"), "xy&");
  EXPECT_EQ(document.textOf("//a/e"), "");
  EXPECT_EQ(document.textOf("//a/d"), std::nullopt);
  for (const char* text : {"", "a", "<a>", "<a/>b", "<a/><b/>", "<a></b>"}) {
    EXPECT_FALSE(document.loadXML(text)) << text;
    EXPECT_EQ(document.textOf("//a"), std::nullopt);
  }
}

}  // namespace
}  // namespace ondrel
