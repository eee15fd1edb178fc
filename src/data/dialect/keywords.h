#pragma once

#include <cstdint>
#include <string_view>

#include "data/dialect/lexer.h"

namespace ondrel::sql {

// How tightly an operator binds what stands on its two sides, the loosest first. Operators that bind alike come
// from left to right.
enum class Binding : std::uint8_t { None, Or, And, Not, Comparison, Sum, Product, Sign };

// What a word or symbol of the language means to parser and schema reader. The order is that of the table.
enum class Key : std::uint8_t {
  None,  // a name, a value, or the end
  // operators
  Or,
  And,
  Not,
  Equal,
  Less,
  Greater,
  LessEqual,
  GreaterEqual,
  Unequal,
  UnequalToo,
  Is,
  In,
  Like,
  Between,
  Plus,
  Minus,
  BitAnd,
  BitOr,
  Times,
  Divided,
  Modulo,
  Complement,
  // marks
  Open,
  Close,
  Comma,
  Point,
  Semicolon,
  // words that begin or part clauses, and so are no alias
  All,
  Alter,
  As,
  Asc,
  By,
  Case,
  Create,
  Cross,
  Delete,
  Desc,
  Distinct,
  Drop,
  Else,
  End,
  Except,
  Exec,
  Execute,
  Exists,
  From,
  Full,
  Group,
  Having,
  Inner,
  Insert,
  Intersect,
  Into,
  Join,
  Left,
  Null,
  On,
  Order,
  Outer,
  Right,
  Select,
  Set,
  Then,
  Top,
  Union,
  Update,
  Values,
  When,
  Where,
  With,
  // words that mean something in their place and may be names elsewhere
  Cast,
  Clustered,
  Constraint,
  Convert,
  CurrentTimestamp,
  Dbo,
  Default,
  GetDate,
  Go,
  Identity,
  IdentityInsert,
  Index,
  KeyWord,
  Max,
  NonClustered,
  Off,
  Primary,
  Table,
  Unique,
  UpdLock,
};

struct KeyRow {
  Key key;
  std::string_view text;
  Binding binding = Binding::None;  // of an operator between two values
  bool reserved = false;            // no name, unless in brackets
};

// The row of a token; that of Key::None when it is none of them. A name in brackets never is.
const KeyRow& keyRowOf(const Token& token);

inline bool isComparison(Key key) {
  return key >= Key::Equal && key <= Key::UnequalToo;
}

}  // namespace ondrel::sql
