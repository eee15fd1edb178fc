#include <gtest/gtest.h>

#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"

namespace ondrel {
namespace {

TEST(EmbeddedStore, HoldsTheSampleStore) {
  const EmbeddedStore store(StoreContents::Sample);
  const auto connection = store.connect();
  const RecordsetRef rows =
      connection->query("select name, defaultProcessingDays from store where storeid = '1'");
  ASSERT_EQ(rows->recordCount(), 1);
  EXPECT_EQ(rows->integer("defaultprocessingdays"), 3);
  EXPECT_TRUE(checkDatabase(*connection).empty());
}

}  // namespace
}  // namespace ondrel
