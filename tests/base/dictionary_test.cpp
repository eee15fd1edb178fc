#include "base/dictionary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/error_of.h"

namespace ondrel {
namespace {

std::vector<std::string> texts(const std::vector<Variant>& values) {
  std::vector<std::string> result;
  for (const Variant& value : values) result.push_back(value.joined());
  return result;
}

TEST(DictionaryTest, KeysAreNumbersByValueAndTextsByCase) {
  Dictionary tags;
  tags.add(1, "long");
  tags.add("1", "text");
  tags.add("Tag", "upper");
  tags.add("tag", "lower");
  EXPECT_EQ(tags.item(1.0).toText() + tags.item("1").toText() + tags.item("tag").toText(), "longtextlower");
  EXPECT_FALSE(tags.exists("TAG"));
  EXPECT_EQ(errorOf([&] { tags.add(1.0, "again"); }), 457);
  EXPECT_EQ(errorOf([&] { tags.exists(Variant::null()); }), 5);
}

TEST(DictionaryTest, ReadingAMissingKeyEntersIt) {
  Dictionary days;
  EXPECT_EQ(days.find("dept"), nullptr);
  EXPECT_EQ(days.count(), 0);
  EXPECT_TRUE(days.item("dept").isEmpty());
  EXPECT_TRUE(days.exists("dept"));
  days.setItem("dept", 3);
  days.setItem("other", 4);
  EXPECT_EQ(days.find("dept")->toLong(), 3);
  EXPECT_EQ(days.count(), 2);
}

TEST(DictionaryTest, KeepsTheOrderOfEntryThroughRemovals) {
  Dictionary seals;
  for (const char* key : {"d", "b", "a", "c"}) seals.add(key, std::string(key) + key);
  seals.setItem("b", "changed");
  seals.remove("d");
  seals.remove("a");
  seals.add("d", "back");
  EXPECT_THAT(texts(seals.keys()), testing::ElementsAre("b", "c", "d"));
  EXPECT_THAT(texts(seals.items()), testing::ElementsAre("changed", "cc", "back"));
  EXPECT_EQ(seals.item("c").toText(), "cc");
  EXPECT_EQ(errorOf([&] { seals.remove("a"); }), 32811);
  seals.removeAll();
  EXPECT_EQ(seals.count(), 0);
  EXPECT_FALSE(seals.exists("b"));
}

}  // namespace
}  // namespace ondrel
