#include "data/embedded/setup_transfer.h"

#include <fmt/format.h>

#include <set>
#include <vector>

#include "base/text.h"
#include "data/dialect/lexer.h"
#include "data/dialect/schema_statement.h"
#include "data/dialect/server_errors.h"
#include "data/dialect/store_texts.h"
#include "data/values.h"

namespace ondrel {

using namespace sql;

namespace {

// What a shop sets up; the other tables hold its customers, tickets and books.
constexpr std::string_view kSetupTables[] = {"Store",
                                             "StoreHour",
                                             "StoreHoliday",
                                             "StorePaymentType",
                                             "miscsetup",
                                             "terminal",
                                             "employee",
                                             "route",
                                             "PriceList",
                                             "Department",
                                             "departmentdays",
                                             "departmentquota",
                                             "PriceListItem",
                                             "ItemDescriptorPrice",
                                             "descriptor",
                                             "descriptorgroup",
                                             "rushupcharge",
                                             "inventory",
                                             "Tax",
                                             "ItemTax",
                                             "ItemDescriptorTax",
                                             "DEPARTMENTTAX",
                                             "Surcharge",
                                             "ItemSurcharge",
                                             "ItemDescriptorSurcharge",
                                             "departmentsurcharge",
                                             "surchargetax",
                                             "Discount",
                                             "DiscountDepartment",
                                             "DiscountDepartmentRule",
                                             "customerpreferencetype",
                                             "validheatsealranges",
                                             "creditcardtypedomain",
                                             "RackPlace"};
constexpr std::string_view kVersionTable = "SchemaVersion";

bool isSetup(std::string_view table) {
  for (const std::string_view one : kSetupTables)
    if (equalsIgnoringCase(one, table)) return true;
  return false;
}

std::vector<TableDefinition> declaredTables() {
  std::vector<TableDefinition> tables;
  for (const std::string_view statement : splitScript(schemaText())) {
    SchemaStatement declared = readSchemaStatement(statement);
    if (declared.kind == SchemaStatement::Kind::Table &&
        !equalsIgnoringCase(declared.tableName, kVersionTable))
      tables.push_back(std::move(declared.table));
  }
  return tables;
}

std::string literal(const Variant& value) {
  switch (value.kind()) {
    case Variant::Kind::Empty:
    case Variant::Kind::Null:
      return "null";
    case Variant::Kind::Boolean:
      return value.toBoolean() ? "1" : "0";
    case Variant::Kind::Long:
    case Variant::Kind::Double:
      return value.toText();
    default:
      return sqlQuotedOrNull(value);
  }
}

// The columns that a row is entered with: those that the database has not to work out.
void appendRows(Connection& connection, const TableDefinition& table, std::string& text) {
  std::string names;
  std::vector<std::string> columns;
  for (const ColumnDefinition& column : table.columns) {
    if (column.computed) continue;
    columns.push_back(column.name);
    names += fmt::format("{}[{}]", names.empty() ? "" : ", ", column.name);
  }
  const RecordsetRef rows = connection.query(fmt::format("select {} from {}", names, table.name));
  for (; !rows->eof(); rows->moveNext()) {
    std::string values;
    for (const std::string& column : columns) {
      if (!values.empty()) values += ", ";
      values += literal(rows->value(column));
    }
    text += fmt::format("insert into {} ({}) values ({});\n", table.name, names, values);
  }
}

// The table of an insert statement with plain values; anything else is refused.
std::string targetOf(std::string_view statement, size_t number) {
  Lexer lexer(statement);
  const Token insert = lexer.next();
  const Token into = lexer.next();
  const Token table = lexer.next();
  bool isPlain = insert.kind == TokenKind::Word && sameWord(insert.text, "insert") &&
                 into.kind == TokenKind::Word && sameWord(into.text, "into");
  for (Token token = lexer.next(); token.kind != TokenKind::End; token = lexer.next())
    if (token.kind == TokenKind::Word && (sameWord(token.text, "select") || sameWord(token.text, "exec")))
      isPlain = false;
  if (isPlain)
    for (const TableDefinition& known : declaredTables())
      if (equalsIgnoringCase(known.name, table.text)) return known.name;
  throw Error(ErrorNumber::InvalidCall, kStoreSource,
              fmt::format("Statement {} is no row of a store's table: {}", number, statement.substr(0, 60)));
}

bool hasRows(Connection& connection, const std::string& table) {
  return !connection.query(fmt::format("select top 1 1 as there from {}", table))->eof();
}

void makeRoom(Connection& connection, const std::string& table, bool replaces) {
  constexpr int kFileAlreadyExists = 58;
  if (!hasRows(connection, table)) return;
  if (!replaces)
    throw Error(static_cast<ErrorNumber>(kFileAlreadyExists), kStoreSource,
                fmt::format("Table {} has rows already; --replace removes them first", table));
  connection.execute(fmt::format("delete from {}", table));
}

}  // namespace

std::string exportedStore(Connection& connection, bool everything) {
  std::string text;
  for (const TableDefinition& table : declaredTables())
    if (everything || isSetup(table.name)) appendRows(connection, table, text);
  return text;
}

int importStore(Connection& connection, std::string_view text, bool replaces) {
  const std::vector<std::string_view> statements = splitScript(text);
  std::set<std::string> tables;
  for (size_t k = 0; k < statements.size(); ++k) tables.insert(targetOf(statements[k], k + 1));
  connection.begin();
  for (const std::string& table : tables) makeRoom(connection, table, replaces);
  for (const std::string_view statement : statements) connection.execute(statement);
  connection.commit();
  return static_cast<int>(statements.size());
}

}  // namespace ondrel
