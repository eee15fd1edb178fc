#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "data/dialect/keywords.h"
#include "data/dialect/schema.h"
#include "data/dialect/types.h"

namespace ondrel::sql {

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

struct Expression;

// ---- expressions by kind; what the resolver finds out stands last

struct ColumnNode {
  std::string_view qualifier;  // table or alias in front of the name
  const Source* source = nullptr;
  int column = -1;  // of the source; without one, of the result: a key of an order
};

struct LiteralNode {
  int literal = -1;  // its number among the values of the statement
  bool isText = false;
};

struct NullNode {};

struct VariableNode {};

struct StarNode {
  std::string_view qualifier;
};

// - + ~
struct SignNode {
  Expression* operand = nullptr;
};

struct NotNode {
  Expression* operand = nullptr;
};

struct BinaryNode {
  Key symbol = Key::None;
  Expression *left = nullptr, *right = nullptr;
};

struct CallNode {
  std::string_view part;  // of a date function
  bool distinct = false;
  std::vector<Expression*> arguments;
  int function = -1;  // row in the table of functions
};

struct ConvertNode {
  Expression* value = nullptr;
  Expression* style = nullptr;  // or nothing
  ColumnType target;
};

struct CaseBranch {
  Expression *when = nullptr, *then = nullptr;
};

struct CaseNode {
  Expression* operand = nullptr;  // case x when .., or nothing
  std::vector<CaseBranch> branches;
  Expression* otherwise = nullptr;  // or nothing
};

struct InNode {
  Expression* value = nullptr;
  std::vector<Expression*> list;
  Query* query = nullptr;  // in place of the list
  bool negated = false;
};

struct BetweenNode {
  Expression *value = nullptr, *low = nullptr, *high = nullptr;
  bool negated = false;
};

struct LikeNode {
  Expression *value = nullptr, *pattern = nullptr;
  bool negated = false;
};

struct IsNullNode {
  Expression* operand = nullptr;
  bool negated = false;
};

struct ExistsNode {
  Query* query = nullptr;
};

struct SubqueryNode {
  Query* query = nullptr;
};

using ExpressionNode = std::variant<NullNode, ColumnNode, LiteralNode, VariableNode, StarNode, SignNode,
                                    NotNode, BinaryNode, CallNode, ConvertNode, CaseNode, InNode, BetweenNode,
                                    LikeNode, IsNullNode, ExistsNode, SubqueryNode>;

struct Expression {
  Token token;  // where it stands: name, literal, operator or function
  ExpressionNode node;
  int depth = 1;  // of the longest way down in it

  // Found out by the resolver.
  ResolvedType type;
  ValueConversion conversion;
};

template <class Node>
const Node* as(const Expression& expression) {
  return std::get_if<Node>(&expression.node);
}
template <class Node>
Node* as(Expression& expression) {
  return std::get_if<Node>(&expression.node);
}

inline bool isLiteral(const Expression& expression) {
  return as<LiteralNode>(expression) != nullptr;
}
inline bool isTextLiteral(const Expression& expression) {
  const auto* literal = as<LiteralNode>(expression);
  return literal && literal->isText;
}
inline bool isNumberLiteral(const Expression& expression) {
  const auto* literal = as<LiteralNode>(expression);
  return literal && !literal->isText;
}

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

  bool locks = false;  // with (updlock): its rows are held until the transaction ends
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

}  // namespace ondrel::sql
