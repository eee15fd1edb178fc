#include "data/dialect/schema_statement.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "base/text.h"
#include "data/dialect/sql_values.h"
#include "data/dialect/token_cursor.h"

namespace ondrel::sql {
namespace {

class SchemaReader {
 public:
  explicit SchemaReader(std::string_view statement) : cursor_(statement) { result_.text = statement; }

  SchemaStatement read() {
    if (cursor_.take(Key::Drop)) {
      cursor_.expect(Key::Table);
      result_.kind = SchemaStatement::Kind::Drop;
      result_.tableName = name();
    } else {
      cursor_.expect(Key::Create);
      result_.unique = cursor_.take(Key::Unique);
      !result_.unique&& cursor_.take(Key::Table) ? readTable() : readIndex();
    }
    cursor_.take(Key::Semicolon);
    if (!cursor_.isAtEnd()) cursor_.fail();
    return std::move(result_);
  }

 private:
  std::string name() { return std::string(cursor_.expectTable().text); }

  int number() {
    const Token token = literal(TokenKind::Number);
    int result = 0;
    std::from_chars(token.text.data(), token.text.data() + token.text.size(), result);
    return result;
  }

  Token literal(TokenKind kind) {
    if (cursor_.peek().kind != kind) cursor_.fail();
    return cursor_.advance();
  }

  // "(a, b desc)"
  std::vector<KeyColumn> keyColumns() {
    std::vector<KeyColumn> result;
    cursor_.expect(Key::Open);
    do {
      result.push_back({name()});
      result.back().descending = cursor_.take(Key::Desc);
      cursor_.take(Key::Asc);
    } while (cursor_.take(Key::Comma));
    cursor_.expect(Key::Close);
    return result;
  }

  void readTable() {
    result_.table.name = result_.tableName = name();
    cursor_.expect(Key::Open);
    do {
      if (cursor_.is(Key::Close)) break;  // a comma behind the last column
      tablePart();
    } while (cursor_.take(Key::Comma));
    cursor_.expect(Key::Close);
  }

  void tablePart() {
    if (cursor_.take(Key::Constraint)) name();
    if (!cursor_.is(Key::Primary) && !cursor_.is(Key::Unique)) return readColumn();
    const bool primary = cursor_.take(Key::Primary);
    cursor_.expect(primary ? Key::KeyWord : Key::Unique);
    cursor_.take(Key::Clustered);
    result_.keys.push_back({primary, keyColumns()});
  }

  void readColumn() {
    const size_t start = cursor_.peek().position;
    ColumnDefinition definition;
    DeclaredColumn column;
    definition.name = name();
    if (cursor_.take(Key::As)) {
      readComputed(definition, column);
    } else {
      definition.type = type();
      while (!cursor_.is(Key::Comma) && !cursor_.is(Key::Close)) readRule(definition, column);
    }
    column.text = cursor_.statement().substr(start, cursor_.peek().position - start);
    result_.table.columns.push_back(std::move(definition));
    result_.columns.push_back(std::move(column));
  }

  void readRule(ColumnDefinition& definition, DeclaredColumn& column) {
    if (cursor_.take(Key::Identity)) {
      definition.identity = true;
      if (cursor_.take(Key::Open)) number(), cursor_.expect(Key::Comma), number(), cursor_.expect(Key::Close);
    } else if (cursor_.take(Key::Not)) {
      cursor_.expect(Key::Null);
      definition.nullable = false;
    } else if (cursor_.take(Key::Primary)) {
      cursor_.expect(Key::KeyWord);
      column.primary = true;
    } else if (cursor_.take(Key::Unique)) {
      column.unique = true;
    } else if (cursor_.take(Key::Default)) {
      column.standard = defaultValue(definition.type);
    } else {
      cursor_.expect(Key::Null);
    }
  }

  void readComputed(ColumnDefinition& definition, DeclaredColumn& column) {
    definition.computed = true;
    cursor_.expect(Key::Convert), cursor_.expect(Key::Open);
    definition.type = type();
    cursor_.expect(Key::Comma);
    column.computed = computedText();
    cursor_.expect(Key::Close);
  }

  ComputedText computedText() {
    const TokenCursor::Depth depth(cursor_);
    ComputedText first = computedTerm();
    if (!cursor_.is(Key::Plus)) return first;
    ComputedText result{ComputedText::Kind::Joined, "", {std::move(first)}};
    while (cursor_.take(Key::Plus)) result.parts.push_back(computedTerm());
    return result;
  }

  ComputedText computedTerm() {
    if (cursor_.peek().kind == TokenKind::Text)
      return {ComputedText::Kind::Text, unquoted(cursor_.advance()), {}};
    const Token word = cursor_.expectName();
    if (!cursor_.take(Key::Open)) return {ComputedText::Kind::Column, std::string(word.text), {}};
    static constexpr std::string_view kFunctions[] = {"isnull", "ltrim", "rtrim"};
    if (std::none_of(std::begin(kFunctions), std::end(kFunctions),
                     [&](std::string_view each) { return sameWord(each, word.text); }))
      failAt(cursor_.statement(), word);
    ComputedText result{ComputedText::Kind::Call, toLower(word.text), {}};
    do result.parts.push_back(computedText());
    while (cursor_.take(Key::Comma));
    cursor_.expect(Key::Close);
    return result;
  }

  ColumnType type() {
    const Token word = cursor_.expectName();
    const auto found = sqlTypeNamed(word.text);
    if (!found) failAt(cursor_.statement(), word);
    constexpr int kGuidLength = 38;
    ColumnType result{*found, *found == SqlType::Guid ? kGuidLength : 0, 0};
    if (!cursor_.take(Key::Open)) return result;
    if (!cursor_.take(Key::Max)) result.size = number();
    if (cursor_.take(Key::Comma)) result.scale = number();
    cursor_.expect(Key::Close);
    return result;
  }

  DefaultValue defaultValue(const ColumnType& type) {
    if (cursor_.take(Key::Open)) {
      const TokenCursor::Depth depth(cursor_);
      DefaultValue inner = defaultValue(type);
      cursor_.expect(Key::Close);
      return inner;
    }
    if (cursor_.take(Key::Null)) return {DefaultValue::Kind::Null, ""};
    if (cursor_.take(Key::GetDate)) {
      cursor_.expect(Key::Open), cursor_.expect(Key::Close);
      return {DefaultValue::Kind::Now, ""};
    }
    const bool negative = cursor_.take(Key::Minus);
    const bool isNumber = negative || cursor_.peek().kind == TokenKind::Number;
    const Token token = literal(isNumber ? TokenKind::Number : TokenKind::Text);
    std::string text = isNumber ? (negative ? "-" : "") + std::string(token.text) : unquoted(token);
    if (categoryOf(type.type) == Category::Date) {
      std::string buffer;
      return {DefaultValue::Kind::Text,
              std::string(
                  converted(SqlValue::of(std::string_view(text)), {Conversion::ToDate, type}, buffer).text)};
    }
    const bool stays = isNumber && categoryOf(type.type) != Category::Text;
    return {stays ? DefaultValue::Kind::Number : DefaultValue::Kind::Text, std::move(text)};
  }

  void readIndex() {
    cursor_.take(Key::NonClustered);
    cursor_.expect(Key::Index);
    result_.kind = SchemaStatement::Kind::Index;
    result_.indexName = name();
    cursor_.expect(Key::On);
    result_.tableName = name();
    result_.indexColumns = keyColumns();
  }

  TokenCursor cursor_;
  SchemaStatement result_;
};

bool beginsStatement(const Token& token) {
  switch (keyRowOf(token).key) {
    case Key::Create:
    case Key::Drop:
    case Key::Insert:
    case Key::Update:
    case Key::Delete:
    case Key::Exec:
    case Key::Execute:
      return true;
    default:
      return false;
  }
}

}  // namespace

SchemaStatement readSchemaStatement(std::string_view statement) {
  return SchemaReader(statement).read();
}

bool isSchemaStatement(std::string_view statement) {
  const Key first = keyRowOf(Lexer(statement).next()).key;
  return first == Key::Create || first == Key::Drop;
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
    const Key key = keyRowOf(token).key;
    if (key == Key::Semicolon || (key == Key::Go && depth == 0)) {
      finish(token.position, token.position + token.text.size());
      continue;
    }
    if (begun && depth == 0 && beginsStatement(token)) finish(token.position, token.position);
    if (!begun) start = token.position;
    begun = true;
    depth += key == Key::Open ? 1 : key == Key::Close ? -1 : 0;
  }
  finish(script.size(), script.size());
  return statements;
}

}  // namespace ondrel::sql
