#include "data/embedded/schema_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include "base/text.h"
#include "data/dialect/sql_values.h"
#include "data/dialect/token_cursor.h"

namespace ondrel::sql {
namespace {

class SchemaReader {
 public:
  explicit SchemaReader(std::string_view statement)
      : statement_(statement), lexer_(statement), token_(lexer_.next()) {}

  SchemaStatement read() {
    SchemaStatement result;
    result.text = statement_;
    if (take("drop")) {
      readDrop(result);
    } else {
      expect("create");
      const bool unique = take("unique");
      !unique&& take("table") ? readTable(result) : readIndex(result, unique);
    }
    take(";");
    if (token_.kind != TokenKind::End) fail();
    return result;
  }

 private:
  bool is(std::string_view word) const {
    return (token_.kind == TokenKind::Word || token_.kind == TokenKind::Symbol) &&
           sameWord(token_.text, word);
  }
  bool take(std::string_view word) {
    if (!is(word)) return false;
    token_ = lexer_.next();
    return true;
  }
  void expect(std::string_view word) {
    if (!take(word)) fail();
  }
  [[noreturn]] void fail() const { failAt(statement_, token_); }

  std::string_view name() {
    if (token_.kind != TokenKind::Word && token_.kind != TokenKind::Quoted) fail();
    const std::string_view result = token_.text;
    token_ = lexer_.next();
    if (sameWord(result, "dbo") && take(".")) return name();
    return result;
  }

  int number() {
    if (token_.kind != TokenKind::Number) fail();
    int result = 0;
    std::from_chars(token_.text.data(), token_.text.data() + token_.text.size(), result);
    token_ = lexer_.next();
    return result;
  }

  // "(a, b desc)", written with quoted names.
  std::string nameList() {
    std::string result;
    expect("(");
    do {
      result += fmt::format("{}\"{}\"", result.empty() ? "" : ", ", name());
      if (take("desc")) result += " desc";
      take("asc");
    } while (take(","));
    expect(")");
    return "(" + result + ")";
  }

  void readDrop(SchemaStatement& result) {
    expect("table");
    result.kind = SchemaStatement::Kind::Drop;
    result.tableName = name();
    result.sql = fmt::format("drop table \"{}\"", result.tableName);
  }

  void readTable(SchemaStatement& result) {
    result.table.name = result.tableName = name();
    std::string parts;
    expect("(");
    do {
      if (is(")")) break;  // a comma behind the last column
      if (!parts.empty()) parts += ", ";
      const size_t known = result.table.columns.size();
      const size_t start = token_.position;
      const std::string part = tablePart(result.table);
      if (result.table.columns.size() > known)
        result.columns.push_back({std::string(statement_.substr(start, token_.position - start)), part});
      parts += part;
    } while (take(","));
    expect(")");
    result.sql = fmt::format("create table \"{}\" ({})", result.table.name, parts);
  }

  std::string tablePart(TableDefinition& table) {
    if (take("constraint")) name();
    if (is("primary") || is("unique")) {
      const bool primary = take("primary");
      primary ? expect("key") : expect("unique");
      take("clustered");
      return (primary ? "primary key " : "unique ") + nameList();
    }
    return column(table);
  }

  std::string column(TableDefinition& table) {
    ColumnDefinition column;
    column.name = name();
    if (take("as")) return computedColumn(table, column);
    column.type = type();
    std::string rules;
    bool primary = false;
    while (!is(",") && !is(")")) {
      if (take("identity")) {
        column.identity = true;
        if (take("(")) number(), expect(","), number(), expect(")");
      } else if (take("not")) {
        expect("null");
        column.nullable = false;
      } else if (take("primary")) {
        expect("key");
        primary = true;
      } else if (take("unique")) {
        rules += " unique";
      } else if (take("default")) {
        rules += " default " + defaultValue(column.type);
      } else {
        expect("null");
      }
    }
    std::string result = fmt::format("\"{}\" {}", column.name, storageType(column.type.type));
    if (column.identity)
      result += " primary key autoincrement";
    else
      result +=
          fmt::format("{}{}", primary ? " primary key" : "", column.nullable && !primary ? "" : " not null");
    table.columns.push_back(std::move(column));
    return result + rules;
  }

  // Its text is cut to the declared length, as the conversion does.
  std::string computedColumn(TableDefinition& table, ColumnDefinition& column) {
    column.computed = true;
    expect("convert"), expect("(");
    column.type = type();
    expect(",");
    std::string value = computedText();
    expect(")");
    if (column.type.size > 0) value = fmt::format("substr({}, 1, {})", value, column.type.size);
    const std::string storage(storageType(column.type.type));
    std::string result = fmt::format("\"{}\" {} generated always as ({})", column.name, storage, value);
    table.columns.push_back(std::move(column));
    return result;
  }

  std::string computedText() {
    std::string result = computedTerm();
    while (take("+")) result += " || " + computedTerm();
    return result;
  }

  std::string computedTerm() {
    static constexpr std::pair<std::string_view, std::string_view> kFunctions[] = {
        {"isnull", "ifnull"}, {"ltrim", "ltrim"}, {"rtrim", "rtrim"}};
    if (token_.kind == TokenKind::Text) return textValue();
    const std::string_view word = name();
    if (!take("(")) return fmt::format("\"{}\"", word);
    const auto function = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                       [&](const auto& each) { return sameWord(each.first, word); });
    if (function == std::end(kFunctions)) fail();
    std::string result = fmt::format("{}({}", function->second, computedText());
    while (take(",")) result += ", " + computedText();
    expect(")");
    return result + ")";
  }

  // A text between quotes, as it goes to the table engine.
  std::string textValue() {
    const std::string result = quoted(unquoted(token_));
    token_ = lexer_.next();
    return result;
  }

  static std::string quoted(std::string_view text) { return "'" + replaceAll(text, "'", "''") + "'"; }

  ColumnType type() {
    const Token at = token_;
    const auto found = sqlTypeNamed(name());
    if (!found) failAt(statement_, at);
    ColumnType result{*found, 0, 0};
    if (*found == SqlType::Guid) result.size = 38;
    if (!take("(")) return result;
    if (!take("max")) result.size = number();
    if (take(",")) result.scale = number();
    expect(")");
    return result;
  }

  // The value in the form in which the column holds it.
  std::string defaultValue(const ColumnType& type) {
    if (take("(")) {
      std::string inner = defaultValue(type);
      expect(")");
      return inner;
    }
    if (take("null")) return "null";
    if (take("getdate")) {
      expect("("), expect(")");
      return "(getdate())";
    }
    const bool negative = take("-");
    const bool isNumber = token_.kind == TokenKind::Number;
    if (!isNumber && (negative || token_.kind != TokenKind::Text)) fail();
    std::string text = isNumber ? (negative ? "-" : "") + std::string(token_.text) : unquoted(token_);
    token_ = lexer_.next();
    std::string buffer;
    if (categoryOf(type.type) == Category::Date)
      text = converted(SqlValue::of(std::string_view(text)), {Conversion::ToDate, type}, buffer).text;
    else if (isNumber && categoryOf(type.type) != Category::Text)
      return text.front() == '-' ? "(" + text + ")" : text;
    return quoted(text);
  }

  void readIndex(SchemaStatement& result, bool unique) {
    take("nonclustered");
    expect("index");
    const std::string_view index = name();
    result.indexName = index;
    expect("on");
    result.kind = SchemaStatement::Kind::Index;
    result.tableName = name();
    result.sql = fmt::format("create {}index \"{}\" on \"{}\" {}", unique ? "unique " : "", index,
                             result.tableName, nameList());
  }

  std::string_view statement_;
  Lexer lexer_;
  Token token_;
};

bool beginsStatement(const Token& token) {
  if (token.kind != TokenKind::Word) return false;
  for (const std::string_view word : {"create", "drop", "insert", "update", "delete", "exec", "execute"})
    if (sameWord(token.text, word)) return true;
  return false;
}

}  // namespace

SchemaStatement readSchemaStatement(std::string_view statement) {
  return SchemaReader(statement).read();
}

bool isSchemaStatement(std::string_view statement) {
  const Token first = Lexer(statement).next();
  return first.kind == TokenKind::Word && (sameWord(first.text, "create") || sameWord(first.text, "drop"));
}

std::vector<std::string_view> splitScript(std::string_view script) {
  std::vector<std::string_view> statements;
  Lexer lexer(script);
  size_t start = 0;
  bool begun = false;
  int depth = 0;
  const auto finish = [&](size_t end, size_t next) {
    if (begun) statements.push_back(script.substr(start, end - start));
    begun = false;
    depth = 0;
    start = next;
  };
  for (Token token = lexer.next(); token.kind != TokenKind::End; token = lexer.next()) {
    const bool symbol = token.kind == TokenKind::Symbol;
    const bool go = token.kind == TokenKind::Word && sameWord(token.text, "go");
    if ((symbol && token.text == ";") || (go && depth == 0)) {
      finish(token.position, token.position + token.text.size());
      continue;
    }
    if (begun && depth == 0 && beginsStatement(token)) finish(token.position, token.position);
    if (!begun) start = token.position;
    begun = true;
    if (symbol) depth += token.text == "(" ? 1 : token.text == ")" ? -1 : 0;
  }
  finish(script.size(), script.size());
  return statements;
}

}  // namespace ondrel::sql
