#include <gtest/gtest.h>

#include "data/embedded/embedded_store.h"
#include "support/error_of.h"

namespace ondrel {

using namespace sql;

namespace {

// A small table of its own in an empty store, at a fixed moment: Tuesday 2026-11-24, 10:30.
class Dialect : public testing::Test {
 protected:
  Dialect() {
    runScript(*connection_,
              "create table Piece (id int identity primary key, name varchar(10), notes text, price money, "
              "weight float, "
              "pieces int, done bit not null default 0, due datetime, day date, code char(3)) "
              "create table Part (pieceId int, label varchar(20))");
  }

  void execute(std::string_view sql) { connection_->execute(sql); }
  Variant valueOf(std::string_view sql) {
    const RecordsetRef rows = connection_->query(sql);
    return rows->eof() ? Variant("no row") : rows->value(Column(0));
  }
  // The first column of all rows, joined with blanks.
  std::string listOf(std::string_view sql) {
    std::string result;
    for (const RecordsetRef rows = connection_->query(sql); !rows->eof(); rows->moveNext())
      result += (result.empty() ? "" : " ") + rows->value(Column(0)).joined();
    return result;
  }
  int errorOf(std::string_view sql) {
    return ondrel::errorOf([&] { connection_->query(sql); });
  }

  EmbeddedStore store_;
  std::shared_ptr<FixedClock> clock_ = std::make_shared<FixedClock>(Date::of(2026, 11, 24, 10, 30, 0));
  std::unique_ptr<Connection> connection_ = store_.connect(clock_);
};

TEST_F(Dialect, ValuesOfExpressions) {
  const Variant yes = 1, null = Variant::null();
  // clang-format off
  const std::pair<const char*, Variant> cases[] = {
      {"7 / 2", 3},                              {"7 / 2.0", 3.5},                      {"7 % 4", 3},
      {"1 + 2 * 3", 7},                          {"(1 + 2) * 3", 9},                    {"-5 + 2", -3},
      {"'a' + 'b'", "ab"},                       {"'a' + null", null},                  {"'n' + convert(varchar, 12)", "n12"},
      {"isnull(null, 4)", 4},                    {"isnull('x', 'y')", "x"},             {"coalesce(null, null, 'z')", "z"},
      {"nullif('a', 'A ')", null},               {"case when 'abc' = 'ABC ' then 1 else 0 end", yes},
      {"case when '09' = 9 then 1 end", yes},    {"case 'x' when 'y' then 1 end", null},    {"case when 'a' in ('B', 'A') then 1 end", yes},
      {"case when 'é' = 'É' then 1 end", yes},   {"case when 'b' between 'A' and 'C' then 1 end", yes},
      {"case when null = null then 1 else 0 end", 0},
      {"case when 'Blue' like 'bl%' then 1 end", yes}, {"case when 'cat' like '[a-c]_t' then 1 end", yes},
      {"case when 'dat' not like '[^a-c]%' then 1 else 0 end", 0},
      {"len('abc  ')", 3},                       {"upper('Größe é')", "GRÖßE É"},       {"substring('hello', 2, 3)", "ell"},
      {"substring('hello', 0, 3)", "he"},        {"left('hello', 2)", "he"},            {"right('hello', 2)", "lo"},
      {"replace('Banana', 'AN', '-')", "B--a"},  {"charindex('N', 'banana', 4)", 5},    {"ltrim(rtrim('  x '))", "x"},
      {"round(2.345, 2)", 2.35},                 {"round(-2.5, 0)", -3.0},              {"abs(-4)", 4},
      {"convert(int, '12')", 12},                {"convert(int, 3.9)", 3},              {"convert(varchar(3), 'abcdef')", "abc"},
      {"cast('1' as bit)", true},                {"convert(datetime, '')", Date::of(1900, 1, 1)},
      {"convert(varchar, getdate(), 101)", "11/24/2026"},   {"convert(varchar, getdate(), 110)", "11-24-2026"},
      {"convert(varchar, getdate(), 108)", "10:30:00"},     {"convert(varchar, getdate(), 120)", "2026-11-24 10:30:00"},
      {"convert(varchar, getdate())", "Nov 24 2026 10:30AM"}, {"convert(varchar(4), getdate(), 112)", "2026"},
      {"convert(varchar, '11/24/2026', 110)", "11/24/2026"},  // a style concerns dates only
      {"getdate()", Date::of(2026, 11, 24, 10, 30, 0)},
      {"datediff(day, '2026-11-23 23:59:00', getdate())", 1}, {"datediff(dd, getdate(), '11/24/2026 11:59:00 PM')", 0},
      {"datediff(mm, '2026-10-31', '2026-11-01')", 1},        {"datediff(minute, '10:29:59', '10:30:00')", 1},
      {"datediff(year, '2026-12-31', '2027-01-01')", 1},      {"datediff(week, '2026-11-21', '2026-11-22')", 1},
      {"datediff(hour, '2026-11-24 09:59', getdate())", 1},   {"datediff(day, null, getdate())", null},
      {"dateadd(month, 1, '2026-01-31')", Date::of(2026, 2, 28)}, {"dateadd(hour, -11, getdate())", Date::of(2026, 11, 23, 23, 30)},
      {"getdate() + 1", Date::of(2026, 11, 25, 10, 30)},      {"datepart(weekday, getdate())", 3},
      {"year(getdate())", 2026},                              {"datename(month, getdate())", "November"},
      {"dbo.formatPhone('802', '5550101')", "(802) 555-0101"}, {"dbo.formatPhone(null, '555-0101')", "555-0101"},
  };
  // clang-format on
  for (const auto& [expression, expected] : cases) {
    const Variant value = valueOf(std::string("select ") + expression);
    EXPECT_TRUE(value.identicalTo(expected)) << expression << " gives " << value.joined();
  }
}

TEST_F(Dialect, ColumnsReadBackWithTheirDeclaredTypes) {
  execute(
      "insert into Piece (name, price, weight, pieces, done, due, day, code) "
      "values ('Coat', 12.34567, 1.5, '7', 1, '11/24/2026 3:05:00 PM', '2026-11-24 15:05', 'ab')");
  const RecordsetRef row = connection_->query(
      "select *, isnull(done, 0), isnull(due, getdate()) as when_due, price * 2 as twice, "
      "1 as one, 1.5 as half, count(*) + 1 as n from Piece");
  EXPECT_EQ(row->fieldType(row->column("pieces")), FieldType::Long);
  EXPECT_EQ(row->fieldType(row->column("done")), FieldType::Boolean);
  EXPECT_EQ(row->fieldType(Column(10)), FieldType::Boolean);  // through isnull
  EXPECT_EQ(row->fieldName(Column(10)), "");
  EXPECT_EQ(row->fieldType(row->column("when_due")), FieldType::Date);
  EXPECT_EQ(row->fieldSize(row->column("name")), 10);
  EXPECT_EQ(row->fieldSize(row->column("notes")), 0);
  EXPECT_TRUE(row->value("price").identicalTo(12.3457));
  EXPECT_TRUE(row->value("due").identicalTo(Date::of(2026, 11, 24, 15, 5, 0)));
  EXPECT_TRUE(row->value("day").identicalTo(Date::of(2026, 11, 24)));
  EXPECT_TRUE(row->value("twice").identicalTo(24.6914));
  EXPECT_TRUE(row->value("one").identicalTo(1));
  EXPECT_TRUE(row->value("half").identicalTo(1.5));
  EXPECT_TRUE(row->value("n").identicalTo(2));
  EXPECT_TRUE(row->isNull("notes"));
}

TEST_F(Dialect, WhatDoesNotFitAColumnIsAnError) {
  const std::pair<const char*, int> cases[] = {
      // clang-format off
      {"insert into Piece (name) values ('eleven long')", 8152},
      {"insert into Piece (name) values ('ten e long')", 0},
      {"insert into Piece (name) values ('ééééééééää')", 0},  // characters, not bytes
      {"insert into Piece (name) values ('blanks    ' + '  ')", 0},
      {"insert into Piece (name) select notes + '12345678901' from Piece", 0},  // all Null
      {"update Piece set notes = 'quite long'", 0},
      {"update Piece set name = notes + notes", 8152},
      {"update Piece set pieces = 'three'", 245},
      {"update Piece set pieces = '3.5'", 245},
      {"update Piece set pieces = 3000000000", 8115},
      {"update Piece set due = 'tomorrow'", 241},
      {"update Piece set due = '2026-02-30'", 241},
      {"select 1 from Piece where pieces = 'three'", 245},
      {"update Piece set price = price / (pieces - pieces), pieces = 1", 0},  // Null divides to Null
      {"update Piece set price = 1 / (pieces - 1)", 8134},
      {"update Piece set done = null", 515},
      {"insert into Piece (name, pieces) values ('a')", 109},
      {"insert into Part select 1, 'a', 'b'", 213},
      {"insert into Part values (1, convert(varchar, getdate()))", 0},
      // clang-format on
  };
  for (const auto& [statement, error] : cases) EXPECT_EQ(errorOf(statement), error) << statement;
}

TEST_F(Dialect, NamesAndTextsIgnoreCaseAndTrailingBlanks) {
  execute("insert into Piece (name, notes) values ('Café', 'a'), ('CAFÉ  ', 'b'), ('cafe', 'c')");
  EXPECT_EQ(listOf("SELECT NOTES FROM piece WHERE NAME = 'cafÉ '"), "a b");
  EXPECT_EQ(valueOf("select count(distinct name) from Piece").toLong(), 2);
  for (const char* query : {"select name from Piece group by name",
                            "select upper(name) from Piece union select lower(name) from Piece"})
    EXPECT_EQ(connection_->query(query)->recordCount(), 2) << query;
}

TEST_F(Dialect, IdentityIsOfTheConnectionAndIsNotUsedTwice) {
  EXPECT_TRUE(valueOf("select @@identity as newID").isNull());
  execute("insert into Piece (name) values ('one')");
  execute("insert into Part values (1, 'no identity'), (1, 'of its own')");
  EXPECT_EQ(valueOf("select @@identity").toLong(), 1);
  execute("insert into Piece (name) select 'none' from Piece where 1 = 2");
  EXPECT_EQ(valueOf("select @@identity").toLong(), 1);
  const auto other = store_.connect(clock_);
  EXPECT_TRUE(other->query("select @@identity as newID")->isNull("newID"));
  execute("delete Piece");
  other->execute("insert into Piece (name) values ('two')");
  EXPECT_EQ(other->query("select @@identity as newID")->integer("newID"), 2);
  EXPECT_EQ(valueOf("select @@identity").toLong(), 1);
}

TEST_F(Dialect, UpdatesAndDeletesThroughAJoin) {
  execute("insert into Piece (name, pieces) values ('a', 1), ('b', 1), ('c', 1)");
  execute("insert into Part values (1, 'x'), (3, 'x'), (2, 'y')");
  execute(
      "update Piece set Piece.pieces = Piece.pieces + 1 from Piece inner join Part on Part.pieceId = "
      "Piece.id where Part.label = 'x'");
  EXPECT_EQ(listOf("select pieces from Piece order by id"), "2 1 2");
  execute(
      "update p set name = 'z', p.pieces = null from Part left join Piece p on p.id = Part.pieceId where "
      "label = 'Y'");
  EXPECT_EQ(listOf("select name from Piece where pieces is null"), "z");
  execute("update Piece set notes = label from Part where Part.pieceId = Piece.id");
  EXPECT_EQ(listOf("select notes from Piece order by id"), "x y x");
  execute("delete p from Piece p join Part on pieceId = id where label = 'x'");
  EXPECT_EQ(listOf("select name from Piece"), "z");
}

TEST_F(Dialect, QueriesFindTheirRows) {
  execute(
      "insert into Piece (name, pieces, price, due) values ('early', 9, 9.5, '2026-11-24 08:00:00'), "
      "('late', 10, 10, '11/24/2026 3:05:00 PM'), ('none', null, null, ''), ('5', null, null, '17:05')");
  execute("insert into Part values (1, 'x'), (1, 'y'), (3, 'x')");
  const std::pair<const char*, const char*> cases[] = {
      // clang-format off
      // dates, whatever their form
      {"select name from Piece where due = '11/24/2026 8:00:00 AM'", "early"},
      {"select name from Piece where '2026-11-24T15:05:00' = due", "late"},
      {"select name from Piece where due > '11/24/2026'", "early late"},
      {"select name from Piece where due between '11/24/2026 9:00 AM' and '11/25/2026'", "late"},
      {"select name from Piece where due in ('11/24/2026 3:05:00 PM', '1/1/1900')", "late none"},
      {"select name from Piece where due < getdate() order by due desc", "early 5 none"},
      {"select due from Piece where name = 'none'", "1/1/1900"},
      {"select due from Piece where name = '5'", "1/1/1900 5:05:00 PM"},
      // numbers, quoted or not
      {"select name from Piece where pieces > '9'", "late"},
      {"select name from Piece where price in ('9.50', 10)", "early late"},
      {"select name from Piece where pieces not in (9)", "late"},
      {"select name from Piece where done = 'false' and pieces = ' 9'", "early"},
      // queries in queries
      {"select name from Piece p where exists (select * from Part where pieceId = p.id and label = 'Y')", "early"},
      {"select name from Piece where id = (select max(pieceId) from Part)", "none"},
      {"select pieceId from Part where label = 'x' intersect select pieceId from Part where label = 'y'", "1"},
      {"select top 2 name from Piece order by pieces desc", "late early"},
      {"select t.label + convert(varchar, t.n) from (select label, count(*) as n from Part group by label having "
       "count(*) > 1) t", "x2"},
      {"select name from Piece left outer join Part on pieceId = id where label is null", "late 5"},
      {"select sum(pieces) from Piece where pieces > 99", ""},
      // clang-format on
  };
  for (const auto& [query, list] : cases) EXPECT_EQ(listOf(query), list) << query;
}

TEST_F(Dialect, OneShapeServesManyValues) {
  for (int k = 1; k <= 3; ++k)
    execute("insert into Piece (name, pieces) values ('it''s " + std::to_string(k) + "', " +
            std::to_string(-k) + ")");
  EXPECT_EQ(listOf("select name from Piece where pieces < -1"), "it's 2 it's 3");
  EXPECT_EQ(listOf("select convert(varchar(2), name) from Piece where id = 1"), "it");
  EXPECT_EQ(listOf("select convert(varchar(4), name) from Piece where id = 1"), "it's");
  for (const std::string name : {"first", "second"})
    EXPECT_EQ(connection_->query("select name as '" + name + "' from Piece")->fieldName(Column(0)), name);
}

TEST_F(Dialect, LongValuesStayWhole) {
  const std::string text(70'000, 'x');
  execute("insert into Piece (notes) values ('" + text + "')");
  EXPECT_EQ(valueOf("select notes from Piece").toText(), text);
}

TEST_F(Dialect, ProceduresTakePositionalArguments) {
  std::vector<std::string> calls;
  store_.replaceProcedure("noteCall", 2, 3, [&](ProcedureCall& call) {
    calls.push_back(call.sql(0) + "|" + call.sql(1) + "|" + call.sql(2));
    call.execute("insert into Part values (" + call.sql(1) + ", 'called')");
    return call.query("select label from Part where pieceId = " + call.sql(1));
  });
  EXPECT_EQ(valueOf("noteCall 'O''Brien', -2, NULL").toText(), "called");
  EXPECT_EQ(valueOf("exec dbo.NoteCall 'a' , -0.5").toText(), "no row");
  execute("execute notecall null, 3, 'x'");
  EXPECT_EQ(calls, (std::vector<std::string>{"'O''Brien'|-2|NULL", "'a'|-0.5|NULL", "NULL|3|'x'"}));
  EXPECT_EQ(errorOf("noteCall 1"), 201);
  EXPECT_EQ(errorOf("noteCall 1, 2, 3, 4"), 8144);
  EXPECT_EQ(errorOf("noteCall 1, pieceId"), 102);
  EXPECT_EQ(errorOf("neverHeardOf 1"), 2812);
}

TEST_F(Dialect, WhatLeavesTheDaysOfAColumnIsAnError) {
  for (const char* sum :
       {"dateadd(year, 8000, getdate())", "dateadd(month, 2147483647, getdate())", "getdate() + 1e300",
        "dateadd(day, -2000000, getdate())", "dateadd(second, 99999999999, getdate())"})
    EXPECT_EQ(errorOf(std::string("select ") + sum), 517) << sum;
}

// What an insert without a column list passes over, and nothing writes.
TEST_F(Dialect, ComputedColumns) {
  execute(
      "create table Person (first varchar(6), whole as convert(varchar(9), ltrim(isnull(first, '') + ' ' + "
      "isnull(last, ''))), last varchar(6))");
  execute("insert into Person select 'Ann', 'O''Hara'");
  execute("insert into Person (last) values ('Blank')");
  execute("update Person set first = 'Edith' where last = 'blank'");
  EXPECT_EQ(listOf("select whole from Person order by whole"), "Ann O'Har Edith Bla") << "cut to its nine";
  EXPECT_EQ(valueOf("select count(*) from Person where whole = 'edith bla'").toLong(), 1);
  EXPECT_EQ(errorOf("insert into Person (first, whole) values ('A', 'B')"), 271);
  EXPECT_EQ(errorOf("update Person set whole = 'B'"), 271);
}

TEST_F(Dialect, FunctionsOfTheStore) {
  execute(
      "insert into Ticket (ticketNumber, customerSequenceNumber, createdDate) values (1, 7, '2026-11-01'), "
      "(2, 7, '2026-11-20')");
  execute(
      "insert into TicketLineItem (ticketNumber, lineItemNumber, ticketLineType, lineItemID) values "
      "(1, 1, 'CU', 5), (1, 2, 'CU', 5), (2, 1, 'CU', 5), (2, 2, 'PR', 5), (2, 3, 'CU', 6)");
  execute("insert into rackassignment (ticketnumber, racklocation) values (1, 'B2'), (1, 'A1')");
  const std::pair<const char*, const char*> cases[] = {
      {"dbo.getCustomerCouponUses(7, 5)", "2"},  // tickets, not lines
      {"dbo.getCustomerVisits(7, null, null)", "2"},
      {"dbo.getCustomerVisits(7, '10/31/2026', '11/10/2026')", "1"},
      {"dbo.getCustomerVisits(7, null, '10/31/2026')", "0"},
      {"dbo.pivotTicketRackLocationBrief(1, ', ')", "A1, B2"},
  };
  for (const auto& [call, value] : cases)
    EXPECT_EQ(valueOf(std::string("select ") + call).toText(), value) << call;
}

}  // namespace
}  // namespace ondrel
