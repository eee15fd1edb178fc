#include <fmt/format.h>

#include "data/dialect/function_table.h"
#include "data/dialect/resolver.h"
#include "data/dialect/server_errors.h"

namespace ondrel {
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
      return value.kind != ExpressionKind::Binary && from.declared.type == to.type &&
             from.declared.scale == to.scale;
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
  if (expression.isLiteral() || !fitsColumn(expression, target))
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

void Resolver::meet(Expression& a, Expression& b) {
  const Category category = std::max(a.type.category, b.type.category);
  convertForComparison(a, category);
  convertForComparison(b, category);
}

void Resolver::resolve(Expression* expression, const Scope& scope) {
  Expression& node = *expression;
  if (node.kind == ExpressionKind::Column && node.source) return;  // written out from a star
  if (node.query) resolveQuery(*node.query, &scope);
  for (Expression* operand : node.operands) resolve(operand, scope);
  switch (node.kind) {
    case ExpressionKind::Column:
      return resolveColumn(node, scope);
    case ExpressionKind::Number:
      node.type = {Category::Numeral, {SqlType::Int}};
      return;
    case ExpressionKind::Text:
      node.type = textType();
      return;
    case ExpressionKind::Null:
      return;
    case ExpressionKind::Variable:
      return resolveVariable(node);
    case ExpressionKind::Star:
      return;
    case ExpressionKind::Unary:
      convertForComparison(*node.operands[0], Category::Number);
      node.type = node.operands[0]->type.category == Category::Text ? numberType() : node.operands[0]->type;
      return;
    case ExpressionKind::Binary:
      return resolveBinary(node);
    case ExpressionKind::Call:
      return resolveCall(node);
    case ExpressionKind::Convert:
      node.type = valueTypeOf(node.target);
      return;
    case ExpressionKind::Case:
      return resolveCase(node);
    case ExpressionKind::In:
      return resolveIn(node, scope);
    case ExpressionKind::Between:
      for (const size_t bound : {1U, 2U}) meet(*node.operands[0], *node.operands[bound]);
      node.type = integerType();
      return;
    case ExpressionKind::Subquery:
      node.type = node.query->columns.front().type;
      return;
    case ExpressionKind::Not:
    case ExpressionKind::Like:
    case ExpressionKind::IsNull:
    case ExpressionKind::Exists:
      node.type = integerType();
      return;
  }
}

void Resolver::resolveColumn(Expression& node, const Scope& scope) {
  for (const Scope* at = &scope; at; at = at->outer)
    if (bindIn(node, *at)) return;
  throw serverError(ServerError::InvalidColumn,
                    fmt::format("Invalid column name '{}' at position {} of: {}", node.token.text,
                                node.token.position + 1, statement_));
}

bool Resolver::bindIn(Expression& node, const Scope& scope) {
  for (const Source* source : scope.sources) {
    if (!node.qualifier.empty() && !sameWord(source->name(), node.qualifier)) continue;
    for (int k = 0; k < sourceColumnCount(*source); ++k) {
      if (!sameWord(sourceColumnName(*source, k), node.token.text)) continue;
      if (node.source)
        throw serverError(ServerError::AmbiguousColumn,
                          fmt::format("Ambiguous column name '{}'.", node.token.text));
      node.source = source;
      node.column = k;
      node.type = sourceColumnType(*source, k);
      break;
    }
  }
  return node.source != nullptr;
}

void Resolver::resolveVariable(Expression& node) {
  if (!sameWord(node.token.text, "@@identity") && !sameWord(node.token.text, "@@rowcount")) fail(node.token);
  node.type = integerType();
}

void Resolver::resolveBinary(Expression& node) {
  const std::string_view symbol = node.token.text;
  if (node.token.kind == TokenKind::Word) {  // and, or
    node.type = integerType();
  } else if (symbol.find_first_of("=<>!") != std::string_view::npos) {
    meet(*node.operands[0], *node.operands[1]);
    node.type = integerType();
  } else {
    resolveArithmetic(node);
  }
}

void Resolver::resolveArithmetic(Expression& node) {
  Expression& a = *node.operands[0];
  Expression& b = *node.operands[1];
  const ResolvedType common = commonType(a.type, b.type);
  const bool anyText = a.type.category == Category::Text || b.type.category == Category::Text;
  if (node.token.text == "+" && anyText) {
    for (Expression* side : node.operands)
      if (side->type.category == Category::Date || side->type.category == Category::Number)
        side->conversion = {Conversion::ToText, {SqlType::VarChar}};
    node.type = textType();
    return;
  }
  if (common.category == Category::Date) {
    const bool shifts = (node.token.text == "+" || node.token.text == "-") &&
                        a.type.category == Category::Date && b.type.category != Category::Date;
    if (!shifts) fail(node.token);
    convertForComparison(b, Category::Number);
    node.type = dateType();
    return;
  }
  convertForComparison(a, Category::Number);
  convertForComparison(b, Category::Number);
  node.type = common.category <= Category::Bit ? (anyText ? numberType() : integerType()) : common;
}

void Resolver::resolveCall(Expression& node) {
  node.function = findFunction(node.token.text);
  if (node.function < 0)
    throw serverError(ServerError::NoSuchFunction,
                      fmt::format("'{}' is not a known function name, at position {} of: {}", node.token.text,
                                  node.token.position + 1, statement_));
  const FunctionRow& row = dialectFunctions()[static_cast<size_t>(node.function)];
  const int count = static_cast<int>(node.operands.size());
  if (count < row.least || count > row.most || (row.takesPart && findDatePart(node.qualifier) < 0))
    fail(node.token);
  node.type = ruleType(row, node.operands);
  // Money is exact on a server: a sum must not carry the tail of binary fractions.
  if (row.name == "sum" && node.type.category == Category::Number &&
      node.type.declared.type == SqlType::Money)
    node.conversion = {Conversion::ToMoney, {SqlType::Money}};
  for (size_t k = 0; k < node.operands.size(); ++k) {
    Expression& operand = *node.operands[k];
    switch (row.arguments[std::min(k, row.arguments.size() - 1)]) {
      case 'd':
        convertForComparison(operand, Category::Date);
        break;
      case 'n':
        convertForComparison(operand, Category::Number);
        break;
      case 't':
        if (operand.type.category == Category::Date)
          operand.conversion = {Conversion::ToText, {SqlType::VarChar}};
        break;
      default:
        break;
    }
  }
  if (row.name == "isnull") {
    Expression& other = *node.operands[1];
    if (node.type.category != Category::Numeral) convertForColumn(other, node.type.declared);
    if (other.conversion.kind == Conversion::ToText) other.conversion.kind = Conversion::CutText;
  } else if (row.name == "coalesce") {
    for (Expression* operand : node.operands) convertForComparison(*operand, node.type.category);
  } else if (row.name == "nullif") {
    meet(*node.operands[0], *node.operands[1]);
  }
}

void Resolver::resolveCase(Expression& node) {
  const size_t first = node.hasOperand ? 1 : 0;
  const size_t pairs = (node.operands.size() - first) / 2;
  std::vector<Expression*> results;
  for (size_t k = 0; k < pairs; ++k) {
    if (node.hasOperand) meet(*node.operands[0], *node.operands[first + 2 * k]);
    results.push_back(node.operands[first + 2 * k + 1]);
  }
  if (node.hasElse) results.push_back(node.operands.back());
  for (const Expression* result : results) node.type = commonType(node.type, result->type);
  for (Expression* result : results) convertForComparison(*result, node.type.category);
}

void Resolver::resolveIn(Expression& node, const Scope&) {
  Expression& left = *node.operands[0];
  if (node.query) {
    for (SelectCore& core : node.query->cores) meet(left, *core.items.front().value);
  } else {
    for (size_t k = 1; k < node.operands.size(); ++k) meet(left, *node.operands[k]);
  }
  node.type = integerType();
}

}  // namespace ondrel
