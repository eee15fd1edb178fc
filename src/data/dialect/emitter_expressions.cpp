#include "data/dialect/emitter.h"
#include "data/dialect/function_table.h"

namespace ondrel::sql {
namespace {

bool isJunction(const Expression& expression, Key symbol) {
  const auto* binary = as<BinaryNode>(expression);
  return binary && binary->symbol == symbol;
}

// Kinds whose text needs no parentheses beside an operator.
bool isAtomic(const Expression& expression) {
  return as<ColumnNode>(expression) || isLiteral(expression) || as<NullNode>(expression) ||
         as<VariableNode>(expression) || as<CallNode>(expression) || as<ConvertNode>(expression) ||
         as<CaseNode>(expression) || as<SubqueryNode>(expression) ||
         expression.conversion.kind != Conversion::None;
}

}  // namespace

bool isTextExpression(const Expression& expression) {
  return expression.type.category == Category::Text && expression.conversion.kind == Conversion::None;
}

bool isTableColumn(const Expression& expression) {
  const auto* column = as<ColumnNode>(expression);
  return column && column->source && column->source->definition;
}

void Emitter::value(const Expression& expression) {
  const bool asItStands = isLiteral(expression) || expression.conversion.kind == Conversion::None;
  asItStands ? plainValue(expression) : converted(expression);
}

void Emitter::plainValue(const Expression& expression) {
  std::visit([&](const auto& node) { write(expression, node); }, expression.node);
}

void Emitter::operand(const Expression& expression) {
  if (isAtomic(expression)) return value(expression);
  put("("), value(expression), put(")");
}

void Emitter::list(const std::vector<Expression*>& values) {
  for (size_t k = 0; k < values.size(); ++k) {
    if (k > 0) put(", ");
    value(*values[k]);
  }
}

void Emitter::write(const Expression&, const NullNode&) {
  put("null");
}

void Emitter::write(const Expression&, const StarNode&) {
  put("*");
}

void Emitter::write(const Expression& expression, const ColumnNode& node) {
  column(expression, node);
}

void Emitter::write(const Expression& expression, const LiteralNode& node) {
  literal(expression, node);
}

void Emitter::write(const Expression& expression, const VariableNode&) {
  variable(expression);
}

void Emitter::write(const Expression& expression, const SignNode& node) {
  put(expression.token.text).put(" "), operand(*node.operand);
}

void Emitter::write(const Expression&, const NotNode& node) {
  put("not "), operand(*node.operand);
}

void Emitter::write(const Expression& expression, const BinaryNode& node) {
  if (node.symbol == Key::And || node.symbol == Key::Or) return junction(node);
  if (!isComparison(node.symbol)) return arithmetic(expression, node);
  compared(*node.left, true);
  put(" ").put(expression.token.text).put(" ");
  compared(*node.right, false);
}

void Emitter::junction(const BinaryNode& node) {
  const bool isAnd = node.symbol == Key::And;
  isAnd&& isJunction(*node.left, Key::Or) ? operand(*node.left) : value(*node.left);
  put(isAnd ? " and " : " or ");
  const bool apart = isJunction(*node.right, Key::Or) || (isAnd && isJunction(*node.right, Key::And));
  apart ? operand(*node.right) : value(*node.right);
}

void Emitter::arithmetic(const Expression& expression, const BinaryNode& node) {
  if (expression.type.category == Category::Date)
    return shiftedDate(*node.left, node.symbol == Key::Minus, *node.right);
  if (expression.type.category == Category::Text) {
    freeText(*node.left), put(" || "), freeText(*node.right);
    return;
  }
  operand(*node.left);
  put(" ").put(expression.token.text).put(" ");
  const bool divides = node.symbol == Key::Divided || node.symbol == Key::Modulo;
  divides ? divisor(*node.right) : operand(*node.right);
}

void Emitter::write(const Expression& expression, const CallNode& node) {
  call(expression, node, dialectFunctions()[static_cast<size_t>(node.function)]);
}

void Emitter::write(const Expression& expression, const ConvertNode& node) {
  convert(expression, node);
}

void Emitter::write(const Expression&, const CaseNode& node) {
  put("case");
  if (node.operand) put(" "), compared(*node.operand, true);
  for (const CaseBranch& branch : node.branches) {
    put(" when "), node.operand ? compared(*branch.when, false) : value(*branch.when);
    put(" then "), value(*branch.then);
  }
  if (node.otherwise) put(" else "), value(*node.otherwise);
  put(" end");
}

void Emitter::write(const Expression&, const InNode& node) {
  compared(*node.value, true);
  put(node.negated ? " not in (" : " in (");
  if (node.query) select(*node.query, false);
  for (size_t k = 0; k < node.list.size(); ++k) {
    if (k > 0) put(", ");
    compared(*node.list[k], false);
  }
  put(")");
}

void Emitter::write(const Expression&, const BetweenNode& node) {
  compared(*node.value, true);
  put(node.negated ? " not between " : " between ");
  compared(*node.low, false), put(" and "), compared(*node.high, false);
}

void Emitter::write(const Expression&, const LikeNode& node) {
  like(node);
}

void Emitter::write(const Expression&, const IsNullNode& node) {
  operand(*node.operand), put(node.negated ? " is not null" : " is null");
}

void Emitter::write(const Expression&, const ExistsNode& node) {
  put("exists ("), select(*node.query, false), put(")");
}

void Emitter::write(const Expression&, const SubqueryNode& node) {
  put("("), select(*node.query, false), put(")");
}

}  // namespace ondrel::sql
