#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/dialect/schema.h"

namespace ondrel::sql {

// A statement that changes the tables, taken apart.
struct SchemaStatement {
  enum class Kind { Table, Index, Drop };

  Kind kind = Kind::Table;
  std::string text;       // as it stood
  std::string tableName;  // of the table that it makes, indexes or drops
  std::string indexName;
  TableDefinition table;  // what a create table declares
  // Each column of the table as it stood, and as the table engine takes it.
  struct Column {
    std::string text;
    std::string sql;
  };
  std::vector<Column> columns;
  std::string sql;  // for the table engine
};

// Reads one statement:
//
//   "drop" "table" name
//   "create" "table" name "(" column | "primary" "key" "(" name, .. ")" | "unique" "(" name, .. ")", .. ")"
//   column = name type ["(" length ["," scale] ")"]
//            { "identity" ["(" 1 "," 1 ")"] | ["not"] "null" | "default" value | "primary" "key" | "unique" }
//          | name "as" "convert" "(" type "," text ")"
//   text   = term { "+" term }
//   term   = name | 'text' | ( "isnull" | "ltrim" | "rtrim" ) "(" text, .. ")"
//   value  = number | 'text' | "null" | "getdate" "(" ")" | "(" value ")"
//   "create" ["unique"] "index" name "on" table "(" name ["desc"], .. ")"
SchemaStatement readSchemaStatement(std::string_view statement);

// Splits a script into its statements: at a semicolon, at a line "go", and where a word that begins a
// statement follows a complete one. A select behind an insert belongs to it unless a semicolon parts them.
std::vector<std::string_view> splitScript(std::string_view script);

// True when it begins with create or drop.
bool isSchemaStatement(std::string_view statement);

}  // namespace ondrel::sql
