#include "data/query_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_database.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;

class QueryDatabase : public ::testing::Test {
 protected:
  QueryDatabase() { database.attachTo(apartment); }

  FakeDatabase database;
  Apartment apartment;
};

TEST_F(QueryDatabase, ReadsOnceOnAConnectionOfItsOwn) {
  database.answer("select 1", tableOf({"one"}, {{1}}));
  const RecordsetRef table = queryDatabase(apartment, "select 1");
  EXPECT_THAT(database.take(), ElementsAre("<timeout 240>", "<open>", "select 1", "<close>"));
  EXPECT_EQ(table->integer("one"), 1) << "readable after the connection is closed";
  EXPECT_FALSE(apartment.sharedConnection);
  queryDatabaseBatch(apartment, "select 2");
  EXPECT_THAT(database.take(), ElementsAre("<open>", "select 2", "<close>")) << "its own timeout";
}

TEST_F(QueryDatabase, WhatIsNoTextIsNotSent) {
  for (const std::string& sql : {std::string("delete t\0 where a = 1", 22), std::string("insert '\xE9'"),
                                 std::string("insert '\xED\xA0\xBD'"), std::string("insert '\xF0\x9F'")}) {
    EXPECT_THROW(queryDatabase(apartment, sql), Error);
    EXPECT_THROW(executeInTransaction(apartment, sql), Error);
    EXPECT_TRUE(database.take().empty()) << sql;
  }
  executeInTransaction(apartment, "insert 'Zoë 😀'");
}

TEST_F(QueryDatabase, AStatementAloneIsATransaction) {
  queryDatabase(apartment, "select 0");
  database.take();
  apartment.trace.start();
  executeInTransaction(apartment, "delete t");
  EXPECT_THAT(database.take(), ElementsAre("<open>", "<begin>", "delete t", "<commit>", "<close>"));
  EXPECT_THAT(apartment.trace.take(), ElementsAre("<begin>", "delete t", "<commit>", "<close>"));
  EXPECT_TRUE(apartment.trace.take().empty());
  EXPECT_TRUE(apartment.sharedCommand.empty());
  commitTransaction(apartment);
  closeTransaction(apartment);
  EXPECT_TRUE(database.take().empty()) << "nothing is open";
  EXPECT_THROW(queryInTransaction(apartment, "select 1"), Error);
}

TEST_F(QueryDatabase, StatementsOfOneTransactionShareTheConnection) {
  openTransaction(apartment);
  executeInTransaction(apartment, "insert a");
  queryInTransaction(apartment, "select a");
  EXPECT_EQ(apartment.sharedCommand, "insert a");
  commitTransaction(apartment);
  EXPECT_THAT(database.take(),
              ElementsAre("<open>", "<begin>", "insert a", "select a", "<commit>", "<close>"));

  openTransaction(apartment);
  executeInTransaction(apartment, "insert b");
  closeTransaction(apartment);
  EXPECT_THAT(database.take(), ElementsAre("<open>", "<begin>", "insert b", "<close>")) << "no commit";
}

TEST_F(QueryDatabase, AOneShotReadTakesTheTransactionsPlace) {
  openTransaction(apartment);
  executeInTransaction(apartment, "insert a");
  queryDatabase(apartment, "select 1");
  EXPECT_FALSE(apartment.sharedConnection);
  database.take();
  commitTransaction(apartment);
  EXPECT_TRUE(database.take().empty()) << "there is nothing left to commit";
}

TEST_F(QueryDatabase, AFailedStatementLeavesItsTransactionOpenForTheNext) {
  database.failStatement(1);
  EXPECT_THROW(executeInTransaction(apartment, "insert a"), Error);
  executeInTransaction(apartment, "insert b");
  EXPECT_THAT(database.take(), ElementsAre("<open>", "<begin>", "insert a", "insert b"))
      << "the next statement joins the transaction and does not commit it";
}

}  // namespace
}  // namespace ondrel
