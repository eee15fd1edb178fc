#pragma once

#include <initializer_list>
#include <vector>

#include "data/dialect/parser.h"

namespace ondrel {

// The hand-written parser behind parseStatement: statements in parser.cpp, expressions in
// parser_expressions.cpp.
class Parser {
 public:
  Parser(std::string_view statement, SyntaxTree& tree);
  void parse();

 private:
  static constexpr int kDeepest = 400;

  struct BinaryOperator;

  // tokens
  const Token& peek(size_t ahead = 0) const { return tokens_[std::min(at_ + ahead, tokens_.size() - 1)]; }
  Token advance();
  bool isWord(std::string_view word, size_t ahead = 0) const;
  bool isSymbol(std::string_view symbol, size_t ahead = 0) const;
  bool takeWord(std::string_view word);
  bool takeSymbol(std::string_view symbol);
  void expectWord(std::string_view word);
  void expectSymbol(std::string_view symbol);
  bool isName(size_t ahead = 0) const;
  Token expectName();
  Token expectTable();
  int takeLiteral();
  [[noreturn]] void fail() const { failAt(statement_, peek()); }

  // statements
  Query* query();
  Query* queryParts();
  SelectCore core();
  Expression* topCount();
  SelectItem selectItem();
  std::vector<Source*> fromList();
  void joins(std::vector<Source*>& list);
  bool takeJoin(JoinKind& kind);
  Source* primary(JoinKind join);
  void skipHint();
  std::string_view optionalAlias();
  void insert();
  void update();
  void remove();
  void call();
  void setting();

  // expressions
  Expression* make(ExpressionKind kind, const Token& token);
  Expression* expression(int minimum = 0);
  Expression* operators(int minimum);
  Expression* prefix();
  Expression* predicate(Expression* left, bool negated);
  Expression* inList(Expression* left, bool negated);
  Expression* nameOrCall();
  Expression* functionCall(const Token& name);
  Expression* convertCall(const Token& name);
  Expression* castCall(const Token& name);
  Expression* caseExpression();
  Expression* parenthesised();
  ColumnType typeSpecification();
  int typeLength();

  std::string_view statement_;
  SyntaxTree& tree_;
  std::vector<Token> tokens_;
  std::vector<int> literals_;  // of each token: its number among the literals, or -1
  size_t at_ = 0;
  int depth_ = 0;  // of expressions and queries in each other
};

}  // namespace ondrel
