#include <spawn.h>
#include <sys/wait.h>

#include <csignal>
#include <future>
#include <thread>
#include <utility>
#include <vector>

#include "data/embedded/embedded_store.h"
#include "host_fixture.h"
#include "support/folders.h"

extern char** environ;

namespace ondrel {
namespace {

// The program itself, on a database file: what it does when it is told to end, and when it is killed.
class ServeTest : public HostTest {
 protected:
  ServeTest() : database(folder / "store.db") {
    createDatabaseFile(database, StoreContents::Sample);
    page("add.js",
         "Session.lines = (Session.lines || '') + Request.form.line; Response.write(Session.lines);");
    page("slow.js", "var end = Date.now() + 300; while (Date.now() < end) {} Response.write('finished');");
  }
  ~ServeTest() override {
    if (process) end(SIGKILL);
  }

  void serve() {
    int output[2] = {};
    ASSERT_EQ(::pipe(output), 0);
    std::vector<std::string> words = {
        buildPath("ondrel"), "serve",       "--listen",
        "127.0.0.1:0",       "--db",        "Driver=Embedded;Database=" + database,
        "--pages",           options.pages, "--log",
        folder / "log"};
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, output[0]);
    ASSERT_EQ(posix_spawn(&process, words[0].c_str(), &actions, nullptr, arguments.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    ::close(output[1]);
    std::string address;
    for (char c = 0; ::read(output[0], &c, 1) == 1 && c != '\n';) address += c;
    ::close(output[0]);
    ASSERT_THAT(address, testing::StartsWith("http://127.0.0.1:"));
    port = std::stoi(address.substr(address.rfind(':') + 1));
  }

  int end(int signal) {
    int status = 0;
    ::kill(process, signal);
    ::waitpid(std::exchange(process, 0), &status, 0);
    return status;
  }

  std::string database;
  pid_t process = 0;
};

TEST_F(ServeTest, TerminationFinishesWhatIsInProgress) {
  serve();
  auto body = std::async(std::launch::async, [this] { return Browser(port).get("/slow").body; });
  awaitBusy(1);
  EXPECT_EQ(end(SIGTERM), 0);
  EXPECT_EQ(body.get(), "finished");
}

TEST_F(ServeTest, AKilledHostLosesNoWork) {
  serve();
  Browser browser = visitor();
  browser.post("/add", "line=a");
  browser.post("/add", "line=b");
  end(SIGKILL);
  serve();
  browser.moveTo(port);
  EXPECT_EQ(browser.post("/add", "line=c").body, "abc");
}

}  // namespace
}  // namespace ondrel
