#include "data/dialect/emitter.h"

#include "data/dialect/token_cursor.h"

namespace ondrel::sql {

void Emitter::emit() {
  result_.kind = tree_.kind;
  result_.fixedLiterals = tree_.fixedLiterals;
  switch (tree_.kind) {
    case StatementKind::Select:
      select(*tree_.query, false);
      result_.columns = tree_.query->columns;
      return;
    case StatementKind::Insert:
      return insert();
    case StatementKind::Update:
      return update();
    case StatementKind::Delete:
      return remove();
    case StatementKind::Call:
      result_.procedure = tree_.target.text;
      result_.arguments = tree_.arguments;
      return;
    case StatementKind::Setting:
      return;
  }
}

// ---- queries

void Emitter::select(const Query& query, bool named) {
  for (const SelectCore& part : query.cores) {
    if (!part.combine.empty()) put(" ").put(part.combine).put(" ");
    if (part.top && query.cores.size() > 1)
      limitedCore(part, query, named);
    else
      core(part, query, named);
  }
  order(query);
  if (query.cores.size() == 1) limit(query, query.cores.front());
}

// A part of a union with a limit of its own has to be a query in itself.
void Emitter::limitedCore(const SelectCore& part, const Query& query, bool named) {
  put("select * from (");
  core(part, query, named);
  limit(query, part), put(")");
}

void Emitter::core(const SelectCore& part, const Query& query, bool named) {
  put(part.distinct ? "select distinct " : "select ");
  const bool isCompared = part.distinct || query.cores.size() > 1;
  for (size_t k = 0; k < part.items.size(); ++k) {
    if (k > 0) put(", ");
    const Expression& item = *part.items[k].value;
    isCompared ? compared(item, true) : value(item);
    if (named) put(" as "), name(query.columns[k].name);
  }
  if (!part.from.empty()) put(" from "), sources(part.from);
  whereClause(part.where);
  for (size_t k = 0; k < part.groupBy.size(); ++k) {
    put(k == 0 ? " group by " : ", ");
    compared(*part.groupBy[k], true);
  }
  if (part.having) put(" having "), value(*part.having);
}

void Emitter::order(const Query& query) {
  for (size_t k = 0; k < query.orderBy.size(); ++k) {
    put(k == 0 ? " order by " : ", ");
    orderKey(query.orderBy[k], query);
  }
}

void Emitter::sources(const std::vector<Source*>& list) {
  // In the order of JoinKind, but for the last.
  static constexpr std::string_view kJoins[] = {"",           ", ", " join ", " left join ", " right join ",
                                                " full join "};
  for (const Source* each : list) {
    put(each->join == JoinKind::Cross ? crossJoin() : kJoins[static_cast<size_t>(each->join)]);
    source(*each);
    if (each->on) put(" on "), value(*each->on);
  }
}

void Emitter::source(const Source& source) {
  if (!source.group.empty()) {
    put("("), sources(source.group), put(")");
  } else if (source.query) {
    put("("), select(*source.query, true), put(") as "), name(source.alias);
  } else {
    table(source);
  }
}

void Emitter::table(const Source& source) {
  name(source.definition->name);
  if (!source.alias.empty()) put(" as "), name(source.alias);
}

void Emitter::whereClause(const Expression* condition) {
  if (condition) put(" where "), value(*condition);
}

// ---- statements that change rows

void Emitter::insert() {
  result_.movesIdentity = names_.target->identityColumn() >= 0;
  put("insert into "), name(names_.target->name);
  if (tree_.defaultValues) {
    put(" default values");
    return afterInsert();
  }
  const bool single = tree_.rows.size() == 1;
  char separator = '(';
  for (size_t k = 0; k < names_.insertColumns.size(); ++k) {
    if (single && !tree_.rows.front()[k]) continue;  // default: the column is left out
    out_ += separator;
    separator = ',';
    name(names_.target->columns[static_cast<size_t>(names_.insertColumns[k])].name);
  }
  put(") ");
  tree_.query ? select(*tree_.query, false) : insertValues();
  afterInsert();
}

void Emitter::insertValues() {
  put("values ");
  for (size_t k = 0; k < tree_.rows.size(); ++k) {
    if (k > 0) put(",");
    char separator = '(';
    for (const Expression* each : tree_.rows[k]) {
      if (!each && tree_.rows.size() == 1) continue;
      if (!each) failAt(statement_, tree_.target);
      out_ += separator;
      separator = ',';
      value(*each);
    }
    put(")");
  }
}

void Emitter::update() {
  if (names_.targetSource) return updateJoined();
  put("update "), name(names_.target->name), put(" set ");
  for (size_t k = 0; k < tree_.assignments.size(); ++k) {
    if (k > 0) put(", ");
    assignedColumn(tree_.assignments[k]), put(" = "), value(*tree_.assignments[k].value);
  }
  if (!tree_.from.empty()) put(" from "), sources(tree_.from);
  whereClause(tree_.where);
}

void Emitter::assignedColumn(const Assignment& assignment) {
  const TableDefinition& target = *names_.target;
  name(target.columns[static_cast<size_t>(target.find(assignment.column.text))].name);
}

void Emitter::remove() {
  if (!tree_.from.empty()) return removeJoined();
  put("delete from "), name(names_.target->name);
  whereClause(tree_.where);
}

}  // namespace ondrel::sql
