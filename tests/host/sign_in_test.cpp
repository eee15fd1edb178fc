#include <thread>

#include "host/clerks.h"
#include "host/secrets.h"
#include "host_fixture.h"

namespace ondrel {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class SignInTest : public HostTest {};

TEST_F(SignInTest, ClerksSignInWithinLimitedTries) {
  page("index.js", "Response.write(Request.clerk.name, ' ', Request.token);");
  page("out.js", "Server.signOut(); Response.redirect('/');");
  options.clerks = folder / "clerks";
  Clerks::enter(options.clerks, {"7", "Ann"}, "2468");
  Clerks::enter(options.clerks, {"8", "Bo"}, "1357");
  EXPECT_EQ(std::filesystem::status(options.clerks).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  start();
  Browser browser(port);
  EXPECT_EQ(browser.get("/").get_header_value("Location"), "/sign_in");
  const std::string form = browser.get("/sign_in").body;
  const std::string marker = "name='_token' value='";
  browser.token = form.substr(form.find(marker) + marker.size(), 64);
  EXPECT_EQ(browser.post("/", "").status, 401);
  EXPECT_EQ(browser.post("/sign_in", "clerk=7&pin=1357").status, 403);
  const std::string before = browser.cookie;
  EXPECT_EQ(browser.post("/sign_in", "clerk=7&pin=2468").status, 303);
  EXPECT_NE(browser.cookie, before);
  EXPECT_THAT(browser.get("/").body, StartsWith("Ann "));
  EXPECT_EQ(browser.get("/out").status, 303);
  EXPECT_EQ(browser.get("/").get_header_value("Location"), "/sign_in");

  Browser guesser(port);
  const std::string other = guesser.get("/sign_in").body;
  guesser.token = other.substr(other.find(marker) + marker.size(), 64);
  for (const char* pin : {"0000", "1111", "2222", "3333", "4444"})
    EXPECT_EQ(guesser.post("/sign_in", std::string("clerk=8&pin=") + pin).status, 403);
  EXPECT_EQ(guesser.post("/sign_in", "clerk=8&pin=1357").status, 429);
  EXPECT_THAT(log(), Not(HasSubstr("1357")));
}

// Who knows the id from before a sign-in, and asks while it is under way, gets nothing of the new session.
TEST_F(SignInTest, RequestBehindASignInKeepsOutside) {
  page("sign_in.js", R"(
    if (Request.method === "POST") {
      Server.signIn("7", "2468");
      var end = Date.now() + 400;
      while (Date.now() < end) {}
    }
    Response.write(Request.token);)");
  options.clerks = folder / "clerks";
  Clerks::enter(options.clerks, {"7", "Ann"}, "2468");
  start();
  Browser clerk(port), onlooker(port);
  clerk.token = clerk.get("/sign_in").body;
  onlooker.cookie = clerk.cookie;
  std::thread signingIn([&] { clerk.token = clerk.post("/sign_in", "").body; });
  awaitBusy(1);
  const httplib::Response seen = onlooker.get("/sign_in");
  signingIn.join();
  EXPECT_EQ(seen.status, 403);
  EXPECT_FALSE(seen.has_header("Set-Cookie"));
  EXPECT_NE(clerk.cookie, onlooker.cookie);
  EXPECT_EQ(clerk.get("/sign_in").body, clerk.token);
}

TEST_F(SignInTest, OnlyWhoHasSignedInKeepsAPlaceAndOnlyUntilSigningOut) {
  page("sign_in.js",
       "Response.write(Request.method === 'POST' ? Server.signIn('7', Request.form.pin) : Request.token);");
  page("out.js", "Server.signOut(); var end = Date.now() + 300; while (Date.now() < end) {}");
  page("index.js", "Response.write('in as ', Request.clerk.id);");
  options.clerks = folder / "clerks";
  options.limits.sessions = 2;
  options.limits.looking = std::chrono::milliseconds(1);
  Clerks::enter(options.clerks, {"7", "Ann"}, "2468");
  start();
  Browser clerk(port), guesser(port), next(port), same(port);
  clerk.token = clerk.get("/sign_in").body;
  clerk.post("/sign_in", "pin=2468");
  guesser.token = guesser.get("/sign_in").body;
  EXPECT_EQ(guesser.post("/sign_in", "pin=1111").body, "wrong");
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  EXPECT_EQ(next.get("/sign_in").status, 200) << "in the place of the guesser";
  EXPECT_EQ(clerk.get("/").body, "in as 7");
  same.cookie = clerk.cookie;
  awaitBusy(0);
  std::thread leaving([&] { clerk.get("/out"); });
  awaitBusy(1);
  EXPECT_EQ(same.get("/").status, 403) << "behind a sign-out";
  leaving.join();
}

TEST_F(SignInTest, BeyondThisMachineClerksAreNeeded) {
  options.address = "0.0.0.0";
  EXPECT_THROW(PageHost{options}, Error);
}

TEST(PinTest, HashesDifferAndMatchTheirPinOnly) {
  const std::string hash = hashPin("2468");
  EXPECT_NE(hash, hashPin("2468"));
  EXPECT_TRUE(isPinOf("2468", hash));
  for (const std::string& wrong : {std::string("2469"), std::string(), hash})
    EXPECT_FALSE(isPinOf(wrong, hash));
  for (const char* broken : {"", "2468", "scrypt-16384-8-1$", "scrypt-16384-8-1$ab$"})
    EXPECT_FALSE(isPinOf("2468", broken));
}

}  // namespace
}  // namespace ondrel
