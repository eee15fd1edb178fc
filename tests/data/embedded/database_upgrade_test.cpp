#include "data/embedded/database_upgrade.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "data/dialect/store_scripts.h"
#include "data/embedded/database_files.h"
#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"
#include "data/embedded/setup_transfer.h"
#include "support/error_of.h"
#include "support/temporary_folder.h"

namespace ondrel {

using namespace sql;

namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class DatabaseUpgradeTest : public ::testing::Test {
 protected:
  DatabaseUpgradeTest() { createDatabaseFile(path, StoreContents::Sample); }

  // Statements of the table engine itself, as an older program would have left the file.
  void plain(const std::string& sql) {
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &handle), SQLITE_OK);
    sqlite3_create_collation(handle, "store", SQLITE_UTF8, nullptr,
                             [](void*, int a, const void* x, int b, const void* y) {
                               return sqlite3_strnicmp(static_cast<const char*>(x),
                                                       static_cast<const char*>(y), std::min(a, b) + 1);
                             });
    char* reason = nullptr;
    EXPECT_EQ(sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, &reason), SQLITE_OK)
        << (reason ? reason : "");
    sqlite3_close(handle);
  }
  // The file as the program before its first version left it: fewer tables, columns and indices.
  void makeOld() {
    plain(
        "drop table SchemaVersion; drop table ShopLog; drop index TicketByInvoice;"
        "delete from ondrel_schema where name in ('SchemaVersion', 'ShopLog');"
        "alter table Customer drop column notes;"
        "update ondrel_schema set text = replace(text, 'notes varchar(255),  -- own', '') where name = 'Customer'");
  }
  std::unique_ptr<Connection> open(const std::string& name) {
    auto connection = connectEmbedded({embeddedConnectionString(name), "", "", nullptr});
    connection->open();
    return connection;
  }
  std::string scalar(const std::string& name, const std::string& sql) {
    return open(name)->query(sql)->value(Column(0)).joined();
  }

  TemporaryFolder folder;
  std::string path = folder.path + "/shop.db";
};

TEST_F(DatabaseUpgradeTest, AnOlderDatabaseGetsWhatItLacksAndKeepsItsRows) {
  makeOld();
  const DatabaseUpgrade done = upgradeDatabase(path);
  EXPECT_EQ(done.from, 0);
  EXPECT_EQ(done.to, schemaVersion());
  EXPECT_THAT(done.added, Contains("table ShopLog"));
  EXPECT_THAT(done.added, Contains("column Customer.notes"));
  EXPECT_THAT(done.added, Contains("index TicketByInvoice"));
  EXPECT_THAT(missingFromDatabase(path), IsEmpty());
  // The column is there for statements of the same process, and for one that opens the file anew.
  open(path)->execute("update Customer set notes = 'Rings twice' where customerSequenceNumber = 1");
  forgetDatabaseFile(path);
  EXPECT_EQ(scalar(path, "select notes from Customer where customerSequenceNumber = 1"), "Rings twice");
  EXPECT_EQ(scalar(path, "select lastName from Customer where customerSequenceNumber = 1"), "Fenwick");
  EXPECT_THAT(checkDatabase(*open(path)), IsEmpty());
  // As it was: the copy is still the old one.
  EXPECT_THAT(missingFromDatabase(done.copy), Contains("table ShopLog"));
  EXPECT_EQ(scalar(done.copy, "select count(*) from Ticket"), scalar(path, "select count(*) from Ticket"));
}

TEST_F(DatabaseUpgradeTest, WhatIsUpToDateIsLeftAlone) {
  const DatabaseUpgrade done = upgradeDatabase(path);
  EXPECT_EQ(done.copy, "");
  EXPECT_THAT(done.added, IsEmpty());
}

TEST_F(DatabaseUpgradeTest, TheDatabaseOfANewerProgramIsRefused) {
  open(path)->execute("update SchemaVersion set version = version + 1");
  forgetDatabaseFile(path);
  EXPECT_THAT(descriptionOf([&] { upgradeDatabase(path); }), HasSubstr("a newer program made it"));
  EXPECT_THAT(descriptionOf([&] { open(path); }), HasSubstr("a newer program made it"));
}

TEST_F(DatabaseUpgradeTest, AnIndexWithOtherColumnsIsMadeAnew) {
  plain("drop index TicketByInvoice; create index TicketByInvoice on Ticket (storeId)");
  forgetDatabaseFile(path);
  EXPECT_THAT(upgradeDatabase(path).added, Contains("index TicketByInvoice with other columns"));
  EXPECT_THAT(missingFromDatabase(path), IsEmpty());
}

TEST_F(DatabaseUpgradeTest, ABackupHoldsWhatIsCommittedWhileAnotherConnectionWrites) {
  const auto writer = open(path);
  writer->begin();
  writer->execute("update Customer set notes = 'not yet' where customerSequenceNumber = 1");
  const std::string target = folder.path + "/copy.db";
  backUpDatabase(path, target);
  writer->commit();
  EXPECT_EQ(scalar(target, "select isnull(notes, '-') from Customer where customerSequenceNumber = 1"), "-");
  EXPECT_EQ(errorOf([&] { backUpDatabase(path, target); }), 58);
}

TEST_F(DatabaseUpgradeTest, ASetUpGoesFromOneStoreToAnother) {
  const std::string text = exportedStore(*open(path), false);
  const std::string other = folder.path + "/other.db";
  createDatabaseFile(other, StoreContents::Empty);
  EXPECT_GT(importStore(*open(other), text, false), 700);
  EXPECT_EQ(exportedStore(*open(other), false), text);
  EXPECT_EQ(scalar(other, "select count(*) from Customer"), "0");
  // Nothing of a text is taken whose last statement is no row.
  EXPECT_THAT(descriptionOf([&] {
                importStore(*open(other),
                            "insert into Tax (storeID, taxCode) values (1, 77); delete from Store", true);
              }),
              HasSubstr("Statement 2"));
  EXPECT_EQ(scalar(other, "select count(*) from Tax where taxCode = 77"), "0");
  EXPECT_EQ(errorOf([&] { importStore(*open(other), text, false); }), 58);
}

}  // namespace
}  // namespace ondrel
