#include "data/odbc/odbc_connection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sql.h>
#include <sqlext.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "base/text.h"
#include "data/embedded/embedded_store.h"
#include "data/query_database.h"
#include "scripted_server.h"
#include "support/error_of.h"
#include "support/temporary_folder.h"

namespace ondrel {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::MatchesRegex;
using testing::Not;

ServerResult failure(std::string state, int number, std::string text) {
  ServerResult result;
  result.error = ServerMessage{std::move(state), number, std::move(text)};
  return result;
}

ServerResult rowsOf(std::vector<ServerColumn> columns, std::vector<std::vector<ServerCell>> rows) {
  ServerResult result;
  result.columns = std::move(columns);
  result.rows = std::move(rows);
  return result;
}

constexpr int kConnectionFailed = static_cast<int>(ErrorNumber::ConnectionFailed);
const ServerResult kRowCount;
const ServerResult kOne = rowsOf({{"one", SQL_INTEGER, 10}}, {{std::int64_t{1}}});

class OdbcConnections : public testing::Test {
 protected:
  OdbcConnections() {
    page.connect = [this](const ConnectionSettings& settings) { return connectOdbc(settings, pool); };
    page.DBConnectionString = text;
    server.answer("select 1", {kOne});
  }
  std::unique_ptr<Connection> open(const std::string& more = "") {
    auto connection = connectOdbc({text + more, "", "", nullptr}, pool);
    connection->open();
    return connection;
  }
  // What the server saw, without what readies a connection for the next user.
  std::vector<std::string> seen() {
    std::vector<std::string> log = server.take();
    std::erase_if(log,
                  [](const std::string& step) { return step == "<reset>" || step.starts_with("<timeout"); });
    return log;
  }
  void countTransactions(std::int64_t count) {
    server.answer("select @@trancount", {rowsOf({{"", SQL_INTEGER, 10}}, {{count}})});
  }
  void begin(const std::string& statement) {
    openTransaction(page);
    executeInTransaction(page, statement);
  }

  ScriptedServer server;
  std::string text = connectionStringOf(server);
  OdbcPool::Clock::time_point now{};
  std::shared_ptr<OdbcPool> pool = std::make_shared<OdbcPool>([this] { return now; });
  Apartment page;
};

// ---- what goes over the wire

TEST_F(OdbcConnections, SendTheDoorsSequence) {
  queryDatabase(page, "select 1");
  EXPECT_THAT(server.take(), ElementsAre("<connect>", "<timeout 30>", "<timeout 240>", "select 1", "<reset>",
                                         "<timeout 30>"));
  queryDatabaseBatch(page, "select 1");
  EXPECT_THAT(server.take(), ElementsAre("select 1", "<reset>"))
      << "the same connection, with its own time limit";
  executeInTransaction(page, "delete t");
  EXPECT_THAT(seen(), ElementsAre("<autocommit off>", "delete t", "<commit>", "<autocommit on>"));
  begin("insert a");
  queryInTransaction(page, "select 1");
  queryDatabase(page, "select 1");
  EXPECT_THAT(seen(), ElementsAre("<autocommit off>", "insert a", "select 1", "<rollback>", "<autocommit on>",
                                  "select 1"))
      << "the read takes the transaction's place";
  page = {};
  pool = nullptr;
  EXPECT_THAT(seen(), ElementsAre("<disconnect>"));
}

// ---- results

TEST_F(OdbcConnections, MapTheTypesOfTheServer) {
  struct Case {
    SQLSMALLINT type;
    ServerCell cell;
    FieldType field;
    Variant value;
  };
  const std::int64_t big = 3'000'000'000;
  // clang-format off
  const Case cases[] = {
      {SQL_TINYINT,        std::int64_t{255},                  FieldType::Long,    255},
      {SQL_BIGINT,         std::int64_t{12},                   FieldType::Long,    12},
      {SQL_BIGINT,         big,                                FieldType::Double,  3e9},
      {SQL_BIT,            std::int64_t{1},                    FieldType::Boolean, true},
      {SQL_NUMERIC,        8.25,                               FieldType::Double,  8.25},
      {SQL_TYPE_TIMESTAMP, Moment{2026, 11, 24, 10, 30, 5},    FieldType::Date,    Date::of(2026, 11, 24, 10, 30, 5)},
      {SQL_TYPE_DATE,      Moment{2026, 11, 24, 0, 0, 0},      FieldType::Date,    Date::of(2026, 11, 24)},
      {SQL_CHAR,           "longer than told  ",               FieldType::Text,    "longer than told  "},
      {SQL_WVARCHAR,       "Zoë €",                            FieldType::Text,    "Zoë €"},
      {SQL_GUID,           "6F9619FF-8B86-D011-B42D-00C04FC964FF", FieldType::Text, "6F9619FF-8B86-D011-B42D-00C04FC964FF"},
  };
  // clang-format on
  for (const Case& each : cases) {
    server.answer("select", {rowsOf({{"v", each.type, 10}}, {{each.cell}, {ServerCell()}})});
    const RecordsetRef table = open()->query("select");
    EXPECT_EQ(table->fieldType(Column(0)), each.field) << each.type;
    EXPECT_TRUE(table->value("V").identicalTo(each.value)) << each.type;
    table->moveNext();
    EXPECT_TRUE(table->isNull("v")) << each.type;
  }
}

TEST_F(OdbcConnections, TakeTheFirstResultWithColumns) {
  ServerResult message;
  message.notes = {{"01000", 0, "[x]printed"}};
  ServerResult empty = kOne;
  empty.rows.clear();
  server.answer("execute p", {kRowCount, message, kRowCount, kOne, rowsOf({{"two", SQL_INTEGER, 10}}, {})});
  server.answer("empty", {empty});
  server.answer("late", {kOne, kRowCount, failure("23000", 2627, "[x][y]Violation of a key")});
  server.answer("first", {failure("42S02", 208, "gone"), kOne});
  ServerResult broken = kOne;
  broken.fetchError = ServerMessage{"22012", 8134, "Divide by zero error encountered."};
  server.answer("in the middle", {broken});

  const auto connection = open();
  EXPECT_EQ(connection->query("execute p")->integer("one"), 1);
  EXPECT_EQ(connection->query("empty")->recordCount(), 0);
  EXPECT_FALSE(connection->query("delete t")->isOpen());
  EXPECT_EQ(errorOf([&] { connection->query("late"); }), 2627);
  EXPECT_EQ(errorOf([&] { connection->execute("late"); }), 2627);
  EXPECT_EQ(errorOf([&] { connection->query("first"); }), 208);
  EXPECT_EQ(errorOf([&] { connection->query("in the middle"); }), 8134);
  EXPECT_EQ(connection->query("select 1")->integer("one"), 1) << "the connection goes on";
}

// ---- failures

TEST_F(OdbcConnections, TellNumberStateAndText) {
  struct Case {
    ServerResult result;
    int number;
    const char* description;
  };
  ServerResult noted =
      failure("22001", 8152, "[FreeTDS][SQL Server]String or binary data would be truncated.");
  noted.notes = {{"01000", 3621, "[FreeTDS][SQL Server]The statement has been terminated."}};
  // clang-format off
  const Case cases[] = {
      {failure("42S02", 208, "[FreeTDS][SQL Server]Invalid object name 't'."), 208, "Invalid object name 't'. (SQLSTATE 42S02)"},
      {noted, 8152, "String or binary data would be truncated. (SQLSTATE 22001)"},
      {failure("HYT00", 0, "Timeout expired"), -2147217871, "Timeout expired (SQLSTATE HYT00)"},
      {failure("42000", 0, "no"), -2147217900, "no (SQLSTATE 42000)"},
      {failure("42000", 50000, "login of s3cret"), 50000, "login of *** (SQLSTATE 42000)"},
      {failure("42000", 50000, "[D][SQL Server][Bin 4] is full"), 50000, "[Bin 4] is full (SQLSTATE 42000)"},
      {failure("42000", 50000, "[a][b][c][Bin 4] is full"), 50000, "[Bin 4] is full (SQLSTATE 42000)"},
  };
  // clang-format on
  const auto connection = open(";PWD=s3cret");
  for (const Case& each : cases) {
    server.answer("x", {each.result});
    EXPECT_EQ(errorOf([&] { connection->execute("x"); }), each.number);
    EXPECT_EQ(descriptionOf([&] { connection->execute("x"); }), each.description);
  }
}

TEST_F(OdbcConnections, SayWhyTheyCannotConnectWithoutThePassword) {
  server.refuseConnections(ServerMessage{"28000", 18456, "[x]Login failed for 'sa' with s3cret"});
  EXPECT_EQ(descriptionOf([&] { open(";UID=sa;PWD={s3cret}"); }),
            "Cannot connect: Login failed for 'sa' with *** (SQLSTATE 28000)");
  EXPECT_EQ(errorOf([&] { open(); }), kConnectionFailed);
  server.refuseConnections(ServerMessage{"28000", 18456, "Database of a sack: 'a' is no good"});
  for (const char* shown : {"a", "'a'", "is no"})
    EXPECT_EQ(descriptionOf([&] { open(";PWD=" + std::string(shown)); }),
              "Cannot connect: (a text that holds the password) (SQLSTATE 28000)");
  EXPECT_THAT(descriptionOf([&] { open(";PWD=ack"); }), HasSubstr("of a sack: 'a'")) << "part of a word";
  server.refuseConnections({});
  const TemporaryFolder folder;
  const std::string file = folder.path + "/freetds.conf";
  std::ofstream(file) << "[global]\n\tdump file = /tmp/dump\n";
  for (const char* name : {"TDSDUMP", "TDSDUMPCONFIG", "FREETDSCONF"}) {
    setenv(name, file.c_str(), 1);
    EXPECT_THAT(descriptionOf([&] { open(); }), MatchesRegex(".*(TDSDUMP|dump file of).* is refused.*"))
        << name;
    unsetenv(name);
  }
  EXPECT_EQ(open()->query("select 1")->integer("one"), 1);
}

TEST_F(OdbcConnections, AreReplacedAfterALoss) {
  queryDatabase(page, "select 1");
  const auto idle = open();
  seen();
  const auto other = open();
  server.breakConnections();
  other->close();
  idle->close();
  queryDatabase(page, "select 1");
  EXPECT_THAT(seen(),
              ElementsAre("<connect>", "select 1", "<disconnect>", "<disconnect>", "<connect>", "select 1"))
      << "a read is sent once more, and what died beside it is not tried";
  server.breakConnections();
  EXPECT_EQ(errorOf([&] { queryDatabase(page, "select 1 exec p"); }), kConnectionFailed) << "no change is";
  queryDatabase(page, "select 1");
  EXPECT_THAT(seen(), ElementsAre("select 1 exec p", "<disconnect>", "<connect>", "select 1"));
  server.breakConnections();
  executeInTransaction(page, "insert a");
  EXPECT_THAT(seen(), ElementsAre("<autocommit off>", "<disconnect>", "<connect>", "<autocommit off>",
                                  "insert a", "<commit>", "<autocommit on>"))
      << "it died in the pool, so it begins once more";
  server.breakConnections();
  server.refuseConnections(ServerMessage{"08001", 0, "down"});
  EXPECT_THROW(openTransaction(page), Error);
  EXPECT_THAT(seen(), ElementsAre("<autocommit off>", "<disconnect>", "<connect>")) << "once";

  server.refuseConnections({});
  const auto fresh = open();
  server.breakConnections();
  EXPECT_THROW(fresh->begin(), Error) << "it did not come from the pool";
  EXPECT_EQ(fresh->query("select 1")->integer("one"), 1);
}

TEST_F(OdbcConnections, ShowNoCardNumberHoweverTheyFail) {
  const ServerMessage said{"HY000", 1, "about 4111111111111111"};
  for (const auto fail :
       {&ScriptedServer::refuseConnections, &ScriptedServer::failAutocommit, &ScriptedServer::failCommits}) {
    page.sharedConnection = nullptr;
    pool = std::make_shared<OdbcPool>();
    (server.*fail)(said);
    EXPECT_THAT(descriptionOf([&] { executeInTransaction(page, "insert a"); }),
                AllOf(HasSubstr("about"), Not(HasSubstr("4111111111111111"))));
    (server.*fail)({});
  }
}

// What was sent before is lost or done already: what follows must not go out on its own.
TEST_F(OdbcConnections, SendNothingMoreOnceATransactionIsOver) {
  server.answer("insert b", {failure("42000", 1205, "Transaction was deadlocked")});
  server.breakAt("insert c");
  for (const char* ending : {"insert b", "insert c"}) {
    begin("insert a");
    EXPECT_THROW(executeInTransaction(page, ending), Error);
    seen();
    EXPECT_THAT(descriptionOf([&] { executeInTransaction(page, "insert d"); }),
                HasSubstr("transaction is over"));
    EXPECT_THAT(descriptionOf([&] { commitTransaction(page); }), HasSubstr("transaction is over"));
    EXPECT_THAT(seen(), ElementsAre());
    closeTransaction(page);
    executeInTransaction(page, "insert e");
    EXPECT_THAT(seen(), ElementsAre("<rollback>", "<disconnect>", "<connect>", "<autocommit off>", "insert e",
                                    "<commit>", "<autocommit on>"));
  }
  server.answer("insert f", {failure("22018", 245, "Conversion failed")});
  const auto afterFailure = [&](std::int64_t transactions) {
    countTransactions(transactions);
    begin("insert a");
    EXPECT_THROW(executeInTransaction(page, "insert f"), Error);
    return errorOf([&] { executeInTransaction(page, "insert g"); });
  };
  EXPECT_EQ(afterFailure(1), 0) << "any other failure leaves it open";
  commitTransaction(page);
  EXPECT_THAT(seen(), ElementsAre("<autocommit off>", "insert a", "insert f", "select @@trancount",
                                  "insert g", "<commit>", "<autocommit on>"));
  EXPECT_NE(afterFailure(0), 0) << "unless the server rolled it back";
  closeTransaction(page);
  EXPECT_THAT(seen(), ElementsAre("<autocommit off>", "insert a", "insert f", "select @@trancount",
                                  "<rollback>", "<disconnect>"));
}

TEST_F(OdbcConnections, GiveUpOneThatCannotBegin) {
  const auto connection = open();
  server.failAutocommit(ServerMessage{"HY000", 0, "no"});
  EXPECT_THROW(connection->begin(), Error);
  server.failAutocommit({});
  connection->execute("insert a");
  EXPECT_THAT(seen(), ElementsAre("<connect>", "<autocommit off>", "<disconnect>", "<connect>", "insert a"))
      << "autocommit may be off on the first";
}

TEST_F(OdbcConnections, TellALossAtCommitFromARefusal) {
  const std::pair<const char*, int> cases[] = {{"23000", 547}, {"08S01", kConnectionFailed}};
  for (const auto& [state, number] : cases) {
    const auto connection = open();
    server.failCommits(ServerMessage{state, 547, "no"});
    connection->begin();
    EXPECT_EQ(errorOf([&] { connection->commit(); }), number);
  }
}

TEST_F(OdbcConnections, ReportAFailedCommitAsInDoubt) {
  server.failCommits(ServerMessage{"HY000", 0, "Read from the server failed"});
  begin("insert a");
  EXPECT_THAT(descriptionOf([&] { commitTransaction(page); }), HasSubstr("not known whether"));
  EXPECT_THAT(descriptionOf([&] { commitTransaction(page); }), HasSubstr("not known whether")) << "sent once";
  closeTransaction(page);
  EXPECT_THAT(seen(), ElementsAre("<connect>", "<autocommit off>", "insert a", "<commit>", "<rollback>",
                                  "<disconnect>"));
}

// The double under a name by which it is taken for the maker's driver.
class WithTheMakersDriver : public OdbcConnections {
 protected:
  WithTheMakersDriver() {
    std::filesystem::create_symlink(text.substr(7, text.find(';') - 7), library);
    page.DBConnectionString = "Driver=" + library + text.substr(text.find(';'));
  }

  TemporaryFolder folder;
  std::string library = folder.path + "/libmsodbcsql.so";
};

const std::string kBegin = "if @@trancount > 0 rollback transaction begin transaction";
const std::string kCommit = "commit transaction while @@trancount > 0 commit transaction";
const std::string kRollback = "if @@trancount > 0 rollback transaction";

TEST_F(WithTheMakersDriver, TransactionsAreBatches) {
  executeInTransaction(page, "insert a");
  server.breakConnections();
  executeInTransaction(page, "insert b");
  EXPECT_THAT(seen(), ElementsAre("<connect>", kBegin, "insert a", kCommit, kBegin, "<disconnect>",
                                  "<connect>", kBegin, "insert b", kCommit));
  server.answer(kCommit, {failure("25000", 3902, "no corresponding BEGIN TRANSACTION")});
  EXPECT_THAT(descriptionOf([&] { executeInTransaction(page, "insert c"); }), HasSubstr("not known whether"));
}

// A transaction that a procedure or a page left open would take in the next user's work, and roll it back.
TEST_F(WithTheMakersDriver, NobodyGetsAConnectionWithATransactionOpen) {
  server.answer("execute p", {failure("42000", 266, "Transaction count after EXECUTE indicates a mismatch")});
  EXPECT_THROW(queryDatabase(page, "execute p"), Error);
  page.sharedConnection = nullptr;
  EXPECT_THAT(seen(), ElementsAre("<connect>", "execute p", kRollback));
  queryDatabase(page, "select 1 BEGIN TRANSACTION");
  EXPECT_THAT(seen(), ElementsAre("select 1 BEGIN TRANSACTION", kRollback));
  queryDatabase(page, "select 1");
  EXPECT_THAT(seen(), ElementsAre("select 1")) << "and nobody else pays for it";
  server.answer(kRollback, {failure("HY000", 1, "no")});
  queryDatabase(page, "begin tran");
  EXPECT_THAT(seen(), ElementsAre("begin tran", kRollback, "<disconnect>"));
}

TEST_F(OdbcConnections, CheckADatabase) {
  server.answer("select * from Ticket where 1 = 0", {failure("42S02", 0, "gone")});
  server.answer("select * from Customer where 1 = 0", {failure("42000", 229, "SELECT was denied")});
  server.answer("select * from Surcharge where 1 = 0", {failure("42000", 8180, "busy")});
  server.answer("select name from sysobjects where xtype in ('P', 'PC')",
                {rowsOf({{"name", SQL_WVARCHAR, 128}}, {})});
  const auto connection = open();
  const std::vector<std::string> findings = checkDatabase(*connection, CheckedStore::Server);
  EXPECT_THAT(findings,
              IsSupersetOf({"Table Ticket is missing", "Table Customer may not be read by this user",
                            "Table Surcharge cannot be read: busy (SQLSTATE 42000)"}));
  EXPECT_THAT(findings, Not(Contains(HasSubstr("Table Ticket has"))));
  server.breakAt("select name from sysobjects where xtype in ('FN', 'FS')");
  EXPECT_EQ(errorOf([&] { checkDatabase(*connection, CheckedStore::Server); }), kConnectionFailed);
}

// ---- the pool

TEST_F(OdbcConnections, AreKeptForTheIdleTime) {
  const OdbcTarget target = odbcTarget({text, "", "", nullptr}, {});
  open();
  open();
  EXPECT_THAT(seen(), ElementsAre("<connect>"));
  now += std::chrono::seconds(59);
  open();
  now += std::chrono::seconds(59);
  EXPECT_EQ(pool->idleCount(target), 1) << "each use counts anew";
  now += std::chrono::seconds(1);
  open(";Other=1");
  EXPECT_EQ(pool->idleCount(target), 0);
  EXPECT_THAT(seen(), ElementsAre("<disconnect>", "<connect>"));
  for (const char* setting : {";Pooling=no", ";Pool Idle Time=0"}) {
    open(setting);
    open(setting);
    EXPECT_THAT(seen(), ElementsAre("<connect>", "<disconnect>", "<connect>", "<disconnect>")) << setting;
  }
}

TEST_F(OdbcConnections, AreNotMoreThanThePoolsSize) {
  const std::string settings = ";Max Pool Size=2;Connect Timeout=0";
  auto first = open(settings), second = open(settings);
  EXPECT_EQ(descriptionOf([&] { open(settings); }), "All 2 connections to the database are in use");
  first->close();
  EXPECT_NO_THROW(first->open());
  server.refuseConnections(ServerMessage{"08001", 0, "down"});
  server.breakConnections();
  EXPECT_THROW(first->query("select 1"), Error);
  first->close();
  EXPECT_THROW(first->open(), Error);
  server.refuseConnections({});
  EXPECT_NO_THROW(first->open()) << "a refused connection takes no place";
}

}  // namespace
}  // namespace ondrel
