#include "data/dialect/function_table.h"
#include "data/dialect/parser.h"
#include "data/embedded/emitter.h"

namespace ondrel {
namespace {

// Name of the function that converts while a statement runs; the arguments behind the value are the number
// of the target type, its size and its scale.
constexpr std::string_view kConvertFunction = "to_column";

bool isAnd(const Expression& expression) {
  return expression.kind == ExpressionKind::Binary && sameWord(expression.token.text, "and");
}

bool isOr(const Expression& expression) {
  return expression.kind == ExpressionKind::Binary && sameWord(expression.token.text, "or");
}

bool isAtomic(const Expression& expression) {
  switch (expression.kind) {
    case ExpressionKind::Column:
    case ExpressionKind::Number:
    case ExpressionKind::Text:
    case ExpressionKind::Null:
    case ExpressionKind::Variable:
    case ExpressionKind::Call:
    case ExpressionKind::Convert:
    case ExpressionKind::Case:
    case ExpressionKind::Subquery:
      return true;
    default:
      return expression.conversion.kind != Conversion::None;
  }
}

bool isTextExpression(const Expression& expression) {
  return expression.type.category == Category::Text && expression.conversion.kind == Conversion::None;
}

}  // namespace

void Emitter::value(const Expression& expression) {
  const ValueConversion& conversion = expression.conversion;
  if (expression.isLiteral()) {
    result_.parameters.push_back({expression.literal, conversion});
    put("?");
  } else if (conversion.kind == Conversion::None) {
    plainValue(expression);
  } else if (conversion.kind == Conversion::ToText && expression.type.category != Category::Text) {
    put("convert_text("), plainValue(expression);
    put(", ").put(std::to_string(static_cast<int>(expression.type.declared.type)));
    put(", ").put(std::to_string(conversion.target.size)).put(", 0, 1)");
  } else {
    put(kConvertFunction).put("("), plainValue(expression);
    put(", ").put(std::to_string(static_cast<int>(conversion.kind)));
    put(", ").put(std::to_string(static_cast<int>(conversion.target.type)));
    put(", ").put(std::to_string(conversion.target.size));
    put(", ").put(std::to_string(conversion.target.scale)).put(")");
  }
}

void Emitter::plainValue(const Expression& node) {
  switch (node.kind) {
    case ExpressionKind::Column:
      return column(node);
    case ExpressionKind::Number:
    case ExpressionKind::Text:
      return value(node);
    case ExpressionKind::Null:
      put("null");
      return;
    case ExpressionKind::Variable:
      put(sameWord(node.token.text, "@@identity") ? "last_identity()" : "row_count()");
      return;
    case ExpressionKind::Star:
      put("*");
      return;
    case ExpressionKind::Unary:
      put(node.token.text).put(" "), operand(*node.operands[0]);
      return;
    case ExpressionKind::Not:
      put("not "), operand(*node.operands[0]);
      return;
    case ExpressionKind::Binary:
      return binary(node);
    case ExpressionKind::Call:
      return call(node);
    case ExpressionKind::Convert:
      return convert(node);
    case ExpressionKind::Case:
      return caseOf(node);
    case ExpressionKind::In:
      return in(node);
    case ExpressionKind::Between:
      collated(*node.operands[0]), put(node.negated ? " not between " : " between ");
      operand(*node.operands[1]), put(" and "), operand(*node.operands[2]);
      return;
    case ExpressionKind::Like:
      operand(*node.operands[0]), put(node.negated ? " not like " : " like "), operand(*node.operands[1]);
      return;
    case ExpressionKind::IsNull:
      operand(*node.operands[0]), put(node.negated ? " is not null" : " is null");
      return;
    case ExpressionKind::Exists:
      put("exists ("), select(*node.query, false), put(")");
      return;
    case ExpressionKind::Subquery:
      put("("), select(*node.query, false), put(")");
      return;
  }
}

void Emitter::operand(const Expression& expression) {
  if (isAtomic(expression)) return value(expression);
  put("("), value(expression), put(")");
}

// A column brings its collation along; any other text is told.
void Emitter::collated(const Expression& expression) {
  if (!isTextExpression(expression) ||
      (expression.kind == ExpressionKind::Column && expression.source->definition))
    return value(expression);
  operand(expression), put(" collate store");
}

void Emitter::column(const Expression& expression) {
  name(expression.source->name()), put(".");
  name(sourceColumnName(*expression.source, expression.column));
}

void Emitter::binary(const Expression& node) {
  const Expression& a = *node.operands[0];
  const Expression& b = *node.operands[1];
  if (isAnd(node) || isOr(node)) {
    isOr(a) && isAnd(node) ? operand(a) : value(a);
    put(isAnd(node) ? " and " : " or ");
    isOr(b) || (isAnd(b) && isAnd(node)) ? operand(b) : value(b);
    return;
  }
  if (node.token.text.find_first_of("=<>!") == std::string_view::npos) return arithmetic(node);
  const bool texts = isTextExpression(a) && isTextExpression(b);
  texts && !(a.kind == ExpressionKind::Column && a.source->definition) ? collated(a) : operand(a);
  put(" ").put(node.token.text).put(" "), operand(b);
}

void Emitter::arithmetic(const Expression& node) {
  const Expression& a = *node.operands[0];
  const Expression& b = *node.operands[1];
  const std::string_view symbol = node.token.text;
  if (node.type.category == Category::Date) {
    put("add_days("), value(a), put(", "), put(symbol == "-" ? "-(" : "("), value(b), put("))");
    return;
  }
  operand(a);
  if (symbol == "/" || symbol == "%") {
    put(" ").put(symbol).put(" divisor("), value(b), put(")");
  } else {
    put(" ").put(node.type.category == Category::Text ? "||" : symbol).put(" "), operand(b);
  }
}

void Emitter::call(const Expression& node) {
  const FunctionRow& row = dialectFunctions()[static_cast<size_t>(node.function)];
  const bool wholeAverage = row.name == "avg" && node.type.category == Category::Integer;
  if (wholeAverage) put("cast(");
  put(row.sqlName).put("(");
  const int part = row.takesPart ? findDatePart(node.qualifier) : row.fixedPart;
  if (part >= 0) put(std::to_string(part)).put(node.operands.empty() ? "" : ", ");
  if (node.distinct) put("distinct ");
  if (row.name == "nullif")
    collated(*node.operands[0]), put(", "), value(*node.operands[1]);
  else
    list(node.operands);
  put(")");
  if (wholeAverage) put(" as integer)");
}

void Emitter::list(const std::vector<Expression*>& values) {
  for (size_t k = 0; k < values.size(); ++k) {
    if (k > 0) put(", ");
    value(*values[k]);
  }
}

// convert_text(value, its type, length, style, strict); other types convert as for a column.
void Emitter::convert(const Expression& node) {
  const Expression& from = *node.operands[0];
  const ColumnType& to = node.target;
  if (categoryOf(to.type) == Category::Text) {
    put("convert_text("), value(from);
    put(", ").put(std::to_string(from.type.category == Category::Text
                                     ? static_cast<int>(SqlType::VarChar)
                                     : static_cast<int>(from.type.declared.type)));
    put(", ").put(std::to_string(to.size)).put(", ");
    node.operands.size() > 1 ? value(*node.operands[1]) : void(put("0"));
    put(", 0)");
    return;
  }
  Expression target = from;
  convertForColumn(target, to);
  if (target.conversion.kind == Conversion::None && from.kind == ExpressionKind::Null) return value(from);
  value(target);
}

void Emitter::caseOf(const Expression& node) {
  put("case");
  size_t at = 0;
  if (node.hasOperand) put(" "), collated(*node.operands[at++]);
  while (at + 1 < node.operands.size()) {
    put(" when "), value(*node.operands[at]), put(" then "), value(*node.operands[at + 1]);
    at += 2;
  }
  if (node.hasElse) put(" else "), value(*node.operands[at]);
  put(" end");
}

void Emitter::in(const Expression& node) {
  const Expression& left = *node.operands[0];
  isTextExpression(left) && left.kind != ExpressionKind::Column ? collated(left) : operand(left);
  put(node.negated ? " not in (" : " in (");
  if (node.query)
    select(*node.query, false);
  else
    list({node.operands.begin() + 1, node.operands.end()});
  put(")");
}

}  // namespace ondrel
