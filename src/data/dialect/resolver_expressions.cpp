#include <fmt/format.h>

#include "data/dialect/function_table.h"
#include "data/dialect/resolver.h"
#include "data/dialect/server_errors.h"

namespace ondrel::sql {
namespace {

Conversion columnConversion(SqlType type) {
  switch (type) {
    case SqlType::Bit:
      return Conversion::ToBit;
    case SqlType::Real:
    case SqlType::Float:
      return Conversion::ToNumber;
    case SqlType::Decimal:
      return Conversion::ToDecimal;
    case SqlType::Money:
      return Conversion::ToMoney;
    case SqlType::DateTime:
      return Conversion::ToDate;
    case SqlType::Date:
      return Conversion::ToDay;
    case SqlType::Char:
    case SqlType::VarChar:
    case SqlType::Text:
    case SqlType::Guid:
      return Conversion::ToText;
    default:
      return Conversion::ToInteger;
  }
}

// True when any value of the expression is a value of the column as it stands. A sum of money can have
// more decimals than money has.
bool fitsColumn(const Expression& value, const ColumnType& to) {
  const ResolvedType& from = value.type;
  if (from.category == Category::Null) return true;
  if (from.category != categoryOf(to.type)) return false;
  switch (to.type) {
    case SqlType::Int:
    case SqlType::BigInt:
    case SqlType::Float:
    case SqlType::DateTime:
    case SqlType::Text:
    case SqlType::Bit:
      return true;
    case SqlType::Char:
    case SqlType::VarChar:
      return to.size == 0 || (from.declared.size > 0 && from.declared.size <= to.size);
    default:
      return !as<BinaryNode>(value) && from.declared.type == to.type && from.declared.scale == to.scale;
  }
}

ResolvedType guidType() {
  return {Category::Text, {SqlType::Guid, 38, 0}};
}

ResolvedType ruleType(const FunctionRow& row, const std::vector<Expression*>& operands) {
  switch (row.result) {
    case ResultRule::Text:
      return row.name == "newid" ? guidType() : textType();
    case ResultRule::Integer:
      return integerType();
    case ResultRule::Number:
      return numberType();
    case ResultRule::Date:
      return dateType();
    default:
      break;
  }
  ResolvedType type = operands.front()->type;
  const bool totals = row.name == "sum" || row.name == "avg";
  if (totals && type.category <= Category::Bit)
    return type.category == Category::Text ? numberType() : integerType();
  if (type.category == Category::Null || row.result == ResultRule::Common)
    for (const Expression* operand : operands) type = commonType(type, operand->type);
  return type;
}

}  // namespace

void convertForColumn(Expression& expression, const ColumnType& target) {
  if (isLiteral(expression) || !fitsColumn(expression, target))
    expression.conversion = {columnConversion(target.type), target};
}

void convertForComparison(Expression& expression, Category category) {
  const Category own = expression.type.category;
  if (own == Category::Null || own == category) return;
  switch (category) {
    case Category::Date:
      expression.conversion = {Conversion::ToDate, {SqlType::DateTime}};
      return;
    case Category::Bit:
      if (own == Category::Text) expression.conversion = {Conversion::ToBit, {SqlType::Bit}};
      return;
    case Category::Integer:
      if (own == Category::Text) expression.conversion = {Conversion::CompareInteger, {SqlType::Int}};
      return;
    case Category::Numeral:
    case Category::Number:
      if (own == Category::Text) expression.conversion = {Conversion::CompareNumber, {SqlType::Decimal}};
      return;
    case Category::Text:
    case Category::Null:
      return;
  }
}

static void meet(Expression& a, Expression& b) {
  const Category category = std::max(a.type.category, b.type.category);
  convertForComparison(a, category);
  convertForComparison(b, category);
}

// Arguments of a call convert to what its row in the table of functions asks for.
static void convertArguments(const FunctionRow& row, const std::vector<Expression*>& arguments) {
  for (size_t k = 0; k < arguments.size(); ++k) {
    Expression& argument = *arguments[k];
    switch (row.arguments[std::min(k, row.arguments.size() - 1)]) {
      case 'd':
        convertForComparison(argument, Category::Date);
        break;
      case 'n':
        convertForComparison(argument, Category::Number);
        break;
      case 't':
        if (argument.type.category == Category::Date)
          argument.conversion = {Conversion::ToText, {SqlType::VarChar}};
        break;
      default:
        break;
    }
  }
}

void Resolver::resolve(Expression* expression, const Scope& scope) {
  std::visit([&](auto& node) { resolve(*expression, node, scope); }, expression->node);
}

void Resolver::resolve(Expression&, NullNode&, const Scope&) {}

void Resolver::resolve(Expression&, StarNode&, const Scope&) {}

void Resolver::resolve(Expression& expression, LiteralNode& node, const Scope&) {
  expression.type = node.isText ? textType() : ResolvedType{Category::Numeral, {SqlType::Int}};
}

void Resolver::resolve(Expression& expression, VariableNode&, const Scope&) {
  const std::string_view name = expression.token.text;
  if (!sameWord(name, "@@identity") && !sameWord(name, "@@rowcount")) fail(expression.token);
  expression.type = integerType();
}

void Resolver::resolve(Expression& expression, ColumnNode& node, const Scope& scope) {
  if (node.source) return;  // written out from a star
  for (const Scope* at = &scope; at && !node.source; at = at->outer) bindIn(expression, node, *at);
  if (!node.source)
    throw serverError(ServerError::InvalidColumn,
                      fmt::format("Invalid column name '{}' at position {} of: {}", expression.token.text,
                                  expression.token.position + 1, statement_));
}

void Resolver::bindIn(Expression& expression, ColumnNode& node, const Scope& scope) {
  for (const Source* source : scope.sources) {
    if (!node.qualifier.empty() && !sameWord(source->name(), node.qualifier)) continue;
    for (int k = 0; k < sourceColumnCount(*source); ++k) {
      if (!sameWord(sourceColumnName(*source, k), expression.token.text)) continue;
      if (node.source)
        throw serverError(ServerError::AmbiguousColumn,
                          fmt::format("Ambiguous column name '{}'.", expression.token.text));
      node.source = source;
      node.column = k;
      expression.type = sourceColumnType(*source, k);
      break;
    }
  }
}

void Resolver::resolve(Expression& expression, SignNode& node, const Scope& scope) {
  resolve(node.operand, scope);
  convertForComparison(*node.operand, Category::Number);
  expression.type = node.operand->type.category == Category::Text ? numberType() : node.operand->type;
}

void Resolver::resolve(Expression& expression, NotNode& node, const Scope& scope) {
  resolve(node.operand, scope);
  expression.type = integerType();
}

void Resolver::resolve(Expression& expression, BinaryNode& node, const Scope& scope) {
  resolve(node.left, scope);
  resolve(node.right, scope);
  const bool joins = node.symbol == Key::And || node.symbol == Key::Or;
  if (!joins && !isComparison(node.symbol)) return resolveArithmetic(expression, node);
  if (!joins) meet(*node.left, *node.right);
  expression.type = integerType();
}

void Resolver::resolveArithmetic(Expression& expression, BinaryNode& node) {
  Expression& a = *node.left;
  Expression& b = *node.right;
  const ResolvedType common = commonType(a.type, b.type);
  const bool anyText = a.type.category == Category::Text || b.type.category == Category::Text;
  if (node.symbol == Key::Plus && anyText) {
    for (Expression* side : {&a, &b})
      if (side->type.category == Category::Date || side->type.category == Category::Number)
        side->conversion = {Conversion::ToText, {SqlType::VarChar}};
    expression.type = textType();
    return;
  }
  if (common.category == Category::Date) {
    const bool shifts = (node.symbol == Key::Plus || node.symbol == Key::Minus) &&
                        a.type.category == Category::Date && b.type.category != Category::Date;
    if (!shifts) fail(expression.token);
    convertForComparison(b, Category::Number);
    expression.type = dateType();
    return;
  }
  convertForComparison(a, Category::Number);
  convertForComparison(b, Category::Number);
  expression.type = common.category <= Category::Bit ? (anyText ? numberType() : integerType()) : common;
}

void Resolver::resolve(Expression& expression, CallNode& node, const Scope& scope) {
  for (Expression* argument : node.arguments) resolve(argument, scope);
  node.function = findFunction(expression.token.text);
  if (node.function < 0)
    throw serverError(ServerError::NoSuchFunction,
                      fmt::format("'{}' is not a known function name, at position {} of: {}",
                                  expression.token.text, expression.token.position + 1, statement_));
  const FunctionRow& row = dialectFunctions()[static_cast<size_t>(node.function)];
  const int count = static_cast<int>(node.arguments.size());
  if (count < row.least || count > row.most || (row.takesPart && findDatePart(node.part) < 0))
    fail(expression.token);
  expression.type = ruleType(row, node.arguments);
  // Money is exact on a server: a sum must not carry the tail of binary fractions.
  if (row.name == "sum" && expression.type.category == Category::Number &&
      expression.type.declared.type == SqlType::Money)
    expression.conversion = {Conversion::ToMoney, {SqlType::Money}};
  convertArguments(row, node.arguments);
  if (row.name == "isnull") {
    Expression& other = *node.arguments[1];
    if (expression.type.category != Category::Numeral) convertForColumn(other, expression.type.declared);
    if (other.conversion.kind == Conversion::ToText) other.conversion.kind = Conversion::CutText;
  } else if (row.name == "coalesce") {
    for (Expression* argument : node.arguments) convertForComparison(*argument, expression.type.category);
  } else if (row.name == "nullif") {
    meet(*node.arguments[0], *node.arguments[1]);
  }
}

void Resolver::resolve(Expression& expression, ConvertNode& node, const Scope& scope) {
  resolve(node.value, scope);
  resolveOptional(node.style, scope);
  expression.type = valueTypeOf(node.target);
}

void Resolver::resolve(Expression& expression, CaseNode& node, const Scope& scope) {
  resolveOptional(node.operand, scope);
  std::vector<Expression*> results;
  for (CaseBranch& branch : node.branches) {
    resolve(branch.when, scope);
    resolve(branch.then, scope);
    if (node.operand) meet(*node.operand, *branch.when);
    results.push_back(branch.then);
  }
  resolveOptional(node.otherwise, scope);
  if (node.otherwise) results.push_back(node.otherwise);
  for (const Expression* result : results) expression.type = commonType(expression.type, result->type);
  for (Expression* result : results) convertForComparison(*result, expression.type.category);
}

void Resolver::resolve(Expression& expression, InNode& node, const Scope& scope) {
  if (node.query) resolveQuery(*node.query, &scope);
  resolve(node.value, scope);
  for (Expression* each : node.list) resolve(each, scope);
  for (Expression* each : node.list) meet(*node.value, *each);
  if (node.query)
    for (SelectCore& core : node.query->cores) meet(*node.value, *core.items.front().value);
  expression.type = integerType();
}

void Resolver::resolve(Expression& expression, BetweenNode& node, const Scope& scope) {
  for (Expression* each : {node.value, node.low, node.high}) resolve(each, scope);
  meet(*node.value, *node.low);
  meet(*node.value, *node.high);
  expression.type = integerType();
}

void Resolver::resolve(Expression& expression, LikeNode& node, const Scope& scope) {
  resolve(node.value, scope);
  resolve(node.pattern, scope);
  expression.type = integerType();
}

void Resolver::resolve(Expression& expression, IsNullNode& node, const Scope& scope) {
  resolve(node.operand, scope);
  expression.type = integerType();
}

void Resolver::resolve(Expression& expression, ExistsNode& node, const Scope& scope) {
  resolveQuery(*node.query, &scope);
  expression.type = integerType();
}

void Resolver::resolve(Expression& expression, SubqueryNode& node, const Scope& scope) {
  resolveQuery(*node.query, &scope);
  expression.type = node.query->columns.front().type;
}

}  // namespace ondrel::sql
