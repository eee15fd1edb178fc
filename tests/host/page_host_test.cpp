#include <future>
#include <thread>
#include <vector>

#include "host_fixture.h"

namespace ondrel {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class PageHostTest : public HostTest {};

TEST_F(PageHostTest, PageSeesRequestAndAnswers) {
  page("echo.js", R"(
    Response.header("X-Seen", Request.headers["x-mark"]);
    if (Request.method === "POST" && Request.json)
      Response.json({n: Request.json.list[1] + 1, clerk: Request.clerk, number: Request.number});
    else if (Request.method === "POST")
      Response.write(Request.form.a, "|", Request.form.token === undefined, "|", Request.body);
    else if (Request.query.go) Response.redirect("/echo?a=1");
    else {
      Response.status = 203;
      Response.write(Request.method, " ", Request.path, " ", Request.query.a, " ", Server.HTMLEncode(Request.query.b),
                     " ", Request.query.__proto__, null, undefined);
    })");
  start();
  Browser browser = visitor();
  const auto read = browser.client->Get("/echo?a=1&a=2&b=%3Cb%3E%20%22&c", {{"X-Mark", "m"}});
  EXPECT_EQ(read->status, 203);
  EXPECT_EQ(read->body, "GET /echo 1, 2 &lt;b&gt; &quot; ");
  EXPECT_EQ(read->get_header_value("X-Seen"), "m");
  EXPECT_EQ(browser.get("/echo?go=1").get_header_value("Location"), "/echo?a=1");
  EXPECT_EQ(browser.post("/echo", "a=x%26y&_token=unused").body, "x&y|true|");
  const httplib::Headers headers = {{"Cookie", "ondrel_session=" + browser.cookie},
                                    {"X-Request-Token", browser.token},
                                    {"X-Request-Number", "n-1"}};
  const auto json =
      browser.client->Post("/echo", headers, R"({"list":[1,41]})", "application/json; charset=utf-8");
  EXPECT_EQ(json->body, R"({"n":42,"clerk":null,"number":"n-1"})");
  EXPECT_EQ(json->get_header_value("Content-Type"), "application/json");
  EXPECT_EQ(
      browser.client->Post("/echo", {headers.begin(), headers.begin()}, "{", "application/json")->status,
      403);
  httplib::Headers unnumbered = headers;
  unnumbered.erase("X-Request-Number");
  EXPECT_EQ(browser.client->Post("/echo", unnumbered, R"({"list":)", "application/json")->status, 400);
}

TEST_F(PageHostTest, WhatNobodyTypesDoesNotComeIn) {
  page(
      "echo.js",
      "Response.write(encodeURIComponent(Request.query.a), ' ', encodeURIComponent(Server.HTMLEncode('a\\ud83d\\ude00'.substr(0, 2))));");
  start();
  EXPECT_EQ(Browser(port).get("/echo?a=a%00%01b%0d%0a%09%7f%ffc%F0%9F%98%80").body,
            "ab%0D%0A%09c%F0%9F%98%80 a");
}

TEST_F(PageHostTest, SessionKeepsLibraryObjectsAndIsItsOwn) {
  page("shared/ticket.js", R"(
    exports.open = function () {
      var invoice = CreateObject("OndrelCorpComponents.invoice");
      invoice.DBConnectionString = Database.connectionString;
      invoice.isAdd = true; invoice.addOrEdit = "add"; invoice.custSeqNumber = 1; invoice.priceListId = 1;
      invoice.setStoreDays(1);
      invoice.LoadDefaults();
      return invoice;
    };)");
  page("ticket.js", R"(
    if (Request.method === "POST") {
      if (!Session.invoice) Session.invoice = Server.include("shared/ticket.js").open();
      Session.invoice.addItem(Number(Request.form.item), 1, Number(Request.form.quantity));
    }
    Response.write(Session.invoice ? Session.invoice.lineItems.RecordCount : "none", " ", Server.now().getHours());)");
  start();
  Browser first = visitor(), second = visitor();
  EXPECT_EQ(first.get("/ticket").body, "none 10");
  first.post("/ticket", "item=201&quantity=3");
  const std::string two = first.post("/ticket", "item=103&quantity=1").body;
  EXPECT_EQ(first.get("/ticket").body, two);
  EXPECT_NE(two, "none 10");
  EXPECT_EQ(second.get("/ticket").body, "none 10");
  EXPECT_NE(first.cookie, second.cookie);
  EXPECT_THAT(log(),
              AllOf(ContainsRegex(R"("path":"/ticket","status":200.*"page_ms":[0-9.]+,"library_ms":[0-9.]+,)"
                                  R"("database_ms":[0-9.]+,"statements":[1-9])"),
                    Not(HasSubstr(first.cookie)), Not(HasSubstr(first.token))));
}

TEST_F(PageHostTest, ChangedPagesAreReadAnew) {
  page("shared/name.js", "exports.name = 'old';");
  page("hello.js", "var shared = Server.include('shared/name.js'); Response.write('page ', shared.name);");
  start();
  Browser browser(port);
  EXPECT_EQ(browser.get("/hello").body, "page old");
  page("shared/name.js", "exports.name = 'new one';");
  EXPECT_EQ(browser.get("/hello").body, "page new one");
  page("hello.js", "Response.write('changed')");
  EXPECT_EQ(browser.get("/hello").body, "changed");
  std::filesystem::remove(options.pages / "hello.js");
  EXPECT_EQ(browser.get("/hello").status, 404);
}

TEST_F(PageHostTest, FailuresTellTheLogAndNotTheBrowser) {
  page("script.js", "\n\nvar secret = 1;\nmissing.member();");
  page("library.js", "Response.write('half');\nDatabase.query('select 4111111111111111 from Nowhere');");
  page("syntax.js", "var = 1;");
  page("status.js", "Response.status = 99;");
  page("header.js", "Response.header('Set-Cookie', 'a=b');");
  page("split.js", "Response.header('X-A', 'b\\r\\nSet-Cookie: c');");
  page("away.js", "Response.redirect('//elsewhere.example/');");
  page("include.js", "Server.include('../log');");
  page("printing.js", "print('seen', 4111111111111111); Response.write('ok');");
  start();
  Browser browser(port);
  int number = 0;
  for (const char* path :
       {"/script", "/library", "/syntax", "/status", "/header", "/split", "/away", "/include"}) {
    const httplib::Response answer = browser.get(path);
    EXPECT_EQ(answer.status, 500) << path;
    EXPECT_EQ(answer.body,
              "Something went wrong. The log has it as number " + std::to_string(++number) + ".\n");
  }
  EXPECT_EQ(browser.get("/printing").body, "ok");
  EXPECT_THAT(log(),
              AllOf(HasSubstr("(script.js:4)"), HasSubstr("(library.js:2)"), HasSubstr("(syntax.js:1)"),
                    HasSubstr("(header.js:1)"), HasSubstr(R"("printed":"seen ************1111\u000a")"),
                    Not(HasSubstr("4111111111111111"))));
}

TEST_F(PageHostTest, WhoReadsARefusalGetsTheFoldersPageAroundIt) {
  page("assets/refused.html", "<h1>{{message}}</h1>");
  page(
      "bad.js",
      "Response.status = 404; Response.header('Content-Type', 'text/plain'); Response.write('no <such> thing');");
  start();
  Browser browser(port);
  const httplib::Headers reading = {{"Accept", "text/html,*/*"}};
  EXPECT_EQ(browser.client->Get("/nowhere", reading)->body, "<h1>There is no such page.</h1>");
  EXPECT_EQ(browser.client->Get("/bad", reading)->body, "<h1>no &lt;such&gt; thing</h1>");
  EXPECT_EQ(browser.get("/nowhere").body, "There is no such page.\n");
}

// After an error of the database a transaction stays open, what is written then joins it, and its lock would
// stop everybody else.
TEST_F(PageHostTest, OpenTransactionDoesNotOutliveItsRequest) {
  page("broken.js", R"(
    try { Database.execute("update Nowhere set a = 1"); } catch (error) {}
    Database.execute("update Customer set firstName = 'A' where customerSequenceNumber = 1");)");
  page("write.js",
       "Database.execute(\"update Customer set firstName = 'B' where customerSequenceNumber = 2\");");
  start();
  Browser browser = visitor(), other = visitor();
  EXPECT_EQ(browser.post("/broken", "").status, 200);
  EXPECT_EQ(other.post("/write", "").status, 200);
  EXPECT_NE(scalar("select firstName from Customer where customerSequenceNumber = 1").toText(), "A");
  EXPECT_EQ(scalar("select firstName from Customer where customerSequenceNumber = 2").toText(), "B");
  EXPECT_THAT(log(), ContainsRegex(R"("path":"/broken".*"discarded":1)"));
}

// ---- who may ask, and for what

TEST_F(PageHostTest, NothingLeavesThePagesFolder) {
  page("index.js", "Response.write('index');");
  page("assets/style.css", "body{}");
  page("assets/notes.md", "not served");
  page("shared/layout.js", "exports.x = 1;");
  std::ofstream(folder / "outside.js") << "Response.write('outside')";
  std::filesystem::create_symlink(folder / "outside.js", options.pages / "linked.js");
  std::filesystem::create_symlink(folder, options.pages / "assets/up");
  start();
  Browser browser(port);
  EXPECT_EQ(browser.get("/").body, "index");
  EXPECT_EQ(browser.get("/index").body, "index");
  EXPECT_EQ(browser.get("/assets/style.css").get_header_value("Content-Type"), "text/css; charset=utf-8");
  for (const char* path : {"/../outside",
                           "/..%2foutside",
                           "/%2e%2e/outside",
                           "/assets/../index.js",
                           "/assets/..%2f..%2flog",
                           "/assets/up/log",
                           "/assets/up/outside.js",
                           "/linked",
                           "/shared/layout",
                           "/index.js",
                           "//index",
                           "/index/",
                           "/assets/",
                           "/assets/notes.md",
                           "/assets/.hidden.css",
                           "/index%00.js",
                           "/in\\dex",
                           "/C:/windows",
                           "/index%0a",
                           "/assets/style.css%00",
                           "/%ff%fe"}) {
    const std::string answer =
        sent("GET " + std::string(path) + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
    EXPECT_THAT(answer, AllOf(ContainsRegex("^HTTP/1.1 40[04]"), Not(HasSubstr("outside')")))) << path;
  }
}

TEST_F(PageHostTest, AnswersCarryTheSecurityHeaders) {
  page("index.js", "Response.write('x');");
  page("assets/style.css", "body{}");
  start();
  Browser browser(port);
  for (const char* path : {"/", "/missing", "/assets/style.css", "/health"}) {
    const auto answer = browser.client->Get(path);
    EXPECT_THAT(answer->get_header_value("Content-Security-Policy"),
                StartsWith("default-src 'none'; script-src 'self'"));
    EXPECT_EQ(answer->get_header_value("X-Content-Type-Options"), "nosniff") << path;
  }
  EXPECT_THAT(browser.client->Get("/")->get_header_value("Set-Cookie"),
              ContainsRegex("^ondrel_session=[0-9a-f]{32}; Path=/; HttpOnly; SameSite=Strict$"));
  const auto asset = browser.client->Get("/assets/style.css");
  const auto again =
      browser.client->Get("/assets/style.css", {{"If-None-Match", asset->get_header_value("ETag")}});
  EXPECT_EQ(again->status, 304);
}

TEST_F(PageHostTest, ForeignRequestsAreRefused) {
  page("save.js", "Session.count = (Session.count || 0) + 1; Response.write(Session.count);");
  start();
  Browser mine = visitor(), foreign = visitor();
  const std::string form = "application/x-www-form-urlencoded";
  const std::string cookie = "ondrel_session=" + mine.cookie;
  const auto status = [&](const httplib::Headers& headers, const std::string& body = "") {
    return mine.client->Post("/save", headers, body, form)->status;
  };
  EXPECT_EQ(status({{"Cookie", cookie}}), 403);
  EXPECT_EQ(status({{"Cookie", cookie}, {"X-Request-Token", foreign.token}}), 403);
  EXPECT_EQ(status({{"X-Request-Token", mine.token}}), 403);
  EXPECT_EQ(status({{"Cookie", "ondrel_session=" + std::string(32, '0')}, {"X-Request-Token", mine.token}}),
            403);
  EXPECT_EQ(status({{"Cookie", cookie}, {"X-Request-Token", mine.token}, {"Origin", "http://evil.example"}}),
            403);
  for (const char* name :
       {"evil.example", "[::1].evil.example", "[::1", "localhost:80.evil.example", "127.0.0.1.evil.example"})
    EXPECT_EQ(status({{"Cookie", cookie}, {"X-Request-Token", mine.token}, {"Host", name}}), 421) << name;
  EXPECT_EQ(status({{"Cookie", cookie}}, "_token=" + mine.token), 200);
  const std::string origin = "http://127.0.0.1:" + std::to_string(port);
  EXPECT_EQ(status({{"Cookie", cookie}, {"X-Request-Token", mine.token}, {"Origin", origin}}), 200);
  EXPECT_EQ(mine.client->Delete("/save", {{"Cookie", cookie}})->status, 405);
  // An id that the host did not give is not taken over.
  Browser planted(port);
  planted.cookie = std::string(32, 'a');
  planted.get("/token");
  EXPECT_NE(planted.cookie, std::string(32, 'a'));
}

TEST_F(PageHostTest, MalformedAndOversizedRequestsAreAnswered) {
  page("index.js", "Response.write('fine');");
  options.limits.http.bodyBytes = 1000;
  options.limits.http.headerBytes = 4000;
  options.limits.http.headTime = std::chrono::milliseconds(300);
  start();
  const std::string head = " HTTP/1.1\r\nHost: localhost\r\n";
  struct Case {
    std::string request;
    const char* answer;
  };
  std::string manyHeaders = "GET /" + head;
  for (int k = 0; k < 200; ++k)
    manyHeaders += "X-Filler-" + std::to_string(k) + ": " + std::string(20, 'x') + "\r\n";
  // clang-format off
  const std::string post = "POST /" + head;
  const std::vector<Case> cases = {
      {"GET /" + head + "Content-Length: 0\r\nConnection: close\r\n\r\n",            "200"},
      {"nonsense\r\n\r\n",                                                           "400"},
      {std::string("\0\1\2\xff\r\n\r\n", 8),                                         "400"},
      {"\r\nGET /" + head + "\r\n",                                                  "400"},
      {"GET / HTTP/9.9\r\n\r\n",                                                     "400"},
      {"GET / HTTP/1.1\r\nConnection: close\r\n\r\n",                                "421"},
      {"GET /" + std::string(2000, 'a') + head + "\r\n",                             "414"},
      {"GET /" + std::string(9000, 'a') + head + "\r\n",                             "4"},
      {"POST /" + head + "Content-Length: 5000\r\n\r\n" + std::string(5000, 'x'),    "413"},
      {"POST /" + head + "Content-Length: 999999999999\r\n\r\n",                     "413"},
      {"BREW /" + head + "\r\n",                                                     "405"},
      {"GET http://localhost/" + head + "\r\n",                                      "400"},
      {"GET / " + head + "\r\n",                                                     "400"},
      {"GET / HTTP/1.1\nHost: localhost\n\n",                                        "400"},
      {"GET /" + head + "X: a\rb\r\n\r\n",                                           "400"},
      {"GET /" + head + "X: a\r\n b\r\n\r\n",                                        "400"},
      {"GET /" + head + "X : a\r\n\r\n",                                             "400"},
      {"GET /" + head + "no colon\r\n\r\n",                                          "400"},
      {"GET /" + head + std::string("X: a\0b\r\n\r\n", 10),                         "400"},
      {"GET /" + head + "Host: other\r\n\r\n",                                       "400"},
      {post + "Content-Length: +1\r\n\r\nx",                                         "400"},
      {post + "Content-Length: 1, 1\r\n\r\nx",                                       "400"},
      {post + "Content-Length: 0x1\r\n\r\nx",                                        "400"},
      {post + "Content-Length: 1 1\r\n\r\nx",                                        "400"},
      {post + "Content-Length:\r\n\r\nx",                                            "400"},
      {post + "Content-Length : 1\r\n\r\nx",                                         "400"},
      {post + "Content-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\nx",            "411"},
      {post + "Content-Length: 1\r\nTransfer-Encoding: \tnone\r\n\r\nx",             "411"},
      {post + "Content-Length: 18446744073709551617\r\n\r\nx",                        "413"},
      {post + "Content-Length: 1\r\nExpect: more\r\n\r\nx",                          "417"},
      {"GET /" + head + "Content-Length: 18\r\n\r\nGET / HTTP/1.1\r\n\r\n",           "400"},
      {"POST /" + head + "Content-Length: 1\r\nContent-Length: 2\r\n\r\nxx",          "400"},
      {"POST /" + head + "Transfer-Encoding: chunked\r\n\r\n1\r\nx\r\n0\r\n\r\n",     "411"},
      {"POST /" + head + "Content-Encoding: deflate\r\nContent-Length: 1\r\n\r\nx",   "415"},
      {"GET /" + head + "Range: bytes=0-1,0-1,0-1\r\n\r\n",                          "416"},
      {manyHeaders + "\r\n",                                                         "431"},
      {"GET /" + head + "X-Never-Ending: ",                                          "4"},
  };
  // clang-format on
  for (const Case& each : cases)
    EXPECT_THAT(sent(each.request),
                AllOf(StartsWith("HTTP/1.1 " + std::string(each.answer)), Not(HasSubstr("\r\nHTTP/1.1 "))))
        << each.request.substr(0, 60);
  EXPECT_EQ(Browser(port).get("/").body, "fine");
}

// ---- limits

TEST_F(PageHostTest, FullHostSaysSoAtOnce) {
  page("index.js", "Response.write('in');");
  options.limits.sessions = 2;
  options.limits.http.connections = 3;
  start();
  for (int k = 0; k < 20; ++k) Browser(port).get("/");
  Browser first(port), second(port), third(port);
  for (Browser* browser : {&first, &second, &third})
    EXPECT_EQ(browser->get("/").body, "in") << "a look takes no place";
  EXPECT_EQ(first.get("/").body, "in");
  EXPECT_EQ(second.get("/").body, "in");
  const httplib::Response refused = third.get("/");
  EXPECT_EQ(refused.status, 503);
  EXPECT_EQ(refused.get_header_value("Retry-After"), "5");
  EXPECT_EQ(first.get("/").body, "in");
}

TEST_F(PageHostTest, ConnectionsThatWaitMakeRoomAndThoseAtWorkDoNot) {
  page("index.js", "Response.write('in');");
  page("slow.js", "var end = Date.now() + 300; while (Date.now() < end) {} Response.write('finished');");
  options.limits.http.connections = 1;
  start();
  Browser waiting(port);
  EXPECT_EQ(waiting.get("/").body, "in");
  EXPECT_EQ(Browser(port).get("/").body, "in") << "in place of the other";
  auto slow = std::async(std::launch::async, [this] {
    while (true) {
      const auto page = httplib::Client("127.0.0.1", port).Get("/slow");
      if (page && page->status == 200) return page->body;
    }
  });
  std::string answer;
  while (!answer.starts_with("HTTP/1.1 503"))
    answer = sent("GET /health HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
  EXPECT_EQ(slow.get(), "finished");
}

TEST_F(PageHostTest, AJournalFolderIsOneHosts) {
  options.journals = folder / "journals";
  start();
  EXPECT_THROW(PageHost{options}, Error);
  host.reset();
  EXPECT_NO_THROW(PageHost{options});
}

TEST_F(PageHostTest, OnlookersMakeRoomForOthersButNobodyWithWorkDoes) {
  page("work.js", "Session.n = (Session.n || 0) + 1; Response.write(Session.n);");
  options.limits.sessions = 2;
  options.limits.looking = std::chrono::milliseconds(0);
  start();
  Browser worker = visitor(), onlooker = visitor(), next = visitor();
  EXPECT_EQ(worker.post("/work", "").body, "1");
  onlooker.get("/token");
  const std::string id = onlooker.cookie;
  EXPECT_EQ(next.get("/token").status, 200);
  EXPECT_EQ(onlooker.get("/token").status, 200);
  EXPECT_NE(onlooker.cookie, id);
  EXPECT_EQ(worker.post("/work", "").body, "2");
}

TEST_F(PageHostTest, IdleSessionsEnd) {
  page("index.js", "Session.n = (Session.n || 0) + 1; Response.write(Session.n);");
  options.limits.sessions = 1;
  options.limits.idle = std::chrono::milliseconds(80);
  start();
  Browser browser = visitor(), next = visitor();
  EXPECT_EQ(browser.get("/").body, "1");
  while (next.get("/").status == 503) std::this_thread::yield();
  EXPECT_NE(browser.get("/").body, "2");
}

TEST_F(PageHostTest, RunawayPagesAreStoppedAndTheOthersGoOn) {
  page("calls.js", "while (true) CreateObject('Scripting.Dictionary');");
  page("memory.js", "var all = []; while (true) all.push(new Array(1000).join('x') + all.length);");
  page("writes.js", "while (true) Response.write('0123456789');");
  page("deep.js", "function f() { return f() + 1; } f();");
  page("spin.js",
       "var end = Date.now() + 300; while (Date.now() < end) {} Database.execute("
       "\"update Customer set firstName = 'Late' where customerSequenceNumber = 1\");");
  options.limits.scriptMemory = 8 << 20;
  options.limits.answerSize = 1 << 20;
  options.limits.runs.time = std::chrono::milliseconds(150);
  options.limits.workers = 1;
  start();
  for (const char* path : {"/calls", "/memory", "/writes", "/deep"})
    EXPECT_EQ(Browser(port).get(path).status, 500);
  Browser browser = visitor(), other(port);
  const std::string id = browser.cookie;
  EXPECT_EQ(browser.get("/spin").status, 500);
  // One worker is lost to the loop; another took its place.
  EXPECT_EQ(other.get("/token").status, 200);
  browser.get("/token");
  EXPECT_NE(browser.cookie, id);
  while (Browser(port).client->Get("/metrics")->body.find("ondrel_runners_lost 0") == std::string::npos)
    std::this_thread::yield();
  EXPECT_NE(scalar("select firstName from Customer where customerSequenceNumber = 1").toText(), "Late");
}

// ---- sessions side by side

TEST_F(PageHostTest, SessionsRunSideBySideAndTheirRequestsInTurn) {
  page("count.js", R"(
    var seen = Session.count || 0, end = Date.now() + 2;
    while (Date.now() < end) {}
    Database.query("select count(*) from Customer");
    Session.count = seen + 1;
    Response.write(Session.count);)");
  options.limits.workers = 4;
  options.limits.runs.waitingInQueue = 100;
  start();
  constexpr int kSessions = 4, kConnections = 3, kClicks = 10;
  std::vector<Browser> browsers;
  for (int k = 0; k < kSessions; ++k) browsers.push_back(visitor());
  std::vector<std::thread> threads;
  for (Browser& browser : browsers)
    for (int k = 0; k < kConnections; ++k)
      threads.emplace_back([this, cookie = browser.cookie, token = browser.token] {
        Browser same(port);
        same.cookie = cookie;
        same.token = token;
        for (int click = 0; click < kClicks; ++click) EXPECT_EQ(same.post("/count", "").status, 200);
      });
  for (std::thread& thread : threads) thread.join();
  // Not one click was lost: no two of a session ran at once.
  for (Browser& browser : browsers)
    EXPECT_EQ(browser.post("/count", "").body, std::to_string(kConnections * kClicks + 1));
}

TEST_F(PageHostTest, StoppingFinishesWhatIsInProgress) {
  page("slow.js", "var end = Date.now() + 300; while (Date.now() < end) {} Response.write('finished');");
  start();
  std::promise<void> sending;
  std::string body;
  std::thread asking([&] {
    Browser browser(port);
    sending.set_value();
    body = browser.get("/slow").body;
  });
  sending.get_future().wait();
  awaitBusy(1);
  EXPECT_TRUE(host->stop());
  asking.join();
  EXPECT_EQ(body, "finished");
  EXPECT_FALSE(httplib::Client("127.0.0.1", port).Get("/health"));
}

TEST_F(PageHostTest, PagesAreToldTheSettingsOfTheirShop) {
  page("setting.js", "Response.write(Server.setting('cardFolder'), ' ', Server.setting('other'));");
  options.settings["cardFolder"] = "C:/xc";
  start();
  EXPECT_EQ(Browser(port).get("/setting").body, "C:/xc ");
}

}  // namespace
}  // namespace ondrel
