#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "data/dialect/lexer.h"
#include "data/dialect/schema.h"
#include "data/dialect/types.h"

namespace ondrel {

struct Query;
struct Source;

// What is done to a value on its way to where it is used.
enum class Conversion : std::uint8_t {
  None,
  ToInteger,  // for an int column: fractions cut off, text must be a whole number
  ToBit,
  ToNumber,
  ToMoney,         // four decimals
  ToDecimal,       // the decimals of the column
  ToDate,          // the normal text form of a moment
  ToDay,           // the same at midnight
  ToText,          // error when longer than the column
  CutText,         // shortened to the length
  CompareInteger,  // for a comparison: numbers stay as they are, text must be a whole number
  CompareNumber,
};

struct ValueConversion {
  Conversion kind = Conversion::None;
  ColumnType target;
};

enum class ExpressionKind : std::uint8_t {
  Column,
  Number,
  Text,
  Null,
  Variable,
  Star,
  Unary,
  Binary,
  Not,
  Call,
  Convert,
  Case,
  In,
  Between,
  Like,
  IsNull,
  Exists,
  Subquery
};

struct Expression {
  ExpressionKind kind = ExpressionKind::Null;
  Token token;                 // where it stands: name, literal, operator or function
  std::string_view qualifier;  // table of a column; date part of a date function
  int literal = -1;            // number of the literal in the statement
  bool negated = false;        // not in, not like, is not null
  bool distinct = false;       // count(distinct x)
  bool hasOperand = false;     // case x when ..
  bool hasElse = false;
  ColumnType target;  // of a convert
  std::vector<Expression*> operands;
  Query* query = nullptr;

  // Found out by the resolver.
  ResolvedType type;
  ValueConversion conversion;
  const Source* source = nullptr;  // of a column
  int column = -1;
  int function = -1;  // row in the table of functions

  bool isLiteral() const { return kind == ExpressionKind::Number || kind == ExpressionKind::Text; }
};

struct SelectItem {
  Expression* value = nullptr;
  std::string_view alias;  // empty when none is given
};

// A column of a derived table or a result.
struct OutputColumn {
  std::string name;
  ResolvedType type;
};

enum class JoinKind : std::uint8_t { First, Comma, Inner, Left, Right, Full, Cross };

struct Source {
  JoinKind join = JoinKind::First;
  Token token;
  std::string_view table;  // empty for a derived table or a group
  std::string_view alias;
  Query* query = nullptr;
  std::vector<Source*> group;  // a join in parentheses
  Expression* on = nullptr;

  const TableDefinition* definition = nullptr;
  std::string_view name() const { return alias.empty() ? table : alias; }
};

struct SelectCore {
  std::string_view combine;  // "", "union", "union all", "intersect", "except"
  bool distinct = false;
  Expression* top = nullptr;
  std::vector<SelectItem> items;
  std::vector<Source*> from;
  Expression* where = nullptr;
  std::vector<Expression*> groupBy;
  Expression* having = nullptr;
};

struct OrderItem {
  Expression* value = nullptr;
  bool descending = false;
};

struct Query {
  std::vector<SelectCore> cores;
  std::vector<OrderItem> orderBy;
  std::vector<OutputColumn> columns;  // found out by the resolver
};

struct Assignment {
  Token column;
  Expression* value = nullptr;
};

enum class StatementKind : std::uint8_t { Select, Insert, Update, Delete, Call, Setting };

struct CallArgument {
  int literal = -1;  // Null when there is none
  bool negative = false;
};

struct SyntaxTree {
  StatementKind kind = StatementKind::Select;
  Token target;                                // table or procedure
  Query* query = nullptr;                      // of a select, or of an insert from one
  std::vector<Token> columns;                  // insert
  std::vector<std::vector<Expression*>> rows;  // insert; a null expression stands for the default
  bool defaultValues = false;
  std::vector<Assignment> assignments;  // update
  std::vector<Source*> from;            // update, delete
  Expression* where = nullptr;
  std::vector<CallArgument> arguments;  // call
  std::vector<int> fixedLiterals;       // literals that are part of the shape: lengths and names

  // The nodes live as long as the tree.
  std::deque<Expression> expressions;
  std::deque<Query> queries;
  std::deque<Source> sources;
};

}  // namespace ondrel
