#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/schema.h"

namespace ondrel {

// A create statement taken apart: the table that it declares, if it is one, and the statement that the
// table engine runs for it.
struct SchemaStatement {
  std::string text;       // as it stood
  TableDefinition table;  // without a name for an index
  std::string sql;
};

// Reads one `create table` or `create [unique] index` statement:
//
//   "create" "table" name "(" column | "primary" "key" "(" name, .. ")" | "unique" "(" name, .. ")", .. ")"
//   column = name type ["(" length ["," scale] ")"]
//            { "identity" ["(" 1 "," 1 ")"] | ["not"] "null" | "default" value | "primary" "key" | "unique" }
//   value  = number | 'text' | "null" | "getdate" "(" ")" | "(" value ")"
//   "create" ["unique"] "index" name "on" table "(" name ["desc"], .. ")"
SchemaStatement readSchemaStatement(std::string_view statement);

// Splits a script into its statements: at a semicolon, at a line "go", and where a word that begins a
// statement follows a complete one. A select behind an insert belongs to it unless a semicolon parts them.
std::vector<std::string_view> splitScript(std::string_view script);

bool isCreateStatement(std::string_view statement);

}  // namespace ondrel
