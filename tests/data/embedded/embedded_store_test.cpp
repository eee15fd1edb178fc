#include "data/embedded/embedded_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "data/apartment.h"
#include "data/dialect/procedures/procedure.h"
#include "data/embedded/embedded_connection.h"
#include "data/odbc/odbc_connection.h"
#include "support/error_of.h"
#include "support/fake_database.h"
#include "support/odbc_double/odbc_double.h"
#include "support/temporary_folder.h"

namespace ondrel {

using namespace sql;

namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

std::unique_ptr<Connection> openFile(const std::string& path, int timeoutSeconds = 5) {
  auto connection = connectEmbedded({embeddedConnectionString(path), "", "", nullptr});
  connection->setCommandTimeout(timeoutSeconds);
  connection->open();
  return connection;
}

int countOf(Connection& connection, std::string_view table) {
  return connection.query("select count(*) as n from " + std::string(table))->integer("n");
}

void addDepartment(Connection& connection, int id) {
  connection.execute("insert into Department (departmentID, name) values (" + std::to_string(id) +
                     ", 'New')");
}

TEST(EmbeddedStore, StoresAreApartAndStartFresh) {
  std::string gone;
  {
    EmbeddedStore first;
    const EmbeddedStore second;
    gone = first.connectionString();
    const auto connection = first.connect();
    addDepartment(*connection, 1);
    first.replaceProcedure("sendtowhiteadc", 3, 3, [](ProcedureCall&) { return RecordsetRef(); });
    EXPECT_NO_THROW(connection->execute("sendtowhiteadc 'x', 1, 2"));
    second.connect()->execute("create table Extra (id int)");
    EXPECT_EQ(countOf(*second.connect(), "Extra") + countOf(*second.connect(), "Department"), 0);

    const EmbeddedStore copy = first.clone();
    addDepartment(*connection, 2);
    EXPECT_EQ(countOf(*copy.connect(), "Department"), 1);
  }
  EXPECT_THAT(descriptionOf([&] {
                connectEmbedded({gone, "", "", nullptr})->open();
              }),
              HasSubstr("no store of that name"));
  for (int k = 0; k < 3; ++k) {  // the databases of stores that are gone serve again
    const EmbeddedStore next;
    const auto connection = next.connect();
    EXPECT_EQ(countOf(*connection, "Department"), 0);
    EXPECT_THAT(descriptionOf([&] { connection->execute("sendtowhiteadc 'x', 1, 2"); }),
                HasSubstr("too many arguments"));
    EXPECT_NE(descriptionOf([&] { countOf(*connection, "Extra"); }), "");
    addDepartment(*connection, k);
  }
}

TEST(EmbeddedStore, CheckNamesWhatIsMissing) {
  EmbeddedStore store;
  const auto connection = store.connect();
  for (
      const char* change :
      {"drop table TAX", "drop table employee",
       "create table employee (employeeid int, storeId int, active bit, rights varchar(64), pinHash varchar(255))"})
    connection->execute(change);
  EXPECT_THAT(checkDatabase(*connection),
              ElementsAre("Table employee has no column employeename", "Table Tax is missing"));
}

// A shop's own rows hold Null where pages never asked; what is read through isnull takes it.
TEST(EmbeddedStore, ColumnsThatAreReadThroughIsNullMayBeNull) {
  const EmbeddedStore store(StoreContents::Sample);
  const auto connection = store.connect();
  connection->execute("insert into departmentquota (DepartmentName) values ('Laundry')");
  for (const char* column :
       {"Department.printNotes", "Department.splitGroup", "departmentquota.PiecesDue",
        "PriceListItem.printNotes", "ItemDescriptorPrice.printnotes", "descriptor.maxquantity",
        "rushupcharge.daystoprocess", "Customer.vipEligible"}) {
    const std::string name(column);
    const std::string table = name.substr(0, name.find('.')), field = name.substr(name.find('.') + 1);
    connection->execute("update " + table + " set " + field + " = null");
    const RecordsetRef rows = connection->query("select isnull(" + field + ", 7) as value from " + table);
    EXPECT_GT(rows->recordCount(), 0) << column;
    for (; !rows->eof(); rows->moveNext()) EXPECT_NE(rows->integer("value"), 0) << column;
  }
}

// A server need not have what only the embedded engine uses, but its own procedures and functions.
TEST(EmbeddedStore, CheckOfAServerAsksItsCatalogue) {
  FakeDatabase server;
  Apartment apartment;
  server.attachTo(apartment);
  const auto connection = apartment.connect({});
  server.answer("sysobjects where xtype in ('P'", tableOf({"name"}, {{"insertticket"}, {"UpdateTicket"}}));
  server.answer("sysobjects where xtype in ('FN'", tableOf({"name"}, {{"formatPhone"}}));
  server.answer("from Store where", tableOf({"STOREID", "defaultpickuptime"}, {}));
  const std::vector<std::string> findings = checkDatabase(*connection, CheckedStore::Server);
  EXPECT_THAT(findings,
              IsSupersetOf({"Procedure InsertPayment is missing", "Function getCustomerVisits is missing",
                            "Table Store has no column defaultProcessingDays",
                            "Table Ticket has no column dateout"}));
  for (const char* there : {"Procedure InsertTicket is missing", "Function formatPhone is missing",
                            "Table Store has no column storeId", "Table Store has no column address"})
    EXPECT_THAT(findings, Not(Contains(there)));
  EXPECT_THAT(server.take(), Not(Contains("select * from numbercounter where 1 = 0")));
}

TEST(EmbeddedStore, ForgetsTablesOfADiscardedTransaction) {
  const EmbeddedStore store;
  const auto connection = store.connect();
  connection->begin();
  connection->execute("create table Own (id int)");
  connection->execute("insert into Own values (1)");
  connection->close();
  EXPECT_EQ(descriptionOf([&] { countOf(*store.connect(), "Own"); }), "Invalid object name 'Own'.");
}

TEST(EmbeddedStore, ScriptsAreSplitWhereStatementsBegin) {
  const EmbeddedStore store;
  const auto connection = store.connect();
  runScript(
      *connection,
      "-- a note; with a semicolon\nset nocount on\ngo\ninsert into Department (departmentID, name)\n"
      "values (1, 'a; insert') insert into Department (departmentID, name) select 2, 'b'\ngo\n"
      "update Department set name = 'c' where departmentID = 2; delete Department where departmentID = 1");
  EXPECT_EQ(connection->query("select name from Department")->text("name"), "c");
}

enum class Road { File, Memory, Odbc };

// What holds for connections, whether the database is a file, in memory, or behind the driver manager.
class Connections : public testing::TestWithParam<Road> {
 protected:
  Connections() {
    if (GetParam() == Road::File) createDatabaseFile(path_, StoreContents::Empty);
  }
  std::unique_ptr<Connection> connect(int timeoutSeconds = 5) {
    if (GetParam() == Road::File) return openFile(path_, timeoutSeconds);
    auto connection = GetParam() == Road::Memory
                          ? connectEmbedded({store_.connectionString(), "", "", nullptr})
                          : connectOdbc({odbcString_, "", "", nullptr}, pool_);
    connection->setCommandTimeout(timeoutSeconds);
    connection->open();
    return connection;
  }

  TemporaryFolder folder_;
  std::string path_ = folder_.path + "/store.db";
  EmbeddedStore store_;
  StoreServer server_{store_, nullptr};
  std::string odbcString_ = connectionStringOf(server_) + ";Max Pool Size=3";  // threads wait for one another
  std::shared_ptr<OdbcPool> pool_ = std::make_shared<OdbcPool>();
};

TEST_P(Connections, ShowOthersOnlyWhatIsCommitted) {
  const auto writer = connect();
  const auto reader = connect();
  writer->begin();
  addDepartment(*writer, 1);
  EXPECT_EQ(countOf(*writer, "Department"), 1);
  EXPECT_EQ(countOf(*reader, "Department"), 0);
  writer->commit();
  EXPECT_EQ(countOf(*reader, "Department"), 1);
}

TEST_P(Connections, DiscardWhatIsOpenWhenTheyClose) {
  auto connection = connect();
  connection->begin();
  addDepartment(*connection, 1);
  connection->close();
  EXPECT_THROW(countOf(*connection, "Department"), Error);
  connection->open();
  connection->begin();
  addDepartment(*connection, 2);
  connection = nullptr;
  EXPECT_EQ(countOf(*connect(), "Department"), 0);
}

TEST_P(Connections, KeepTheTransactionWhenAStatementFails) {
  const auto connection = connect();
  connection->begin();
  addDepartment(*connection, 1);
  EXPECT_THROW(addDepartment(*connection, 1), Error);
  EXPECT_THROW(connection->execute("insert into Nowhere values (1)"), Error);
  EXPECT_THROW(connection->begin(), Error);
  connection->commit();
  EXPECT_EQ(countOf(*connection, "Department"), 1);
  EXPECT_THROW(connection->commit(), Error);
}

// Values stay bound from one run of a statement to the next: one that failed must not pass for bound.
TEST_P(Connections, SendTheValuesOfEachStatement) {
  const auto connection = connect();
  for (const std::string values :
       {"81, '12/24/2026', 1", "81, '12/24/2026', 2", "82, 'never', 2", "82, 'never', 2",
        "82, '12/24/2026', 2", "83, '2026-12-24', '2'", "83, '12/24/2026', 2"}) {
    const std::string insert =
        "insert into StoreHoliday (storeId, firstDay, duration) values (" + values + ")";
    EXPECT_EQ(descriptionOf([&] { connection->execute(insert); }) == "",
              values.find("never") == std::string::npos);
  }
  const RecordsetRef rows = connection->query(
      "select storeId, firstDay, duration from StoreHoliday where storeId > 80 order by storeId, duration");
  std::string told;
  for (; !rows->eof(); rows->moveNext())
    told += rows->text("storeId") + " " + rows->text("firstDay") + " " + rows->text("duration") + "; ";
  EXPECT_EQ(told, "81 12/24/2026 1; 81 12/24/2026 2; 82 12/24/2026 2; 83 12/24/2026 2; 83 12/24/2026 2; ");
}

TEST_P(Connections, WaitForAWriterUpToTheirTimeLimit) {
  const auto first = connect();
  const auto second = connect(1);
  first->begin();
  addDepartment(*first, 1);
  EXPECT_TRUE(descriptionOf([&] { addDepartment(*second, 2); }).starts_with("Timeout expired"));
  second->setCommandTimeout(10);
  std::thread later([&] {
    std::this_thread::sleep_for(100ms);
    first->commit();
  });
  addDepartment(*second, 2);
  later.join();
  EXPECT_EQ(countOf(*second, "Department"), 2);
}

TEST_P(Connections, ServeThreadsSideBySide) {
  constexpr int kThreads = 4, kRows = 25;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&, t] {
      for (int k = 0; k < kRows; ++k) {
        const auto connection = connect(60);
        connection->begin();
        addDepartment(*connection, t * kRows + k);
        connection->commit();
      }
    });
  for (std::thread& each : threads) each.join();
  EXPECT_EQ(countOf(*connect(), "Department"), kThreads * kRows);
}

INSTANTIATE_TEST_SUITE_P(Roads, Connections, testing::Values(Road::File, Road::Memory, Road::Odbc));

TEST(DatabaseFile, KeepsRowsAndSchema) {
  const TemporaryFolder folder;
  const std::string path = folder.path + "/kept.db";
  std::ofstream(path + ".new") << "what an interrupted start left";
  createDatabaseFile(path, StoreContents::Sample);
  EXPECT_FALSE(std::filesystem::exists(path + ".new"));
  EXPECT_THAT(descriptionOf([&] { createDatabaseFile(path, StoreContents::Empty); }),
              HasSubstr("exists already"));
  {
    const auto connection = openFile(path);
    connection->execute("create table Own (id int identity primary key, at datetime, ok bit)");
    connection->execute("insert into Own (at, ok) values ('11/24/2026 3:05:00 PM', 1)");
  }
  for (const std::string end : {"", "-wal"})
    if (std::filesystem::exists(path + end))
      std::filesystem::copy(path + end, folder.path + "/copy.db" + end);
  const auto copy = openFile(folder.path + "/copy.db");
  const RecordsetRef row = copy->query("select at, ok from Own where at = '2026-11-24 15:05'");
  EXPECT_TRUE(row->value("at").identicalTo(Date::of(2026, 11, 24, 15, 5)));
  EXPECT_TRUE(row->value("ok").identicalTo(true));
  EXPECT_THAT(checkDatabase(*copy), IsEmpty());

  // Made anew under the same name it is another database.
  std::filesystem::remove(path);
  createDatabaseFile(path, StoreContents::Empty);
  EXPECT_EQ(countOf(*openFile(path), "Department"), 0);
}

TEST(DatabaseFile, OfAnotherProgramIsRefused) {
  const TemporaryFolder folder;
  std::ofstream(folder.path + "/note.txt") << std::string(5000, 'x');
  sqlite3* other = nullptr;
  sqlite3_open((folder.path + "/other.db").c_str(), &other);
  sqlite3_exec(other, "create table t (x)", nullptr, nullptr, nullptr);
  sqlite3_close(other);
  const std::pair<const char*, const char*> cases[] = {{"note.txt", "file is not a database"},
                                                       {"other.db", "not a database of this program"},
                                                       {"missing.db", "does not exist"},
                                                       {"", "not a file"}};
  for (const auto& [file, reason] : cases)
    EXPECT_THAT(descriptionOf([&] { openFile(folder.path + "/" + file); }), HasSubstr(reason)) << file;
  EXPECT_THROW(connectEmbedded({"Driver=Embedded", "", "", nullptr})->open(), Error);
}

// Another process writes to the file and dies in the middle of a transaction.
TEST(DatabaseFile, IsSharedByProcesses) {
  const TemporaryFolder folder;
  const std::string path = folder.path + "/shared.db";
  constexpr int kRows = 20;
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    char mark;
    if (read(ready[0], &mark, 1) != 1) _exit(1);
    const auto connection = openFile(path, 30);
    for (int k = 0; k < kRows; ++k) addDepartment(*connection, k);
    connection->begin();
    addDepartment(*connection, 999);
    _exit(7);
  }
  createDatabaseFile(path, StoreContents::Empty);
  const auto connection = openFile(path, 30);
  ASSERT_EQ(write(ready[1], "x", 1), 1);
  for (int k = 0; k < kRows; ++k) addDepartment(*connection, 100 + k);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 7);
  EXPECT_EQ(countOf(*connection, "Department"), 2 * kRows) << "without the one that was open";
}

TEST(EmbeddedConnection, IsChosenByItsConnectionString) {
  EXPECT_TRUE(isEmbeddedConnectionString("driver = {embedded}; database=x.db"));
  EXPECT_FALSE(isEmbeddedConnectionString("Provider=SQLOLEDB;Data Source=shop;Initial Catalog=Embedded"));
  EXPECT_EQ(connectionStringValue("Driver=Embedded; DATABASE = /a b.db ;", "database"), "/a b.db");
  EXPECT_EQ(connectionStringValue("Driver=Embedded", "database"), std::nullopt);
}

TEST(EmbeddedConnection, MemoryIsOneStoreOfTheProcess) {
  const auto open = [] { return openFile(":memory:"); };
  addDepartment(*open(), 77);
  EXPECT_EQ(countOf(*open(), "Department where departmentID = 77"), 1);
}

}  // namespace
}  // namespace ondrel
