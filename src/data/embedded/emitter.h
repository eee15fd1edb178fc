#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/dialect/resolver.h"
#include "data/embedded/translation.h"

namespace ondrel {

// Writes a resolved statement in the language of the table engine.
class Emitter {
 public:
  Emitter(const SyntaxTree& tree, const Resolver& names, std::string_view statement, Translation& result)
      : tree_(tree), names_(names), statement_(statement), result_(result), out_(result.sql) {}
  void emit();

 private:
  void select(const Query& query, bool named);
  void core(const SelectCore& core, const Query& query, bool named);
  void limitedCore(const SelectCore& core, const Query& query, bool named);
  void order(const Query& query);
  void sources(const std::vector<Source*>& list);
  void source(const Source& source);
  void insert();
  void insertValues();
  void update();
  void changes();
  void remove();
  void whereClause(const Expression* condition);

  void value(const Expression& expression);       // with its conversion
  void plainValue(const Expression& expression);  // without
  void operand(const Expression& expression);     // in parentheses unless it binds tightly
  void collated(const Expression& expression);    // as a text to be compared
  void column(const Expression& expression);
  void binary(const Expression& expression);
  void arithmetic(const Expression& expression);
  void call(const Expression& expression);
  void convert(const Expression& expression);
  void caseOf(const Expression& expression);
  void in(const Expression& expression);
  void list(const std::vector<Expression*>& values);
  void name(std::string_view text);
  Emitter& put(std::string_view text) {
    out_ += text;
    return *this;
  }

  const SyntaxTree& tree_;
  const Resolver& names_;
  std::string_view statement_;
  Translation& result_;
  std::string& out_;
};

}  // namespace ondrel
