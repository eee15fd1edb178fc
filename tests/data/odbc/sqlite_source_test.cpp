#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <thread>

#include "data/odbc/odbc_connection.h"
#include "support/error_of.h"

namespace ondrel {
namespace {

// A source that is neither ours nor a SQL Server: a database file behind the driver of SQLite.
class SqliteSource : public testing::Test {
 protected:
  SqliteSource() {
    std::filesystem::remove(path);
    open()->execute(
        "create table t (id integer, name varchar(5), price double, ok bit, at datetime, note text)");
  }
  ~SqliteSource() override {
    pool = nullptr;
    std::filesystem::remove(path);
  }
  std::unique_ptr<Connection> open() {
    auto connection =
        connectOdbc({"Driver=SQLite3;Timeout=20000;Database=" + path.string(), "", "", nullptr}, pool);
    connection->open();
    return connection;
  }
  int count() { return open()->query("select id from t")->recordCount(); }

  std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("ondrel-odbc-" + std::to_string(getpid()) + ".db");
  std::shared_ptr<OdbcPool> pool = std::make_shared<OdbcPool>();
};

TEST_F(SqliteSource, GivesTypedRows) {
  const std::string note(100'000, 'n');
  const auto connection = open();
  connection->execute("insert into t values (1, 'Zoë ? {x}', 2.5, 1, '2026-11-24 10:30:00', '" + note + "')");
  connection->execute("insert into t (id) values (2)");
  const RecordsetRef table = connection->query("select * from t order by id");
  ASSERT_EQ(table->recordCount(), 2);
  EXPECT_TRUE(table->value("id").identicalTo(1));
  EXPECT_TRUE(table->value("name").identicalTo("Zoë ? {x}"));
  EXPECT_TRUE(table->value("price").identicalTo(2.5));
  EXPECT_TRUE(table->value("ok").identicalTo(true));
  EXPECT_TRUE(table->value("at").identicalTo(Date::of(2026, 11, 24, 10, 30)));
  EXPECT_EQ(table->text("note"), note);
  table->moveNext();
  for (const char* column : {"name", "price", "ok", "at", "note"})
    EXPECT_TRUE(table->isNull(column)) << column;
  EXPECT_FALSE(connection->query("update t set id = 3 where id = 99")->isOpen());
  EXPECT_EQ(connection->query("select * from t where id = 99")->recordCount(), 0);
}

TEST_F(SqliteSource, CommitsAndDiscards) {
  auto connection = open();
  connection->begin();
  connection->execute("insert into t (id) values (1)");
  EXPECT_EQ(connection->query("select id from t")->recordCount(), 1);
  EXPECT_NE(errorOf([&] { connection->execute("insert into nowhere values (1)"); }), 0);
  connection->commit();
  EXPECT_EQ(count(), 1);
  connection->begin();
  connection->execute("insert into t (id) values (2)");
  connection->close();
  EXPECT_EQ(count(), 1) << "the connection that the pool hands out again has no transaction";
  connection->open();
  connection->begin();
  connection->execute("delete from t");
  connection = nullptr;
  EXPECT_EQ(count(), 1);
}

TEST_F(SqliteSource, ServesThreads) {
  constexpr int kThreads = 4, kRows = 5;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&] {
      for (int k = 0; k < kRows; ++k) open()->execute("insert into t (id) values (1)");
    });
  for (std::thread& each : threads) each.join();
  EXPECT_EQ(count(), kThreads * kRows);
}

}  // namespace
}  // namespace ondrel
