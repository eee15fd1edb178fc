#include <thread>
#include <vector>

#include "host/journal.h"
#include "host_fixture.h"

namespace ondrel {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct TestPage {
  const char* name;
  const char* text;
};

// A counter that writes on one ticket: add, save, and a look at it.
constexpr TestPage kPages[] = {
    {"ticket.js", R"js(
      if (Request.method === "POST") {
        if (!Session.invoice) {
          var invoice = Session.invoice = CreateObject("OndrelCorpComponents.invoice");
          invoice.DBConnectionString = Database.connectionString;
          invoice.isAdd = true; invoice.addOrEdit = "add"; invoice.custSeqNumber = 1; invoice.priceListId = 1;
          invoice.setStoreDays(1);
          invoice.LoadDefaults();
        }
        Session.invoice.addItem(Number(Request.form.item), 1, 1);
        Session.day = Server.now().getDate();
      }
      var lines = [];
      if (Session.invoice) {
        var rs = Session.invoice.lineItems.Clone();
        rs.Filter = "itemType = 'IT'";
        for (rs.MoveFirst(); !rs.EOF; rs.MoveNext()) lines.push(rs("lineItemId").Value);
      }
      Response.write("[", lines.join(), "] day ", Session.day, " clerk ", Session.kept.clerk);)js"},
    {"clerk.js", "Session.kept.clerk = Request.form.name;"},
    {"save.js", R"js(
      Database.execute("insert into employee (employeeid, employeename) values (" + Request.form.id + ", 'saved')");
      Server.workDone();
      Session.invoice = null;
      Session.kept.saves = (Session.kept.saves || 0) + 1;
      Response.header("X-Saved", Request.form.id);
      Response.write("saved ", Request.form.id, " ", Session.kept.saves);)js"},
    {"new_customer.js", R"js(
      Session.customer = Server.recorded(function () {
        Database.execute("insert into employee (employeeid, employeename) values (" + Request.form.id + ", 'kept')");
        return Number(Request.form.id) * 10;
      });)js"},
    {"refused.js", R"js(
      try {
        Server.recorded(function () { throw new Error("refused by the store"); });
      } catch (error) { Session.customer = error.message; })js"},
    {"customer.js", "Response.write(Session.customer);"},
    {"spin.js", "var end = Date.now() + 400; while (Date.now() < end) {}"},
};

class RestartTest : public HostTest {
 protected:
  RestartTest() {
    options.journals = folder / "journals";
    for (const TestPage& each : kPages) page(each.name, each.text);
  }

  void restartAndReturn(Browser& browser) {
    restart();
    browser.moveTo(port);
  }
  std::vector<std::filesystem::path> journals() const {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(options.journals))
      paths.push_back(entry.path());
    return paths;
  }
  std::string journalText() const {
    std::string text;
    for (const auto& path : journals()) {
      std::ifstream stream(path);
      text.append(std::istreambuf_iterator<char>(stream), {});
    }
    return text;
  }
  int countOf(int employee) {
    return scalar("select count(*) from employee where employeeid = " + std::to_string(employee)).toLong();
  }
};

// ---- request numbers

TEST_F(RestartTest, ButtonPressedTwiceSavesOnce) {
  start();
  Browser browser = visitor();
  const httplib::Response first = browser.post("/save", "id=901", "press-1");
  const httplib::Response second = browser.post("/save", "id=901", "press-1");
  EXPECT_EQ(first.body, "saved 901 1");
  EXPECT_EQ(second.body, first.body);
  EXPECT_EQ(second.get_header_value("X-Saved"), "901");
  EXPECT_EQ(browser.post("/save", "id=902", "press-1").status, 422);
  EXPECT_EQ(browser.post("/save", "id=902&_number=press-2", "").body, "saved 902 2");
  EXPECT_EQ(browser.post("/save", "id=903", "no blanks").status, 400);
  EXPECT_EQ(countOf(901), 1);

  // The network repeats the request after the host was started anew.
  restartAndReturn(browser);
  EXPECT_EQ(browser.post("/save", "id=901", "press-1").body, "saved 901 1");
  EXPECT_EQ(browser.post("/save", "id=902", "press-1").status, 422);
  EXPECT_EQ(countOf(901), 1);
}

TEST_F(RestartTest, PressesAtTheSameTimeSaveOnce) {
  start();
  const Browser browser = visitor();
  std::vector<std::thread> threads;
  std::vector<std::string> bodies(6);
  for (std::string& body : bodies)
    threads.emplace_back([&] {
      Browser same(port);
      same.cookie = browser.cookie;
      same.token = browser.token;
      body = same.post("/save", "id=905", "double").body;
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(bodies, testing::Each("saved 905 1"));
}

// ---- work in progress

TEST_F(RestartTest, HalfWrittenTicketIsThereAgain) {
  start();
  Browser browser = visitor(), other = visitor();
  browser.post("/clerk", "name=Ann%09%25%0aB");
  browser.post("/ticket", "item=201");
  other.post("/ticket", "item=106");
  const std::string before = browser.post("/ticket", "item=103").body;
  EXPECT_EQ(before, "[201,103] day 24 clerk Ann\t%\nB");
  // Two days later: the lines keep the day on which they were written.
  options.now = clock->now().addDays(2);
  restartAndReturn(browser);
  EXPECT_EQ(browser.get("/ticket").body, before);
  EXPECT_EQ(browser.post("/ticket", "item=106").body, "[201,103,106] day 26 clerk Ann\t%\nB");
  restartAndReturn(browser);
  EXPECT_EQ(browser.get("/ticket").body, "[201,103,106] day 26 clerk Ann\t%\nB");
  other.moveTo(port);
  EXPECT_EQ(other.get("/ticket").body, "[106] day 24 clerk ");
  EXPECT_THAT(log(), HasSubstr(R"("restored":"4 of 4 calls")"));
}

TEST_F(RestartTest, SavedWorkIsNotDoneAgain) {
  start();
  Browser browser = visitor();
  browser.post("/clerk", "name=Ann");
  browser.post("/ticket", "item=201");
  browser.post("/save", "id=911");
  browser.post("/ticket", "item=106");
  restartAndReturn(browser);
  EXPECT_EQ(browser.get("/ticket").body, "[106] day 24 clerk Ann");
  EXPECT_EQ(countOf(911), 1);
  EXPECT_EQ(browser.post("/save", "id=912").body, "saved 912 2");
}

TEST_F(RestartTest, RecordedPiecesGiveTheirResultAgain) {
  start();
  Browser browser = visitor();
  browser.post("/ticket", "item=201");
  browser.post("/new_customer", "id=921");
  restartAndReturn(browser);
  EXPECT_EQ(browser.get("/customer").body, "9210");
  EXPECT_EQ(browser.get("/ticket").body, "[201] day 24 clerk ");
  EXPECT_EQ(countOf(921), 1);
  browser.post("/refused", "");
  restartAndReturn(browser);
  EXPECT_EQ(browser.get("/customer").body, "refused by the store");
}

// What calls wrote beside the ticket, such as how often an item was used, stands in the database already. Even a
// page that forgets to say that the work is done does not save again.
TEST_F(RestartTest, BringingBackLeavesNoTraceInTheDatabase) {
  page("forgetful.js", R"js(
    Database.execute("insert into employee (employeeid) values (" + Request.form.id + ")");
    Database.query("insert into employee (employeeid) values (1" + Request.form.id + ")");
    var rs = Database.query("select count(*) as n from employee where employeeid = " + Request.form.id);
    Session.customer = rs("n").Value;)js");
  start();
  Browser browser = visitor();
  browser.post("/ticket", "item=201");
  browser.post("/forgetful", "id=931");
  const std::string used = "select usecounter from pricelistitem where priceListItemId = 201";
  const int uses = scalar(used).toLong();
  execute("delete from employee where employeeid in (931, 1931)");
  restartAndReturn(browser);
  EXPECT_EQ(browser.get("/ticket").body, "[201] day 24 clerk ");
  EXPECT_EQ(browser.get("/customer").body, "0");
  EXPECT_EQ(scalar(used).toLong(), uses);
  EXPECT_EQ(countOf(931) + countOf(1931), 0);
  browser.post("/forgetful", "id=932");
  EXPECT_EQ(countOf(932), 1);
}

TEST_F(RestartTest, TicketSurvivesAPageThatDoesNotEnd) {
  options.limits.runs.time = std::chrono::milliseconds(150);
  start();
  Browser browser = visitor();
  browser.post("/ticket", "item=201");
  const std::string id = browser.cookie;
  EXPECT_EQ(browser.post("/spin", "").status, 500);
  EXPECT_EQ(browser.get("/ticket").body, "[201] day 24 clerk ");
  EXPECT_EQ(browser.cookie, id);
}

// ---- the file

TEST_F(RestartTest, JournalHoldsNoSecrets) {
  page("pay.js", "Response.write('paid with ', Request.form.number || Request.body);");
  start();
  Browser browser = visitor();
  browser.post("/clerk", "name=Ann");
  browser.post("/pay", "number=4111+1111+1111+1111", "pay-1");
  browser.post("/pay", "number=7&CVV=937", "pay-2");
  const std::string text = journalText();
  for (const std::string& secret :
       {std::string("1111 1111"), std::string("937"), browser.cookie, browser.token})
    EXPECT_THAT(text, Not(HasSubstr(secret)));
  EXPECT_THAT(text, HasSubstr("name=Ann"));
  ASSERT_EQ(journals().size(), 1U);
  EXPECT_EQ(std::filesystem::status(journals().front()).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  EXPECT_THAT(journals().front().string(), Not(HasSubstr(browser.cookie)));
  restartAndReturn(browser);
  EXPECT_EQ(browser.post("/pay", "number=4111+1111+1111+1111", "pay-1").status, 409);
  EXPECT_EQ(browser.post("/pay", "number=7&CVV=937", "pay-2").body, "paid with 7");
}

TEST_F(RestartTest, GrownJournalBeginsAnewWhenTheWorkIsDone) {
  page("fill.js", "Session.kept.length = Request.form.text.length;");
  start();
  Browser browser = visitor();
  browser.post("/save", "id=941", "first");
  for (int k = 0; k < 50; ++k) browser.post("/fill", "text=" + std::string(7000, 'x'));
  EXPECT_GT(std::filesystem::file_size(journals().front()), 300'000U);
  browser.post("/save", "id=942");
  EXPECT_LT(std::filesystem::file_size(journals().front()), 2'000U);
  browser.post("/ticket", "item=201");
  restartAndReturn(browser);
  EXPECT_EQ(browser.get("/ticket").body, "[201] day 24 clerk ");
  EXPECT_EQ(browser.post("/save", "id=941", "first").body, "saved 941 1");
  EXPECT_EQ(browser.post("/save", "id=943").body, "saved 943 3");
}

// A line that a sudden end tore does not become whole by what is written after it, and one that makes no sense stops
// the work that it belongs to, not the session.
TEST_F(RestartTest, SpoiltJournalDoesNotSpoilTheSession) {
  const struct {
    const char* spoilt;
    const char* ticket;
  } cases[] = {{"kept\t{\"clerk\":\"torn\"}", "[201,103] day 24 clerk Ann"},
               {"kept\t{\n", "[103] day 24 clerk "}};
  for (const auto& row : cases) {
    start();
    Browser browser = visitor();
    browser.post("/clerk", "name=Ann");
    browser.post("/ticket", "item=201");
    host.reset();
    for (const auto& path : journals()) std::ofstream(path, std::ios::app) << row.spoilt;
    restartAndReturn(browser);
    EXPECT_EQ(browser.post("/ticket", "item=103").body, row.ticket);
    if (row.ticket[1] == '2') restartAndReturn(browser);
    EXPECT_EQ(browser.get("/ticket").body, row.ticket);
    host.reset();
    std::filesystem::remove_all(options.journals);
  }
}

// Between the commit and the answer a sudden end leaves a question that only a person can answer.
TEST_F(RestartTest, WhatMayHaveBeenSavedIsAskedAbout) {
  page("doubt.js", "Response.write(Server.doubtful()); if (Request.form.sure) Server.settleDoubt();");
  start();
  Browser browser = visitor();
  browser.post("/ticket", "item=201");
  host.reset();
  std::ofstream(journals().front(), std::ios::app)
      << "call\t46350.4\tsave.js\t/save\tsave-1\t\tid=911\t\t\ncommitting\n";
  restartAndReturn(browser);
  EXPECT_EQ(browser.get("/doubt").body, "true");
  EXPECT_EQ(browser.post("/save", "id=911", "save-1").status, 409);
  EXPECT_EQ(browser.get("/ticket").body, "[201] day 24 clerk ");
  browser.post("/doubt", "sure=1");
  EXPECT_EQ(browser.get("/doubt").body, "false");
  restartAndReturn(browser);
  EXPECT_EQ(browser.get("/doubt").body, "false");
}

// A note with the digits of a card is a click like any other: those behind it belong to the same lines.
TEST_F(RestartTest, NumbersLikeThoseOfCardsAreMaskedAndTheirCallsKept) {
  start();
  Browser browser = visitor();
  browser.post("/ticket", "item=201&note=4111111111111111");
  browser.post("/ticket", "item=103");
  EXPECT_THAT(journalText(), Not(HasSubstr("4111111111111111")));
  restartAndReturn(browser);
  EXPECT_EQ(browser.get("/ticket").body, "[201,103] day 24 clerk ");
}

// Whose journal waits for a place on a full host is not given a new session over it.
TEST_F(RestartTest, FullHostKeepsTheWorkOfThoseWhoComeBack) {
  start();
  Browser browser = visitor();
  browser.post("/ticket", "item=201");
  options.limits.sessions = 1;
  options.limits.looking = std::chrono::milliseconds(50);
  restart();
  Browser looker(port);
  for (int look = 0; look < 2; ++look) looker.get("/customer");
  browser.moveTo(port);
  const std::string cookie = browser.cookie;
  EXPECT_EQ(browser.get("/ticket").status, 503);
  EXPECT_EQ(browser.cookie, cookie);
  std::this_thread::sleep_for(std::chrono::milliseconds(60));
  EXPECT_EQ(browser.get("/ticket").body, "[201] day 24 clerk ");
}

TEST_F(RestartTest, JournalGoesWithItsSession) {
  page("out.js", "Server.signOut();");
  options.limits.idle = std::chrono::milliseconds(100);
  start();
  Browser leaving = visitor(), forgotten = visitor();
  for (Browser* each : {&leaving, &forgotten}) each->get("/token");
  EXPECT_EQ(journals().size(), 2U);
  EXPECT_THAT(leaving.get("/out").get_header_value("Set-Cookie"), HasSubstr("Max-Age=0"));
  while (!journals().empty()) std::this_thread::yield();
  EXPECT_EQ(forgotten.post("/ticket", "item=201").status, 403);
}

PageRequest call(const std::string& number) {
  PageRequest request;
  request.method = "POST";
  request.page = "save.js";
  request.path = "/save";
  request.number = number;
  return request;
}

TEST_F(RestartTest, CallsThatWereNotAnsweredStayOut) {
  std::filesystem::create_directories(options.journals);
  const std::filesystem::path path = options.journals / "one.journal";
  {
    Journal journal(path);
    journal.call(call("answered"), clock->now());
    journal.done(call("answered"), plainAnswer(200, "fine"));
    journal.call(call("saving"), clock->now());
    journal.committing(true);
  }
  std::ofstream(path, std::ios::app) << "call\t46";
  {
    Journal journal(path);
    journal.call(call("computing"), clock->now());
  }
  const auto contents = Journal::read(path);
  ASSERT_TRUE(contents);
  std::vector<std::string> answers;
  for (const RememberedAnswer& known : contents->answers)
    answers.push_back(known.number + " " + std::to_string(known.answer.status));
  EXPECT_THAT(answers, ElementsAre("answered 200", "saving 409"));
  ASSERT_EQ(contents->calls.size(), 1U);
  EXPECT_EQ(contents->calls[0].request.number, "answered");
  EXPECT_NEAR(contents->calls[0].moment.serial(), clock->now().serial(), 1e-6);
}

}  // namespace
}  // namespace ondrel
