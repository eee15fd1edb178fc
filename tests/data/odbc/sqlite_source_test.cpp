#include <gtest/gtest.h>

#include "data/odbc/odbc_connection.h"
#include "support/error_of.h"
#include "support/temporary_folder.h"

namespace ondrel {
namespace {

// A source that is neither ours nor a SQL Server: a database file behind the driver of SQLite.
TEST(SqliteSource, GivesTypedRowsAndCommits) {
  const TemporaryFolder folder;
  const std::string note(100'000, 'n');
  const auto connection = connectOdbc({"Driver=SQLite3;Database=" + folder.path + "/t.db", "", "", nullptr},
                                      std::make_shared<OdbcPool>());
  connection->open();
  connection->execute(
      "create table t (id integer, name varchar(5), price double, ok bit, at datetime, note text)");
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

  connection->begin();
  connection->execute("insert into t (id) values (3)");
  EXPECT_NE(errorOf([&] { connection->execute("insert into nowhere values (1)"); }), 0);
  connection->commit();
  connection->begin();
  connection->execute("delete from t");
  connection->close();
  connection->open();
  EXPECT_EQ(connection->query("select id from t")->recordCount(), 3);
}

}  // namespace
}  // namespace ondrel
