#include "data/dialect/resolver.h"

#include <fmt/format.h>

#include "data/dialect/server_errors.h"
#include "data/dialect/token_cursor.h"

namespace ondrel::sql {

int sourceColumnCount(const Source& source) {
  return static_cast<int>(source.definition ? source.definition->columns.size()
                                            : source.query->columns.size());
}

std::string_view sourceColumnName(const Source& source, int column) {
  const auto at = static_cast<size_t>(column);
  return source.definition ? source.definition->columns[at].name : source.query->columns[at].name;
}

ResolvedType sourceColumnType(const Source& source, int column) {
  const auto at = static_cast<size_t>(column);
  return source.definition ? valueTypeOf(source.definition->columns[at].type)
                           : source.query->columns[at].type;
}

void Resolver::fail(const Token& token) const {
  failAt(statement_, token);
}

void Resolver::resolve() {
  switch (tree_.kind) {
    case StatementKind::Select:
      return resolveQuery(*tree_.query, nullptr);
    case StatementKind::Insert:
      return resolveInsert();
    case StatementKind::Update:
      return resolveUpdate();
    case StatementKind::Delete:
      return resolveDelete();
    case StatementKind::Call:
    case StatementKind::Setting:
      return;
  }
}

const TableDefinition* Resolver::table(const Token& name) const {
  const TableDefinition* found = schema_.find(name.text);
  if (!found)
    throw serverError(ServerError::InvalidObject, fmt::format("Invalid object name '{}'.", name.text));
  return found;
}

// ---- sources and queries

void Resolver::resolveQuery(Query& query, const Scope* outer) {
  Scope first;
  for (size_t k = 0; k < query.cores.size(); ++k) {
    Scope scope;
    resolveCore(query.cores[k], outer, scope);
    if (k == 0) first = std::move(scope);
  }
  const std::vector<SelectItem>& items = query.cores.front().items;
  for (const SelectCore& core : query.cores)
    if (core.items.size() != items.size()) fail(core.items.front().value->token);
  for (const SelectItem& item : items) {
    const bool named = item.alias.empty() && as<ColumnNode>(*item.value);
    query.columns.push_back({std::string(named ? item.value->token.text : item.alias), item.value->type});
  }
  resolveOrder(query, first);
}

void Resolver::resolveCore(SelectCore& core, const Scope* outer, Scope& scope) {
  scope.outer = outer;
  resolveSources(core.from, scope);
  resolveConditions(core.from, scope);
  expandStars(core, scope);
  if (core.top) resolve(core.top, scope);
  for (SelectItem& item : core.items) resolve(item.value, scope);
  if (core.where) resolve(core.where, scope);
  for (Expression* key : core.groupBy) resolve(key, scope);
  if (core.having) resolve(core.having, scope);
}

void Resolver::resolveSources(std::vector<Source*>& sources, Scope& scope) {
  for (Source* source : sources) {
    if (!source->group.empty()) {
      resolveSources(source->group, scope);
      continue;
    }
    if (source->query)
      resolveQuery(*source->query, scope.outer);
    else
      source->definition = table(source->token);
    scope.sources.push_back(source);
  }
}

void Resolver::resolveConditions(std::vector<Source*>& sources, const Scope& scope) {
  for (Source* source : sources) {
    resolveConditions(source->group, scope);
    if (source->on) resolve(source->on, scope);
  }
}

// A term of "order by" that names an output column means that column; a number is its position. Such terms
// become the position, which the emitter writes as digits.
void Resolver::resolveOrder(Query& query, const Scope& scope) {
  for (OrderItem& item : query.orderBy) {
    Expression& value = *item.value;
    if (isNumberLiteral(value)) {
      tree_.fixedLiterals.push_back(as<LiteralNode>(value)->literal);
      continue;
    }
    int found = -1;
    auto* column = as<ColumnNode>(value);
    if (column && column->qualifier.empty())
      for (size_t k = 0; k < query.columns.size() && found < 0; ++k)
        if (sameWord(query.columns[k].name, value.token.text)) found = static_cast<int>(k);
    if (found >= 0) {
      column->column = found;
      value.type = query.columns[static_cast<size_t>(found)].type;
    } else {
      resolve(item.value, scope);
    }
  }
}

void Resolver::expandStars(SelectCore& core, const Scope& scope) {
  std::vector<SelectItem> items;
  for (const SelectItem& item : core.items) {
    const auto* star = as<StarNode>(*item.value);
    if (!star) {
      items.push_back(item);
      continue;
    }
    const std::string_view qualifier = star->qualifier;
    const size_t before = items.size();
    for (const Source* source : scope.sources)
      if (qualifier.empty() || sameWord(source->name(), qualifier))
        appendColumns(items, *source, item.value->token);
    if (items.size() == before) fail(item.value->token);
  }
  core.items = std::move(items);
}

void Resolver::appendColumns(std::vector<SelectItem>& items, const Source& source, const Token& token) {
  for (int k = 0; k < sourceColumnCount(source); ++k) {
    SelectItem item;
    item.value = newColumn(token, source, k);
    item.value->token.text = sourceColumnName(source, k);
    items.push_back(item);
  }
}

Expression* Resolver::newColumn(const Token& token, const Source& source, int column) {
  Expression& result = tree_.expressions.emplace_back();
  result.token = token;
  result.node = ColumnNode{{}, &source, column};
  result.type = sourceColumnType(source, column);
  return &result;
}

// ---- statements that change rows

int Resolver::columnToWrite(const Token& name) const {
  const int column = target->find(name.text);
  if (column < 0)
    throw serverError(ServerError::InvalidColumn, fmt::format("Invalid column name '{}'.", name.text));
  if (target->columns[static_cast<size_t>(column)].computed)
    throw serverError(ServerError::ComputedColumn,
                      fmt::format("The column \"{}\" cannot be modified because it is computed.", name.text));
  return column;
}

void Resolver::resolveInsert() {
  target = table(tree_.target);
  if (tree_.columns.empty()) {
    for (size_t k = 0; k < target->columns.size(); ++k)
      if (!target->columns[k].identity && !target->columns[k].computed)
        insertColumns.push_back(static_cast<int>(k));
  }
  for (const Token& name : tree_.columns) insertColumns.push_back(columnToWrite(name));
  if (tree_.query) return resolveInsertQuery();
  const Scope empty;
  for (std::vector<Expression*>& row : tree_.rows) {
    if (row.size() != insertColumns.size())
      throw serverError(
          row.size() < insertColumns.size() ? ServerError::TooFewValues : ServerError::TooManyValues,
          "The number of values does not match the number of columns of the INSERT statement.");
    for (size_t k = 0; k < row.size(); ++k) {
      if (!row[k]) continue;
      resolve(row[k], empty);
      convertForColumn(*row[k], target->columns[static_cast<size_t>(insertColumns[k])].type);
    }
  }
}

void Resolver::resolveInsertQuery() {
  resolveQuery(*tree_.query, nullptr);
  if (tree_.query->columns.size() != insertColumns.size())
    throw serverError(
        ServerError::ColumnCountMismatch,
        "Insert Error: Column name or number of supplied values does not match table definition.");
  for (SelectCore& core : tree_.query->cores)
    for (size_t k = 0; k < insertColumns.size(); ++k)
      convertForColumn(*core.items[k].value, target->columns[static_cast<size_t>(insertColumns[k])].type);
}

// The target of an update or delete is a name of the from list, or else a table that stands beside it.
void Resolver::findTarget(Scope& scope) {
  resolveSources(tree_.from, scope);
  for (const bool byAlias : {true, false})
    for (const Source* source : scope.sources)
      if (!targetSource && source->definition &&
          sameWord(byAlias ? source->name() : source->table, tree_.target.text))
        targetSource = source;
  if (targetSource) {
    target = targetSource->definition;
  } else {
    Source& source = tree_.sources.emplace_back();
    source.token = tree_.target;
    source.definition = target = table(tree_.target);
    source.table = target->name;
    scope.sources.push_back(&source);
  }
  resolveConditions(tree_.from, scope);
}

void Resolver::resolveUpdate() {
  Scope scope;
  findTarget(scope);
  for (Assignment& assignment : tree_.assignments) {
    const int column = columnToWrite(assignment.column);
    resolve(assignment.value, scope);
    convertForColumn(*assignment.value, target->columns[static_cast<size_t>(column)].type);
  }
  if (tree_.where) resolve(tree_.where, scope);
}

void Resolver::resolveDelete() {
  Scope scope;
  findTarget(scope);
  if (tree_.where) resolve(tree_.where, scope);
}

}  // namespace ondrel::sql
