#include "data/embedded/sqlite_schema.h"

#include <fmt/format.h>

#include "base/text.h"

namespace ondrel::sql {
namespace {

std::string quotedText(std::string_view text) {
  return "'" + replaceAll(text, "'", "''") + "'";
}

std::string keyColumns(const std::vector<KeyColumn>& columns) {
  std::string result;
  for (const KeyColumn& each : columns)
    result +=
        fmt::format("{}\"{}\"{}", result.empty() ? "" : ", ", each.name, each.descending ? " desc" : "");
  return "(" + result + ")";
}

std::string computedText(const ComputedText& text) {
  const auto list = [&](std::string_view separator) {
    std::string result;
    for (const ComputedText& part : text.parts)
      result.append(result.empty() ? "" : separator).append(computedText(part));
    return result;
  };
  switch (text.kind) {
    case ComputedText::Kind::Column:
      return fmt::format("\"{}\"", text.text);
    case ComputedText::Kind::Text:
      return quotedText(text.text);
    case ComputedText::Kind::Joined:
      return list(" || ");
    case ComputedText::Kind::Call:
      break;
  }
  return fmt::format("{}({})", text.text == "isnull" ? "ifnull" : text.text, list(", "));
}

std::string standardValue(const DefaultValue& value) {
  switch (value.kind) {
    case DefaultValue::Kind::None:
      return "";
    case DefaultValue::Kind::Null:
      return " default null";
    case DefaultValue::Kind::Now:
      return " default (getdate())";
    case DefaultValue::Kind::Number:
      return " default " + (value.text.front() == '-' ? "(" + value.text + ")" : value.text);
    case DefaultValue::Kind::Text:
      break;
  }
  return " default " + quotedText(value.text);
}

std::string tableStatement(const SchemaStatement& statement) {
  std::string parts;
  for (size_t k = 0; k < statement.columns.size(); ++k)
    parts += (k > 0 ? ", " : "") + sqliteColumn(statement, k);
  for (const DeclaredKey& key : statement.keys)
    parts += fmt::format(", {}{}", key.primary ? "primary key " : "unique ", keyColumns(key.columns));
  return fmt::format("create table \"{}\" ({})", statement.tableName, parts);
}

}  // namespace

std::string sqliteColumn(const SchemaStatement& statement, size_t column) {
  const ColumnDefinition& definition = statement.table.columns[column];
  const DeclaredColumn& declared = statement.columns[column];
  std::string result = fmt::format("\"{}\" {}", definition.name, storageType(definition.type.type));
  if (definition.computed) {
    // Its text is cut to the declared length, as the conversion does.
    std::string value = computedText(declared.computed);
    if (definition.type.size > 0) value = fmt::format("substr({}, 1, {})", value, definition.type.size);
    return fmt::format("{} generated always as ({})", result, value);
  }
  if (definition.identity)
    result += " primary key autoincrement";
  else if (declared.primary)
    result += " primary key not null";
  else if (!definition.nullable)
    result += " not null";
  if (declared.unique) result += " unique";
  return result + standardValue(declared.standard);
}

std::string sqliteStatement(const SchemaStatement& statement) {
  switch (statement.kind) {
    case SchemaStatement::Kind::Table:
      return tableStatement(statement);
    case SchemaStatement::Kind::Index:
      return fmt::format("create {}index \"{}\" on \"{}\" {}", statement.unique ? "unique " : "",
                         statement.indexName, statement.tableName, keyColumns(statement.indexColumns));
    case SchemaStatement::Kind::Drop:
      break;
  }
  return fmt::format("drop table \"{}\"", statement.tableName);
}

}  // namespace ondrel::sql
