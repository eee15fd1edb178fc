#pragma once

#include <vector>

#include "data/dialect/expression_parser.h"

namespace ondrel::sql {

// The hand-written parser behind parseStatement.
class StatementParser final : private ExpressionParser {
 public:
  StatementParser(TokenCursor& cursor, SyntaxTree& tree) : ExpressionParser(cursor, tree) {}
  void parse();

 private:
  // queries
  Query* query() override;
  SelectCore core();
  Expression* topCount();
  SelectItem selectItem();
  std::vector<OrderItem> orderList();
  std::vector<Source*> fromList();
  void joins(std::vector<Source*>& list);
  bool takeJoin(JoinKind& kind);
  Source* primary(JoinKind join);
  void hint(Source& source);
  std::string_view optionalAlias();

  // other statements
  void insert();
  std::vector<Expression*> insertRow();
  void update();
  void remove();
  void call();
  void setting();
};

}  // namespace ondrel::sql
