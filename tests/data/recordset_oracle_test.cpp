// Tables, edits, filters and sorts drawn from a fixed seed; what a view shows is compared with what SQLite
// selects from the same rows.
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <array>
#include <random>

#include "data/recordset/recordset.h"

namespace ondrel {
namespace {

enum Fields { id, dept, price, redo, kind, name, due, total, kFields };

// clang-format off
constexpr std::array<ColumnSpec, kFields> kColumns = {{
    {"id",    FieldType::Long},
    {"dept",  FieldType::Long,    0, true},
    {"price", FieldType::Double,  0, true},
    {"redo",  FieldType::Boolean, 0, true},
    {"kind",  FieldType::Text,    4, true},
    {"name",  FieldType::Text,   40, true},
    {"due",   FieldType::Date,    0, true},
    {"total", FieldType::Double},
}};
constexpr const char* kKinds[] = {"IT", "it", "UP", "Up", "CO", "", "T"};
constexpr const char* kNames[] = {"Shirt", "SHIRT", "shirts", "Hand finish", "hand FINISH", "Hand finished", "O'Brien",
                                  "o'brien", "", "Shirt and trousers", "Starch_", "starch["};
constexpr const char* kSigns[] = {"=", "<>", "<", ">", "<=", ">="};
// clang-format on

// What one value is for the recordset, in a filter and in SQL.
struct Drawn {
  Variant value;
  std::string filter, sql;
};

std::string inQuotes(std::string_view text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? std::string("''") : std::string(1, c);
  return result + "'";
}

class Draw {
 public:
  explicit Draw(unsigned seed) : engine_(seed) {}
  int below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }
  template <class List>
  const auto& of(const List& list) {
    return list[static_cast<size_t>(below(static_cast<int>(std::size(list))))];
  }

  Drawn value(int field) {
    const bool quote = below(2) == 0;
    switch (field) {
      case redo: {
        const bool yes = below(2) == 0;
        const char* forms[2][4] = {{"0", "'0'", "False", "'false'"}, {"1", "'1'", "TRUE", "-1"}};
        return {yes, of(forms[yes]), yes ? "1" : "0"};
      }
      case kind:
        return text(of(kKinds));
      case name:
        return text(of(kNames));
      case due: {
        const Date date = Date::of(2026, 11, 20 + below(8), below(2) * 12);
        return {date, (quote ? "'" : "#") + date.text() + (quote ? "'" : "#"),
                fmt::format("{:.17g}", date.serial())};
      }
      case price:
      case total:
        return number((below(9) - 3) / 4.0, quote);
      default:
        return number(below(6) - 1, quote);
    }
  }

  // A comparison or a junction of two, in both languages.
  std::pair<std::string, std::string> condition(int depth) {
    if (depth == 0 || below(3) == 0) return comparison();
    const auto [left, leftSql] = condition(depth - 1);
    const auto [right, rightSql] = condition(depth - 1);
    const char* word = of(std::array{"and", "And", "or", "OR"});
    const char* form = below(3) == 0 ? "{} {} {}" : "({}) {} ({})";
    return {fmt::format(fmt::runtime(form), left, word, right),
            fmt::format(fmt::runtime(form), leftSql, word, rightSql)};
  }

  std::pair<std::string, std::string> sort() {
    std::string text, sql;
    for (int keys = below(4); keys > 0; --keys) {
      const std::string_view column = kColumns[static_cast<size_t>(below(kFields))].name;
      const char* direction = of(std::array{"", " desc", " DESC"});
      text += fmt::format("{}{}{}", text.empty() ? "" : ", ", column, direction);
      sql += fmt::format("{}{}, ", column, direction);
    }
    return {text, " order by " + sql + "rowid"};
  }

 private:
  Drawn text(std::string_view text) { return {text, inQuotes(text), inQuotes(text)}; }
  Drawn number(double value, bool quote) {
    const std::string digits = fmt::format("{}", value);
    return {value, quote ? inQuotes(digits) : digits, digits};
  }

  std::pair<std::string, std::string> comparison() {
    const int field = below(kFields);
    const std::string_view column = kColumns[static_cast<size_t>(field)].name;
    const char* blank = below(2) == 0 ? " " : "";
    if (below(6) == 0) {
      const bool missing = below(2) == 0;
      return {fmt::format("{}{}{}{}{}", column, blank, missing ? "=" : "<>", blank,
                          of(std::array{"null", "Null", "NULL"})),
              fmt::format("{} is {} null", column, missing ? "" : "not")};
    }
    const char* sign = of(kSigns);
    const Drawn drawn = value(field);
    return {fmt::format("{}{}{}{}{}", column, blank, sign, blank, drawn.filter),
            fmt::format("{} {} {}", column, sign, drawn.sql)};
  }

  std::mt19937 engine_;
};

class Oracle {
 public:
  Oracle() {
    sqlite3_open(":memory:", &database_);
    execute("create table t (id, dept, price, redo, kind collate nocase, name collate nocase, due, total)");
  }
  ~Oracle() { sqlite3_close(database_); }

  void execute(const std::string& sql) {
    ASSERT_EQ(sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sql << sqlite3_errmsg(database_);
  }
  std::vector<int> ids(const std::string& sql) {
    std::vector<int> result;
    const auto take = [](void* list, int, char** cells, char**) {
      static_cast<std::vector<int>*>(list)->push_back(std::stoi(cells[0]));
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(database_, sql.c_str(), take, &result, nullptr), SQLITE_OK)
        << sql << sqlite3_errmsg(database_);
    return result;
  }

 private:
  sqlite3* database_ = nullptr;
};

std::vector<int> idsOf(Recordset& rs) {
  std::vector<int> result;
  for (; !rs.eof(); rs.moveNext()) result.push_back(rs.integer(id));
  return result;
}

Drawn cellOf(Draw& draw, int field) {
  if (kColumns[static_cast<size_t>(field)].nullable && draw.below(5) == 0)
    return {Variant::null(), "null", "null"};
  return draw.value(field);
}

// Adds, changes or deletes a row on both sides.
void edit(Draw& draw, Recordset& rs, Oracle& oracle, int& lastId) {
  const int action = draw.below(10);
  if (action < 4) {
    std::string sql = std::to_string(++lastId);
    std::vector<Column> columns{Column(id)};
    std::vector<Variant> values{lastId};
    for (int field = dept; field < kFields; ++field) {
      const Drawn cell = cellOf(draw, field);
      columns.emplace_back(field);
      values.push_back(cell.value);
      sql += ", " + cell.sql;
    }
    rs.addNew(columns, values);
    oracle.execute("insert into t values (" + sql + ")");
    return;
  }
  rs.moveFirst();
  if (rs.recordCount() == 0) return;
  for (int steps = draw.below(rs.recordCount()); steps > 0; --steps) rs.moveNext();
  const int row = rs.integer(id);
  if (action < 8) {
    const int field = 1 + draw.below(kFields - 1);
    const Drawn cell = cellOf(draw, field);
    rs.setValue(Column(field), cell.value);
    oracle.execute(fmt::format("update t set {} = {} where id = {}",
                               kColumns[static_cast<size_t>(field)].name, cell.sql, row));
  } else {
    rs.deleteRow();
    oracle.execute(fmt::format("delete from t where id = {}", row));
  }
}

TEST(RecordsetOracle, ViewsShowWhatSqliteSelects) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    Draw draw(seed);
    Oracle oracle;
    RecordsetRef rs = Recordset::create(kColumns);
    RecordsetRef editor = rs->clone();
    int lastId = 0;
    for (int round = 0; round < 25; ++round) {
      for (int edits = draw.below(20); edits > 0; --edits)
        edit(draw, *(draw.below(2) ? editor : rs), oracle, lastId);
      const auto [filter, where] = draw.condition(draw.below(4));
      const auto [sort, order] = draw.sort();
      rs->setFilter(filter);
      rs->setSort(sort);
      const std::vector<int> expected = oracle.ids("select id from t where " + where + order);
      ASSERT_EQ(rs->recordCount(), static_cast<int>(expected.size())) << filter;
      ASSERT_EQ(idsOf(*rs), expected) << filter << " | " << sort << " | seed " << seed;
      rs->setSort("");
      ASSERT_EQ(idsOf(*rs), oracle.ids("select id from t where " + where + " order by rowid")) << filter;
    }
  }
}

// A loop that changes and deletes the rows it walks over meets every row that passed at its start once.
TEST(RecordsetOracle, LoopsMeetEveryRowOnce) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    Draw draw(seed);
    Oracle oracle;
    RecordsetRef rs = Recordset::create(kColumns);
    int lastId = 0;
    for (int edits = 0; edits < 60; ++edits) edit(draw, *rs, oracle, lastId);
    const auto [filter, where] = draw.condition(2);
    const auto [sort, order] = draw.sort();
    rs->setFilter(filter);
    rs->setSort(sort);
    std::vector<int> met;
    for (; !rs->eof() && met.size() < 100; rs->moveNext()) {
      met.push_back(rs->integer(id));
      const int field = 1 + draw.below(kFields - 1);
      if (draw.below(4) == 0)
        rs->deleteRow();
      else
        rs->setValue(Column(field), cellOf(draw, field).value);
    }
    EXPECT_EQ(met, oracle.ids("select id from t where " + where + order)) << filter << " | " << sort;
  }
}

}  // namespace
}  // namespace ondrel
