#include <charconv>

#include "data/dialect/parser_impl.h"

namespace ondrel {

// How tightly an operator binds; the operators of a row come from left to right.
struct Parser::BinaryOperator {
  std::string_view symbol;
  int precedence;
};

namespace {

enum Precedence { kLoosest, kOr, kAnd, kNot, kComparison, kSum, kProduct, kUnary };

}  // namespace

Expression* Parser::make(ExpressionKind kind, const Token& token) {
  Expression& result = tree_.expressions.emplace_back();
  result.kind = kind;
  result.token = token;
  return &result;
}

Expression* Parser::expression(int minimum) {
  if (++depth_ > kDeepest) fail();
  Expression* result = operators(minimum);
  --depth_;
  return result;
}

Expression* Parser::operators(int minimum) {
  // clang-format off
  static constexpr BinaryOperator kOperators[] = {
      {"or", kOr},         {"and", kAnd},
      {"=", kComparison},  {"<", kComparison},   {">", kComparison},  {"<=", kComparison}, {">=", kComparison},
      {"<>", kComparison}, {"!=", kComparison},
      {"+", kSum},         {"-", kSum},          {"&", kSum},         {"|", kSum},
      {"*", kProduct},     {"/", kProduct},      {"%", kProduct}};
  // clang-format on
  Expression* left = nullptr;
  if (minimum <= kNot && isWord("not")) {
    left = make(ExpressionKind::Not, advance());
    left->operands = {expression(kNot)};
  } else {
    left = prefix();
  }
  while (true) {
    if (minimum <= kComparison) {
      const bool negated = isWord("not") && (isWord("in", 1) || isWord("like", 1) || isWord("between", 1));
      if (negated) advance();
      if (Expression* found = predicate(left, negated)) {
        left = found;
        continue;
      }
    }
    const Token& token = peek();
    const BinaryOperator* found = nullptr;
    if (token.kind == TokenKind::Symbol || token.kind == TokenKind::Word)
      for (const BinaryOperator& row : kOperators)
        if (sameWord(row.symbol, token.text)) found = &row;
    if (!found || found->precedence < std::max(minimum, 1)) return left;
    Expression* node = make(ExpressionKind::Binary, advance());
    node->operands = {left, expression(found->precedence + 1)};
    left = node;
  }
}

// is [not] null, in, like, between behind `left`; nothing when none of them stands there.
Expression* Parser::predicate(Expression* left, bool negated) {
  if (isWord("is")) {
    Expression* node = make(ExpressionKind::IsNull, advance());
    node->negated = takeWord("not");
    expectWord("null");
    node->operands = {left};
    return node;
  }
  if (isWord("in")) return inList(left, negated);
  if (isWord("like")) {
    Expression* node = make(ExpressionKind::Like, advance());
    node->negated = negated;
    node->operands = {left, expression(kSum)};
    return node;
  }
  if (isWord("between")) {
    Expression* node = make(ExpressionKind::Between, advance());
    node->negated = negated;
    Expression* low = expression(kSum);
    expectWord("and");
    node->operands = {left, low, expression(kSum)};
    return node;
  }
  return nullptr;
}

Expression* Parser::inList(Expression* left, bool negated) {
  Expression* node = make(ExpressionKind::In, advance());
  node->negated = negated;
  node->operands = {left};
  expectSymbol("(");
  if (isWord("select")) {
    node->query = query();
  } else {
    do {
      node->operands.push_back(expression());
    } while (takeSymbol(","));
  }
  expectSymbol(")");
  return node;
}

Expression* Parser::prefix() {
  const Token token = peek();
  switch (token.kind) {
    case TokenKind::Number:
    case TokenKind::Text: {
      Expression* node =
          make(token.kind == TokenKind::Number ? ExpressionKind::Number : ExpressionKind::Text, token);
      node->literal = takeLiteral();
      return node;
    }
    case TokenKind::Variable:
      return make(ExpressionKind::Variable, advance());
    case TokenKind::Symbol:
      if (token.text == "(") return parenthesised();
      if (token.text == "-" || token.text == "+" || token.text == "~") {
        Expression* node = make(ExpressionKind::Unary, advance());
        node->operands = {expression(kUnary)};
        return node;
      }
      fail();
    case TokenKind::Word:
    case TokenKind::Quoted:
      return nameOrCall();
    default:
      fail();
  }
}

Expression* Parser::parenthesised() {
  const Token open = advance();
  Expression* node = nullptr;
  if (isWord("select")) {
    node = make(ExpressionKind::Subquery, open);
    node->query = query();
  } else {
    node = expression();
  }
  expectSymbol(")");
  return node;
}

Expression* Parser::nameOrCall() {
  if (isWord("null")) return make(ExpressionKind::Null, advance());
  if (isWord("case")) return caseExpression();
  if (isWord("exists")) {
    Expression* node = make(ExpressionKind::Exists, advance());
    expectSymbol("(");
    node->query = query();
    expectSymbol(")");
    return node;
  }
  const bool joinWord = (isWord("left") || isWord("right")) && isSymbol("(", 1);  // also functions
  Token name = joinWord ? advance() : expectName();
  std::string_view qualifier;
  while (takeSymbol(".")) {
    qualifier = name.text;
    name = expectName();
  }
  if (isSymbol("(")) return functionCall(name);
  if (sameWord(name.text, "current_timestamp") && qualifier.empty()) return make(ExpressionKind::Call, name);
  Expression* node = make(ExpressionKind::Column, name);
  node->qualifier = qualifier;
  return node;
}

Expression* Parser::functionCall(const Token& name) {
  advance();
  if (sameWord(name.text, "convert")) return convertCall(name);
  if (sameWord(name.text, "cast")) return castCall(name);
  Expression* node = make(ExpressionKind::Call, name);
  for (const std::string_view dated : {"datediff", "dateadd", "datepart", "datename"}) {
    if (!sameWord(dated, name.text)) continue;
    node->qualifier = expectName().text;
    expectSymbol(",");
  }
  if (takeSymbol(")")) return node;
  node->distinct = takeWord("distinct");
  if (isSymbol("*")) {
    node->operands.push_back(make(ExpressionKind::Star, advance()));
  } else {
    do {
      node->operands.push_back(expression());
    } while (takeSymbol(","));
  }
  expectSymbol(")");
  return node;
}

// convert(type, value [, style]): the style is the second operand.
Expression* Parser::convertCall(const Token& name) {
  Expression* node = make(ExpressionKind::Convert, name);
  node->target = typeSpecification();
  expectSymbol(",");
  node->operands.push_back(expression());
  if (takeSymbol(",")) node->operands.push_back(expression());
  expectSymbol(")");
  return node;
}

Expression* Parser::castCall(const Token& name) {
  Expression* node = make(ExpressionKind::Convert, name);
  node->operands.push_back(expression());
  expectWord("as");
  node->target = typeSpecification();
  expectSymbol(")");
  return node;
}

Expression* Parser::caseExpression() {
  Expression* node = make(ExpressionKind::Case, advance());
  if (!isWord("when")) {
    node->hasOperand = true;
    node->operands.push_back(expression());
  }
  while (takeWord("when")) {
    node->operands.push_back(expression());
    expectWord("then");
    node->operands.push_back(expression());
  }
  node->hasElse = takeWord("else");
  if (node->hasElse) node->operands.push_back(expression());
  expectWord("end");
  return node;
}

// A text type without a length is 30 characters here.
ColumnType Parser::typeSpecification() {
  const Token name = expectName();
  const auto type = sqlTypeNamed(name.text);
  if (!type) failAt(statement_, name);
  ColumnType result{*type, 0, 0};
  if (categoryOf(*type) == Category::Text && *type != SqlType::Text) result.size = 30;
  if (!takeSymbol("(")) return result;
  if (takeWord("max")) {
    result.size = 0;
  } else {
    result.size = typeLength();
    if (takeSymbol(",")) result.scale = typeLength();
  }
  expectSymbol(")");
  return result;
}

// A length is part of the statement's shape, not one of its values.
int Parser::typeLength() {
  const Token token = peek();
  if (token.kind != TokenKind::Number) fail();
  int length = 0;
  std::from_chars(token.text.data(), token.text.data() + token.text.size(), length);
  tree_.fixedLiterals.push_back(takeLiteral());
  return length;
}

}  // namespace ondrel
