#pragma once

#include "data/dialect/parser.h"

namespace ondrel::sql {

// Reads expressions by the bindings of their operators: a value, then every operator behind it that binds at
// least as tightly as asked for. Queries inside of an expression are read by whoever uses it.
class ExpressionParser {
 public:
  ExpressionParser(TokenCursor& cursor, SyntaxTree& tree) : cursor_(cursor), tree_(tree) {}

  Expression* expression(Binding minimum = Binding::None);
  Expression* number();
  Expression* star(const Token& at, std::string_view qualifier);

 protected:
  ~ExpressionParser() = default;
  virtual Query* query() = 0;

  TokenCursor& cursor_;
  SyntaxTree& tree_;

 private:
  using Operands = std::initializer_list<const Expression*>;

  Expression* make(const Token& token, ExpressionNode node, Operands operands = {});
  Expression* notBefore();
  Expression* prefix();
  Expression* literal();
  Expression* parenthesised();
  Expression* exists();
  Expression* nameOrCall();
  Expression* functionCall(const Token& name);
  Expression* convertCall(const Token& name);
  Expression* castCall(const Token& name);
  Expression* caseExpression();
  ColumnType typeSpecification();
  int typeLength();

  Expression* infix(Expression* left);
  Expression* predicate(Expression* left, bool negated);
  Expression* inList(Expression* left, bool negated);
  Expression* between(Expression* left, bool negated);
  void include(Expression* node, const std::vector<Expression*>& operands);
};

}  // namespace ondrel::sql
