#pragma once

#include <string_view>
#include <vector>

#include "data/dialect/syntax_tree.h"

namespace ondrel::sql {

// Finds out what the names of a parsed statement stand for and which type each expression has, writes
// stars out, and notes on each expression the conversion that its place asks for. A name that the schema
// lacks raises the server's own error.
//
// | where values meet           | what converts                                                       |
// |-----------------------------|---------------------------------------------------------------------|
// | insert and update           | the value, to the declared type of its column                       |
// | comparison, in, between     | a date makes the other side a date; a number makes a text a number  |
// | isnull(a, b)                | b, to the declared type of a                                        |
// | case, coalesce              | every result, to the highest category among them                    |
// | + with a text on one side   | nothing: it joins                                                   |
class Resolver {
 public:
  Resolver(SyntaxTree& tree, const Schema& schema, std::string_view statement)
      : tree_(tree), schema_(schema), statement_(statement) {}
  void resolve();

  // The table of an insert, update or delete, and where it stands in a from list.
  const TableDefinition* target = nullptr;
  const Source* targetSource = nullptr;
  // Columns of the target that an insert fills, in order.
  std::vector<int> insertColumns;

 private:
  struct Scope {
    std::vector<Source*> sources;
    const Scope* outer = nullptr;
  };

  // sources and queries
  void resolveQuery(Query& query, const Scope* outer);
  void resolveCore(SelectCore& core, const Scope* outer, Scope& scope);
  void resolveSources(std::vector<Source*>& sources, Scope& scope);
  void resolveConditions(std::vector<Source*>& sources, const Scope& scope);
  void resolveOrder(Query& query, const Scope& scope);
  void expandStars(SelectCore& core, const Scope& scope);
  void appendColumns(std::vector<SelectItem>& items, const Source& source, const Token& token);
  const TableDefinition* table(const Token& name) const;

  // statements that change rows
  int columnToWrite(const Token& name) const;
  void resolveInsert();
  void resolveInsertQuery();
  void resolveUpdate();
  void resolveDelete();
  void findTarget(Scope& scope);

  // expressions, by kind
  void resolve(Expression* expression, const Scope& scope);
  void resolve(Expression& expression, NullNode& node, const Scope& scope);
  void resolve(Expression& expression, ColumnNode& node, const Scope& scope);
  void resolve(Expression& expression, LiteralNode& node, const Scope& scope);
  void resolve(Expression& expression, VariableNode& node, const Scope& scope);
  void resolve(Expression& expression, StarNode& node, const Scope& scope);
  void resolve(Expression& expression, SignNode& node, const Scope& scope);
  void resolve(Expression& expression, NotNode& node, const Scope& scope);
  void resolve(Expression& expression, BinaryNode& node, const Scope& scope);
  void resolve(Expression& expression, CallNode& node, const Scope& scope);
  void resolve(Expression& expression, ConvertNode& node, const Scope& scope);
  void resolve(Expression& expression, CaseNode& node, const Scope& scope);
  void resolve(Expression& expression, InNode& node, const Scope& scope);
  void resolve(Expression& expression, BetweenNode& node, const Scope& scope);
  void resolve(Expression& expression, LikeNode& node, const Scope& scope);
  void resolve(Expression& expression, IsNullNode& node, const Scope& scope);
  void resolve(Expression& expression, ExistsNode& node, const Scope& scope);
  void resolve(Expression& expression, SubqueryNode& node, const Scope& scope);
  void resolveOptional(Expression* expression, const Scope& scope) {
    if (expression) resolve(expression, scope);
  }
  void bindIn(Expression& expression, ColumnNode& node, const Scope& scope);
  void resolveArithmetic(Expression& expression, BinaryNode& node);
  Expression* newColumn(const Token& token, const Source& source, int column);
  [[noreturn]] void fail(const Token& token) const;

  SyntaxTree& tree_;
  const Schema& schema_;
  std::string_view statement_;
};

// Columns that a source offers: of its table or its query.
int sourceColumnCount(const Source& source);
std::string_view sourceColumnName(const Source& source, int column);
ResolvedType sourceColumnType(const Source& source, int column);

// Note the conversion of `expression` into a column, and into the category of a comparison.
void convertForColumn(Expression& expression, const ColumnType& target);
void convertForComparison(Expression& expression, Category category);

}  // namespace ondrel::sql
