#include "host/outlets.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <chrono>

#include "host_fixture.h"
#include "support/error_of.h"
#include "support/temporary_folder.h"

namespace ondrel {
namespace {

using ::testing::HasSubstr;

class OutletsTest : public ::testing::Test {
 protected:
  std::string program(const std::string& name, const std::string& text) {
    std::string path = folder.path + "/" + name;
    std::ofstream(path) << "#!/bin/sh\n" << text << "\n";
    ::chmod(path.c_str(), 0700);
    return path;
  }
  std::string contents(const std::string& name) {
    std::ifstream stream(folder.path + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  TemporaryFolder folder;
  const std::string bytes = std::string("\x1B@\0\xFF end\n", 9);
};

TEST_F(OutletsTest, AFileGetsAllBytesBehindWhatItHolds) {
  deliver("file:" + folder.path + "/out", bytes);
  deliver("file:" + folder.path + "/out", bytes);
  EXPECT_EQ(contents("out"), bytes + bytes);
}

TEST_F(OutletsTest, AProgramGetsThemAsItsInputAndSaysWhetherItTookThem) {
  deliver("command:" + program("take", "cat > " + folder.path + "/out"), bytes);
  EXPECT_EQ(contents("out"), bytes);
  EXPECT_THAT(descriptionOf([&] { deliver("command:" + program("refuse", "exit 3"), bytes); }),
              HasSubstr("status 3"));
  const std::string much(1 << 20, 'x');
  deliver("command:" + program("ignore", "exit 0"), much);
}

TEST_F(OutletsTest, NobodyIsWaitedForTooLong) {
  const std::string slow = "command:" + program("slow", "exec sleep 60");
  EXPECT_THAT(descriptionOf([&] { deliver(slow, bytes, std::chrono::milliseconds(100)); }),
              HasSubstr("did not end in time"));
}

TEST_F(OutletsTest, WhatIsNotThereIsSaid) {
  EXPECT_THAT(descriptionOf([&] { deliver("device:" + folder.path + "/none", bytes); }),
              HasSubstr("cannot be opened"));
  EXPECT_THAT(descriptionOf([&] { deliver("tcp:127.0.0.1:1", bytes); }), HasSubstr("does not answer"));
  EXPECT_THAT(descriptionOf([&] { deliver("smoke:signal", bytes); }), HasSubstr("An outlet is"));
}

class DeliveringTest : public HostTest {};

TEST_F(DeliveringTest, APageDeliversBytesToAnOutletThatTheCommandLineNames) {
  page("print.js", "Server.deliver('printer', '\\x1B@\\x00\\xFF'); Response.write('done');");
  page("other.js", "Server.deliver('kitchen', 'x');");
  page(
      "pin.js",
      "var hash = Server.hashPin('4711'); Response.write([Server.isPin('4711', hash), Server.isPin('4712', hash)].join());");
  options.settings["printer"] = "file:" + (folder / "printed").string();
  start();
  Browser browser = visitor();
  EXPECT_EQ(browser.post("/print", "").body, "done");
  std::ifstream stream(folder / "printed", std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), std::string("\x1B@\0\xFF", 4));
  EXPECT_EQ(browser.post("/other", "").status, 500);
  EXPECT_EQ(browser.get("/pin").body, "true,false");
}

}  // namespace
}  // namespace ondrel
