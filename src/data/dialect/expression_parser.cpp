#include "data/dialect/expression_parser.h"

#include <charconv>

namespace ondrel::sql {
namespace {

// Operators one after the other make a tree that hangs to the left, which is walked down again and again.
constexpr int kLongestChain = 1000;

Binding tighter(Binding binding) {
  return static_cast<Binding>(static_cast<int>(binding) + 1);
}

bool takesPart(std::string_view function) {
  for (const std::string_view dated : {"datediff", "dateadd", "datepart", "datename"})
    if (sameWord(dated, function)) return true;
  return false;
}

}  // namespace

Expression* ExpressionParser::make(const Token& token, ExpressionNode node, Operands operands) {
  Expression& result = tree_.expressions.emplace_back();
  result.token = token;
  result.node = std::move(node);
  for (const Expression* operand : operands) result.depth = std::max(result.depth, operand->depth + 1);
  if (result.depth > kLongestChain) failNested(cursor_.statement(), token);
  return &result;
}

// Operands that came after the node was made.
void ExpressionParser::include(Expression* node, const std::vector<Expression*>& operands) {
  for (const Expression* operand : operands) node->depth = std::max(node->depth, operand->depth + 1);
}

Expression* ExpressionParser::expression(Binding minimum) {
  const TokenCursor::Depth depth(cursor_);
  Expression* left = minimum <= Binding::Not && cursor_.is(Key::Not) ? notBefore() : prefix();
  while (cursor_.binding() != Binding::None && cursor_.binding() >= minimum) {
    Expression* whole = infix(left);
    if (!whole) break;
    left = whole;
  }
  return left;
}

Expression* ExpressionParser::notBefore() {
  const Token token = cursor_.advance();
  Expression* operand = expression(Binding::Not);
  return make(token, NotNode{operand}, {operand});
}

// What stands behind `left`: an operator with its right side, or a predicate. Nothing for a word "not" that belongs
// to neither.
Expression* ExpressionParser::infix(Expression* left) {
  switch (cursor_.key()) {
    case Key::Not: {
      if (!cursor_.is(Key::In, 1) && !cursor_.is(Key::Like, 1) && !cursor_.is(Key::Between, 1))
        return nullptr;
      cursor_.advance();
      return predicate(left, true);
    }
    case Key::Is:
    case Key::In:
    case Key::Like:
    case Key::Between:
      return predicate(left, false);
    default:
      break;
  }
  const Key symbol = cursor_.key();
  const Binding binding = cursor_.binding();
  const Token token = cursor_.advance();
  Expression* right = expression(tighter(binding));
  return make(token, BinaryNode{symbol, left, right}, {left, right});
}

Expression* ExpressionParser::predicate(Expression* left, bool negated) {
  if (cursor_.is(Key::In)) return inList(left, negated);
  if (cursor_.is(Key::Between)) return between(left, negated);
  const bool isLike = cursor_.is(Key::Like);
  const Token token = cursor_.advance();
  if (isLike) {
    Expression* pattern = expression(Binding::Sum);
    return make(token, LikeNode{left, pattern, negated}, {left, pattern});
  }
  negated = cursor_.take(Key::Not);
  cursor_.expect(Key::Null);
  return make(token, IsNullNode{left, negated}, {left});
}

Expression* ExpressionParser::inList(Expression* left, bool negated) {
  const Token token = cursor_.advance();
  InNode node;
  node.value = left;
  node.negated = negated;
  cursor_.expect(Key::Open);
  if (cursor_.is(Key::Select)) {
    node.query = query();
  } else {
    do {
      node.list.push_back(expression());
    } while (cursor_.take(Key::Comma));
  }
  cursor_.expect(Key::Close);
  const std::vector<Expression*> list = node.list;
  Expression* result = make(token, std::move(node), {left});
  include(result, list);
  return result;
}

Expression* ExpressionParser::between(Expression* left, bool negated) {
  const Token token = cursor_.advance();
  Expression* low = expression(Binding::Sum);
  cursor_.expect(Key::And);
  Expression* high = expression(Binding::Sum);
  return make(token, BetweenNode{left, low, high, negated}, {left, low, high});
}

// ---- what an expression begins with

Expression* ExpressionParser::prefix() {
  switch (cursor_.peek().kind) {
    case TokenKind::Number:
    case TokenKind::Text:
      return literal();
    case TokenKind::Variable:
      return make(cursor_.advance(), VariableNode{});
    case TokenKind::Quoted:
      return nameOrCall();
    default:
      break;
  }
  switch (cursor_.key()) {
    case Key::Open:
      return parenthesised();
    case Key::Minus:
    case Key::Plus:
    case Key::Complement: {
      const Token token = cursor_.advance();
      Expression* operand = expression(Binding::Sign);
      return make(token, SignNode{operand}, {operand});
    }
    case Key::Null:
      return make(cursor_.advance(), NullNode{});
    case Key::Case:
      return caseExpression();
    case Key::Exists:
      return exists();
    default:
      return nameOrCall();
  }
}

Expression* ExpressionParser::literal() {
  const Token token = cursor_.peek();
  return make(token, LiteralNode{cursor_.takeLiteral(), token.kind == TokenKind::Text});
}

Expression* ExpressionParser::number() {
  if (cursor_.peek().kind != TokenKind::Number) cursor_.fail();
  return literal();
}

Expression* ExpressionParser::star(const Token& at, std::string_view qualifier) {
  return make(at, StarNode{qualifier});
}

Expression* ExpressionParser::parenthesised() {
  const Token open = cursor_.advance();
  Expression* node = cursor_.is(Key::Select) ? make(open, SubqueryNode{query()}) : expression();
  cursor_.expect(Key::Close);
  return node;
}

Expression* ExpressionParser::exists() {
  const Token token = cursor_.advance();
  cursor_.expect(Key::Open);
  Expression* node = make(token, ExistsNode{query()});
  cursor_.expect(Key::Close);
  return node;
}

Expression* ExpressionParser::nameOrCall() {
  const bool isJoinWord = cursor_.is(Key::Left) || cursor_.is(Key::Right);  // also functions
  Token name = isJoinWord && cursor_.is(Key::Open, 1) ? cursor_.advance() : cursor_.expectName();
  std::string_view qualifier;
  while (cursor_.take(Key::Point)) {
    qualifier = name.text;
    name = cursor_.expectName();
  }
  if (cursor_.is(Key::Open)) return functionCall(name);
  if (keyRowOf(name).key == Key::CurrentTimestamp && qualifier.empty()) return make(name, CallNode{});
  return make(name, ColumnNode{qualifier});
}

Expression* ExpressionParser::functionCall(const Token& name) {
  cursor_.advance();
  const Key key = keyRowOf(Token{TokenKind::Word, false, name.position, name.text}).key;
  if (key == Key::Convert) return convertCall(name);
  if (key == Key::Cast) return castCall(name);
  CallNode node;
  if (takesPart(name.text)) {
    node.part = cursor_.expectName().text;
    cursor_.expect(Key::Comma);
  }
  if (!cursor_.take(Key::Close)) {
    node.distinct = cursor_.take(Key::Distinct);
    if (cursor_.is(Key::Times)) {
      node.arguments.push_back(star(cursor_.advance(), {}));
    } else {
      do {
        node.arguments.push_back(expression());
      } while (cursor_.take(Key::Comma));
    }
    cursor_.expect(Key::Close);
  }
  const std::vector<Expression*> arguments = node.arguments;
  Expression* result = make(name, std::move(node));
  include(result, arguments);
  return result;
}

// convert(type, value [, style])
Expression* ExpressionParser::convertCall(const Token& name) {
  ConvertNode node;
  node.target = typeSpecification();
  cursor_.expect(Key::Comma);
  node.value = expression();
  if (cursor_.take(Key::Comma)) node.style = expression();
  cursor_.expect(Key::Close);
  return make(name, node, {node.value});
}

Expression* ExpressionParser::castCall(const Token& name) {
  ConvertNode node;
  node.value = expression();
  cursor_.expect(Key::As);
  node.target = typeSpecification();
  cursor_.expect(Key::Close);
  return make(name, node, {node.value});
}

Expression* ExpressionParser::caseExpression() {
  const Token token = cursor_.advance();
  CaseNode node;
  std::vector<Expression*> operands;
  const auto next = [&] { return operands.emplace_back(expression()); };
  if (!cursor_.is(Key::When)) node.operand = next();
  while (cursor_.take(Key::When)) {
    CaseBranch branch;
    branch.when = next();
    cursor_.expect(Key::Then);
    branch.then = next();
    node.branches.push_back(branch);
  }
  if (cursor_.take(Key::Else)) node.otherwise = next();
  cursor_.expect(Key::End);
  Expression* result = make(token, std::move(node));
  include(result, operands);
  return result;
}

// A text type without a length is 30 characters here.
ColumnType ExpressionParser::typeSpecification() {
  const Token name = cursor_.expectName();
  const auto type = sqlTypeNamed(name.text);
  if (!type) failAt(cursor_.statement(), name);
  ColumnType result{*type, 0, 0};
  if (categoryOf(*type) == Category::Text && *type != SqlType::Text) result.size = 30;
  if (!cursor_.take(Key::Open)) return result;
  if (cursor_.take(Key::Max)) {
    result.size = 0;
  } else {
    result.size = typeLength();
    if (cursor_.take(Key::Comma)) result.scale = typeLength();
  }
  cursor_.expect(Key::Close);
  return result;
}

// A length is part of the statement's shape, not one of its values.
int ExpressionParser::typeLength() {
  const Token token = cursor_.peek();
  if (token.kind != TokenKind::Number) cursor_.fail();
  int length = 0;
  std::from_chars(token.text.data(), token.text.data() + token.text.size(), length);
  tree_.fixedLiterals.push_back(cursor_.takeLiteral());
  return length;
}

}  // namespace ondrel::sql
