#include "data/embedded/sqlite_emitter.h"

#include "data/dialect/emitter.h"
#include "data/dialect/function_table.h"
#include "data/dialect/parser.h"

namespace ondrel::sql {
namespace {

// Name of the function that converts while a statement runs; the arguments behind the value are the number
// of the target type, its size and its scale.
constexpr std::string_view kConvertFunction = "to_column";

// Name of the query that works out the changes of an update with a from list, and of its columns.
constexpr std::string_view kChange = "\"the change\"";

std::string newValueName(size_t assignment) {
  return "value" + std::to_string(assignment);
}

// What functions of the dialect are called here, when it is not the same.
struct FunctionName {
  std::string_view dialect, engine;
};
// clang-format off
constexpr FunctionName kFunctionNames[] = {
    {"isnull",            "ifnull"},
    {"current_timestamp", "getdate"},
    {"year",              "datepart"},
    {"month",             "datepart"},
    {"day",               "datepart"},
    {"substring",         "substring_of"},
    {"left",              "left_of"},
    {"right",             "right_of"},
    {"replace",           "replace_in"},
    {"round",             "round_to"},
    {"scope_identity",    "last_identity"},
};
// clang-format on

std::string_view engineName(std::string_view function) {
  for (const FunctionName& row : kFunctionNames)
    if (row.dialect == function) return row.engine;
  return function;
}

class SqliteEmitter final : public Emitter {
 public:
  using Emitter::Emitter;

 private:
  void name(std::string_view text) override {
    out_ += '"';
    for (const char c : text) out_.append(c == '"' ? 2 : 1, c);
    out_ += '"';
  }

  void literal(const Expression& expression, const LiteralNode& node) override {
    result_.parameters.push_back({node.literal, expression.conversion});
    put("?");
  }

  void variable(const Expression& expression) override {
    put(sameWord(expression.token.text, "@@identity") ? "last_identity()" : "row_count()");
  }

  void column(const Expression&, const ColumnNode& node) override {
    name(node.source->name()), put(".");
    name(sourceColumnName(*node.source, node.column));
  }

  void converted(const Expression& expression) override {
    const ValueConversion& conversion = expression.conversion;
    const ColumnType& target = conversion.target;
    if (conversion.kind == Conversion::ToText && expression.type.category != Category::Text) {
      put("convert_text("), plainValue(expression);
      number(static_cast<int>(expression.type.declared.type)), number(target.size), put(", 0, 1)");
    } else {
      put(kConvertFunction).put("("), plainValue(expression);
      number(static_cast<int>(conversion.kind)), number(static_cast<int>(target.type));
      number(target.size), number(target.scale), put(")");
    }
  }

  void freeText(const Expression& expression) override { operand(expression); }

  // A column brings its collation along; any other text is told.
  void compared(const Expression& expression, bool leads) override {
    operand(expression);
    if (leads && isTextExpression(expression) && !isTableColumn(expression)) put(" collate store");
  }

  void shiftedDate(const Expression& date, bool back, const Expression& days) override {
    put("add_days("), value(date), put(back ? ", -(" : ", ("), value(days), put("))");
  }

  void divisor(const Expression& expression) override { put("divisor("), value(expression), put(")"); }

  void like(const LikeNode& node) override {
    operand(*node.value), put(node.negated ? " not like " : " like "), operand(*node.pattern);
  }

  void call(const Expression& expression, const CallNode& node, const FunctionRow& row) override {
    const bool wholeAverage = row.name == "avg" && expression.type.category == Category::Integer;
    if (wholeAverage) put("cast(");
    put(engineName(row.name)).put("(");
    const int part = row.takesPart ? findDatePart(node.part) : row.fixedPart;
    if (part >= 0) put(std::to_string(part)).put(node.arguments.empty() ? "" : ", ");
    if (node.distinct) put("distinct ");
    if (row.name == "nullif")
      compared(*node.arguments[0], true), put(", "), value(*node.arguments[1]);
    else
      list(node.arguments);
    put(")");
    if (wholeAverage) put(" as integer)");
  }

  // convert_text(value, its type, length, style, strict); other types convert as for a column.
  void convert(const Expression&, const ConvertNode& node) override {
    const Expression& from = *node.value;
    if (categoryOf(node.target.type) != Category::Text) {
      Expression target = from;
      convertForColumn(target, node.target);
      return value(target);
    }
    const bool isText = from.type.category == Category::Text;
    put("convert_text("), value(from);
    number(static_cast<int>(isText ? SqlType::VarChar : from.type.declared.type)), number(node.target.size);
    put(", "), node.style ? value(*node.style) : void(put("0"));
    put(", 0)");
  }

  void orderKey(const OrderItem& item, const Query&) override {
    const Expression& key = *item.value;
    const auto* column = as<ColumnNode>(key);
    if (isNumberLiteral(key)) {
      put(key.token.text);
    } else if (column && !column->source) {
      put(std::to_string(column->column + 1));
      if (key.type.category == Category::Text) put(" collate store");
    } else {
      compared(key, true);
    }
    if (item.descending) put(" desc");
  }

  void limit(const Query&, const SelectCore& core) override {
    if (core.top) put(" limit "), value(*core.top);
  }

  // Its own cross join would fix the order in which the tables are gone through.
  std::string_view crossJoin() const override { return ", "; }

  // The rows and their new values are worked out first, as a query over the whole list, and then joined to the
  // target by the number of the row: joined by its name, every row would change.
  void updateJoined() override {
    put("update "), name(names_.target->name), put(" set ");
    for (size_t k = 0; k < tree_.assignments.size(); ++k) {
      if (k > 0) put(", ");
      assignedColumn(tree_.assignments[k]), put(" = ").put(kChange).put(".").put(newValueName(k));
    }
    put(" from (select "), name(names_.targetSource->name()), put(".rowid as target");
    for (size_t k = 0; k < tree_.assignments.size(); ++k)
      put(", "), value(*tree_.assignments[k].value), put(" as ").put(newValueName(k));
    put(" from "), sources(tree_.from);
    whereClause(tree_.where);
    put(") as ").put(kChange).put(" where ");
    name(names_.target->name), put(".rowid = ").put(kChange).put(".target");
  }

  void removeJoined() override {
    const Source* target = names_.targetSource;
    put("delete from "), name(names_.target->name), put(" where rowid in (select ");
    name(target ? target->name() : names_.target->name), put(".rowid from ");
    if (!target) name(names_.target->name), put(", ");
    sources(tree_.from);
    whereClause(tree_.where);
    put(")");
  }

  // One more argument of a function.
  void number(int value) { put(", ").put(std::to_string(value)); }
};

}  // namespace

Translation translateForSqlite(std::string_view statement, const Schema& schema) {
  Translation result;
  const auto tree = parseStatement(statement);
  Resolver names(*tree, schema, statement);
  names.resolve();
  SqliteEmitter(*tree, names, statement, result).emit();
  return result;
}

}  // namespace ondrel::sql
