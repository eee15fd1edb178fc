#include "data/embedded/sqlite_emitter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "data/dialect/schema_statement.h"
#include "data/dialect/server_errors.h"
#include "data/dialect/shape.h"
#include "support/error_of.h"

namespace ondrel {

using namespace sql;

namespace {

Schema smallSchema() {
  Schema schema;
  for (const char* text : {"create table Item (id int identity primary key, name varchar(20), price money, "
                           "sold datetime, active bit)",
                           "create table Tag (itemId int, label varchar(8), note text)"})
    schema.add(readSchemaStatement(text).table);
  return schema;
}

TEST(Translation, KeepsTheFormThatTheEngineRunsWell) {
  const std::pair<const char*, const char*> cases[] = {
      // clang-format off
      {"select id from Item i with (nolock) where id in (select top 2 itemId from Tag)",
       R"(select "i"."id" from "Item" as "i" where "i"."id" in (select "Tag"."itemId" from "Tag" limit ?))"},
      {"select upper(name) n from Item order by n", R"(select upper("Item"."name") from "Item" order by 1 collate store)"},
      // + joins with a text on either side, and adds otherwise.
      {"select name + label, price + 1 from Item, Tag",
       R"(select "Item"."name" || "Tag"."label", "Item"."price" + ? from "Item", "Tag")"},
      // A text that is no column brings no collation along.
      {"select 1 from Item where upper(name) = 'A'", R"(select ? from "Item" where upper("Item"."name") collate store = ?)"},
      {"select 1 from Item where name = 'A'", R"(select ? from "Item" where "Item"."name" = ?)"},
      {"select 1 from Item where (active = 1 or id = 2) and not id = 3",
       R"(select ? from "Item" where ("Item"."active" = ? or "Item"."id" = ?) and not ("Item"."id" = ?))"},
      {"update Item set item.price = price + 1 from Item inner join Tag t on t.itemId = id where label = 'x'",
       R"(update "Item" set "price" = "the change".value0 from (select "Item".rowid as target, )"
       R"(to_column("Item"."price" + ?, 4, 8, 0, 0) as value0 from "Item" join "Tag" as "t" on "t"."itemId" = "Item"."id" )"
       R"(where "t"."label" = ?) as "the change" where "Item".rowid = "the change".target)"},
      // clang-format on
  };
  for (const auto& [statement, sql] : cases) EXPECT_EQ(translateForSqlite(statement, smallSchema()).sql, sql);
}

TEST(Translation, ErrorsNameStatementPositionAndWord) {
  const std::pair<const char*, const char*> cases[] = {
      {"select id from Item whree id = 1", "near 'id' at position 27 of: select id"},
      {"select id from Item where id = = 1", "near '=' at position 32"},
      {"select id from Item where name = 'open", "near ''open' at position 34"},
      {"update Item set price = where id = 1", "near 'where' at position 25"},
      {"insert into Item (name) values ('a'", "near the end at position 36"},
      {"truncate table Item", "near 'table' at position 10"},
      {"select id from Item where @x = 1", "near '@x' at position 27"},
      {"select cost from Item", "Invalid column name 'cost' at position 8"},
      {"select price from Itemz", "Invalid object name 'Itemz'"},
      {"select itemId from Tag a, Tag b", "Ambiguous column name 'itemId'"},
      {"select median(price) from Item", "'median' is not a known function name, at position 8"},
      {"select \"a text\" from Item", "Invalid column name 'a text'"},
  };
  for (const auto& [statement, complaint] : cases)
    EXPECT_THAT(descriptionOf([&] { translateForSqlite(statement, smallSchema()); }),
                testing::HasSubstr(complaint))
        << statement;
}

// A statement that goes deep into itself is refused before it has used up the stack, however it does so.
TEST(Translation, NestsOnlySoFar) {
  struct Nest {
    const char *begin, *open, *middle, *close;
    int deep;  // that still passes
  };
  constexpr Nest kNests[] = {
      // clang-format off
      {"select ",                    "(",                        "1",                  ")", 300},
      {"select ",                    "~ ",                       "1",                  "", 300},
      {"select ",                    "upper(",                   "'a'",                ")", 300},
      {"select ",                    "case when 1 = 1 then ",    "1",                  " end", 150},
      {"select 1 from Item where ",  "not ",                     "id = 1",             "", 300},
      {"select 1 from Item where ",  "id in (select id from Item where ", "id = 1",    ")", 100},
      {"select 1 from ",             "(",                        "Item",               " cross join Tag)", 100},
      {"select ",                    "1 + ",                     "1",                  "", 900},
      {"select 1 from Item where ",  "id = 1 or ",               "id = 2",             "", 900},
      // clang-format on
  };
  const Schema schema = smallSchema();
  for (const Nest& nest : kNests) {
    const auto statement = [&](int depth) {
      std::string result = nest.begin;
      for (int k = 0; k < depth; ++k) result += nest.open;
      result += nest.middle;
      for (int k = 0; k < depth; ++k) result += nest.close;
      return result;
    };
    EXPECT_NO_THROW(translateForSqlite(statement(nest.deep), schema)) << nest.begin << nest.open;
    EXPECT_EQ(errorOf([&] { translateForSqlite(statement(50'000), schema); }),
              static_cast<int>(ServerError::NestedTooDeeply))
        << nest.begin << nest.open;
  }
}

TEST(Translation, ValuesAreNotPartOfTheShape) {
  const auto shapeOf = [](std::string_view statement) {
    StatementShape shape;
    shape.assign(statement);
    return std::string(shape.key());
  };
  EXPECT_EQ(shapeOf("select a from t where b = 1 and c = 'x'"),
            shapeOf("select a  from t where b=-2.5 and c='O''Brien' -- x"));
  EXPECT_NE(shapeOf("select a from t where b = 1"), shapeOf("select a from t where b = '1'"));
  EXPECT_NE(shapeOf("select a - 1 from t"), shapeOf("select a + 1 from t"));
  EXPECT_NE(shapeOf("select [a b] from t"), shapeOf("select a b from t"));
  EXPECT_EQ(translateForSqlite("select convert(varchar(5), name) as 'n' from Item order by 1", smallSchema())
                .fixedLiterals.size(),
            3U);
}

// What a pattern lets pass has the shape of the statement that it was made from, and the same literals are found.
TEST(Translation, APatternLetsNothingElsePass) {
  constexpr std::string_view kStatements[] = {
      "insert into Tag (itemId, label, note) values (-1,'a', N'it''s')",
      "select top 5 [a b], x - 1 from t where d='' and e>.5 -- and 7",
      "update t set a = a+1, b = -2.5e3 where c in ( 1,2 ) and n <> 'x' /* 'y' */"};
  constexpr std::string_view kPieces = "0123456789.-'',eEN() /*=<a\n";
  std::mt19937 random(20261124);
  int passed = 0;
  for (const std::string_view statement : kStatements) {
    const StatementPattern pattern(statement, {});
    for (int round = 0; round < 20'000; ++round) {
      std::string changed(statement);
      for (auto edits = random() % 3; edits-- > 0;)
        changed.replace(random() % changed.size(), random() % 2, 1, kPieces[random() % kPieces.size()]);
      std::vector<Token> literals;
      if (!pattern.fits(changed, literals)) continue;
      ++passed;
      StatementShape before, after;
      before.assign(statement);
      after.assign(changed);
      ASSERT_EQ(after.key(), before.key()) << changed;
      ASSERT_EQ(after.literals().size(), literals.size()) << changed;
      for (size_t k = 0; k < literals.size(); ++k) {
        EXPECT_EQ(after.literals()[k].text, literals[k].text) << changed;
        EXPECT_EQ(after.literals()[k].doubled, literals[k].doubled) << changed;
      }
    }
  }
  EXPECT_GT(passed, 20'000);
  const auto fits = [](const char* pattern, std::span<const int> fixed, const char* statement) {
    std::vector<Token> literals;
    return StatementPattern(pattern, fixed).fits(statement, literals);
  };
  constexpr int kFixed[] = {0};
  EXPECT_TRUE(fits("select top 5 a from t where b = 1", kFixed, "select top 5 a from t where b = -22.5"));
  EXPECT_FALSE(fits("select top 5 a from t where b = 1", kFixed, "select top 6 a from t where b = 1"));
  EXPECT_FALSE(fits("a = 2 and.5 < x", {}, "a = 2 and1.5 < x")) << "and1 is a word";
  EXPECT_TRUE(fits("a = 2 and.5 < x", {}, "a = 3 and.75 < x"));
}

}  // namespace
}  // namespace ondrel
