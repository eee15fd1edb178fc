#include "data/embedded/emitter.h"

#include "data/dialect/parser.h"

namespace ondrel {
namespace {

// Name of the query that works out the changes of an update with a from list, and of its columns.
constexpr std::string_view kChange = "\"the change\"";

std::string newValueName(size_t assignment) {
  return "value" + std::to_string(assignment);
}

}  // namespace

Translation translate(std::string_view statement, const Schema& schema) {
  Translation result;
  const auto tree = parseStatement(statement);
  Resolver names(*tree, schema, statement);
  names.resolve();
  Emitter(*tree, names, statement, result).emit();
  return result;
}

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

void Emitter::name(std::string_view text) {
  out_ += '"';
  for (const char c : text) out_.append(c == '"' ? 2 : 1, c);
  out_ += '"';
}

// ---- queries

// `named`: the columns take their names, for a query in a from list.
void Emitter::select(const Query& query, bool named) {
  for (const SelectCore& part : query.cores) {
    if (!part.combine.empty()) put(" ").put(part.combine).put(" ");
    if (part.top && query.cores.size() > 1)
      limitedCore(part, query, named);
    else
      core(part, query, named);
  }
  order(query);
  if (query.cores.size() == 1 && query.cores.front().top) put(" limit "), value(*query.cores.front().top);
}

// A part of a union with a limit of its own has to be a query in itself.
void Emitter::limitedCore(const SelectCore& part, const Query& query, bool named) {
  put("select * from (");
  core(part, query, named);
  put(" limit "), value(*part.top), put(")");
}

void Emitter::core(const SelectCore& part, const Query& query, bool named) {
  put(part.distinct ? "select distinct " : "select ");
  const bool compared = part.distinct || query.cores.size() > 1;
  for (size_t k = 0; k < part.items.size(); ++k) {
    if (k > 0) put(", ");
    const Expression& item = *part.items[k].value;
    compared ? collated(item) : value(item);
    if (named) put(" as "), name(query.columns[k].name);
  }
  if (!part.from.empty()) put(" from "), sources(part.from);
  whereClause(part.where);
  for (size_t k = 0; k < part.groupBy.size(); ++k) {
    put(k == 0 ? " group by " : ", ");
    collated(*part.groupBy[k]);
  }
  if (part.having) put(" having "), value(*part.having);
}

void Emitter::order(const Query& query) {
  for (size_t k = 0; k < query.orderBy.size(); ++k) {
    put(k == 0 ? " order by " : ", ");
    const Expression& key = *query.orderBy[k].value;
    if (key.kind == ExpressionKind::Number) {
      put(key.token.text);
    } else if (key.kind == ExpressionKind::Column && !key.source) {
      put(std::to_string(key.column + 1));
      if (key.type.category == Category::Text) put(" collate store");
    } else {
      collated(key);
    }
    if (query.orderBy[k].descending) put(" desc");
  }
}

void Emitter::sources(const std::vector<Source*>& list) {
  for (const Source* each : list) {
    switch (each->join) {
      case JoinKind::First:
        break;
      case JoinKind::Comma:
        put(", ");
        break;
      case JoinKind::Inner:
        put(" join ");
        break;
      case JoinKind::Left:
        put(" left join ");
        break;
      case JoinKind::Right:
        put(" right join ");
        break;
      case JoinKind::Full:
        put(" full join ");
        break;
      case JoinKind::Cross:
        put(", ");
        break;
    }
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
    name(source.definition->name);
    if (!source.alias.empty()) put(" as "), name(source.alias);
  }
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
    return;
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

// With a from list the rows and their new values are worked out first, as a query over the whole list, and
// then joined to the target by the number of the row: joined by its name, every row would change.
void Emitter::update() {
  put("update "), name(names_.target->name), put(" set ");
  for (size_t k = 0; k < tree_.assignments.size(); ++k) {
    if (k > 0) put(", ");
    const Assignment& each = tree_.assignments[k];
    name(names_.target->columns[static_cast<size_t>(names_.target->find(each.column.text))].name), put(" = ");
    names_.targetSource ? void(put(kChange).put(".").put(newValueName(k))) : value(*each.value);
  }
  if (names_.targetSource) return changes();
  if (!tree_.from.empty()) put(" from "), sources(tree_.from);
  whereClause(tree_.where);
}

void Emitter::changes() {
  put(" from (select "), name(names_.targetSource->name()), put(".rowid as target");
  for (size_t k = 0; k < tree_.assignments.size(); ++k)
    put(", "), value(*tree_.assignments[k].value), put(" as ").put(newValueName(k));
  put(" from "), sources(tree_.from);
  whereClause(tree_.where);
  put(") as ").put(kChange).put(" where ");
  name(names_.target->name), put(".rowid = ").put(kChange).put(".target");
}

void Emitter::remove() {
  put("delete from "), name(names_.target->name);
  if (tree_.from.empty()) return whereClause(tree_.where);
  put(" where rowid in (select ");
  name(names_.targetSource ? names_.targetSource->name() : names_.target->name);
  put(".rowid from ");
  if (!names_.targetSource) name(names_.target->name), put(", ");
  sources(tree_.from);
  whereClause(tree_.where);
  put(")");
}

}  // namespace ondrel
