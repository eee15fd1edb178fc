#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/dialect/function_table.h"
#include "data/dialect/resolver.h"
#include "data/dialect/translation.h"

namespace ondrel::sql {

// Walks a resolved statement and writes it in the language of an engine. The walk is one for all engines; an
// engine gives what it spells in a way of its own.
class Emitter {
 public:
  Emitter(const SyntaxTree& tree, const Resolver& names, std::string_view statement, Translation& result)
      : tree_(tree), names_(names), statement_(statement), result_(result), out_(result.sql) {}
  Emitter(const Emitter&) = delete;
  Emitter& operator=(const Emitter&) = delete;
  void emit();
  Emitter& put(std::string_view text) {
    out_ += text;
    return *this;
  }

 protected:
  virtual ~Emitter() = default;

  // ---- what an engine spells in its own way

  virtual void name(std::string_view text) = 0;
  virtual void literal(const Expression& expression, const LiteralNode& node) = 0;
  virtual void variable(const Expression& expression) = 0;
  virtual void column(const Expression& expression, const ColumnNode& node) = 0;
  // A value with the conversion that its place asks for.
  virtual void converted(const Expression& expression) = 0;
  // A text on its way into a function, a pattern or another text.
  virtual void freeText(const Expression& expression) = 0;
  // A value where it meets others: compared, ordered, grouped, told apart. Of two texts the one that `leads` says
  // how.
  virtual void compared(const Expression& expression, bool leads) = 0;
  virtual void shiftedDate(const Expression& date, bool back, const Expression& days) = 0;
  virtual void divisor(const Expression& expression) = 0;
  virtual void like(const LikeNode& node) = 0;
  virtual void call(const Expression& expression, const CallNode& node, const FunctionRow& row) = 0;
  virtual void convert(const Expression& expression, const ConvertNode& node) = 0;
  virtual void orderKey(const OrderItem& item, const Query& query) = 0;
  // What stands behind the conditions of a part of a query, and behind its order.
  virtual void order(const Query& query);
  virtual void limit(const Query& query, const SelectCore& core) = 0;
  virtual std::string_view crossJoin() const { return " cross join "; }
  virtual void table(const Source& source);
  virtual void afterInsert() {}
  // An update or delete whose target stands in its from list.
  virtual void updateJoined() = 0;
  virtual void removeJoined() = 0;

  // ---- the walk

  // `named`: the columns take their names, for a query in a from list.
  void select(const Query& query, bool named);
  void sources(const std::vector<Source*>& list);
  void whereClause(const Expression* condition);
  void assignedColumn(const Assignment& assignment);
  void value(const Expression& expression);       // with its conversion
  void plainValue(const Expression& expression);  // without
  void operand(const Expression& expression);     // in parentheses unless it binds tightly
  void list(const std::vector<Expression*>& values);

  const SyntaxTree& tree_;
  const Resolver& names_;
  std::string_view statement_;
  Translation& result_;
  std::string& out_;

 private:
  void core(const SelectCore& core, const Query& query, bool named);
  void limitedCore(const SelectCore& core, const Query& query, bool named);
  void source(const Source& source);
  void insert();
  void insertValues();
  void update();
  void remove();

  void write(const Expression& expression, const NullNode& node);
  void write(const Expression& expression, const ColumnNode& node);
  void write(const Expression& expression, const LiteralNode& node);
  void write(const Expression& expression, const VariableNode& node);
  void write(const Expression& expression, const StarNode& node);
  void write(const Expression& expression, const SignNode& node);
  void write(const Expression& expression, const NotNode& node);
  void write(const Expression& expression, const BinaryNode& node);
  void write(const Expression& expression, const CallNode& node);
  void write(const Expression& expression, const ConvertNode& node);
  void write(const Expression& expression, const CaseNode& node);
  void write(const Expression& expression, const InNode& node);
  void write(const Expression& expression, const BetweenNode& node);
  void write(const Expression& expression, const LikeNode& node);
  void write(const Expression& expression, const IsNullNode& node);
  void write(const Expression& expression, const ExistsNode& node);
  void write(const Expression& expression, const SubqueryNode& node);
  void junction(const BinaryNode& node);
  void arithmetic(const Expression& expression, const BinaryNode& node);
};

// A text that no conversion has been asked of.
bool isTextExpression(const Expression& expression);
// A column of a table, not of a query in a from list.
bool isTableColumn(const Expression& expression);

}  // namespace ondrel::sql
