#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/dialect/schema.h"

namespace ondrel::sql {

// The text of a computed column: a column, a text, terms joined, or a function of terms.
struct ComputedText {
  enum class Kind : std::uint8_t { Column, Text, Joined, Call };

  Kind kind = Kind::Column;
  std::string text;  // name of the column or, in lower case, the function; the text itself
  std::vector<ComputedText> parts;
};

struct DefaultValue {
  enum class Kind : std::uint8_t { None, Null, Now, Number, Text };

  Kind kind = Kind::None;
  std::string text;  // in the form in which the column holds it
};

// What a create table says of a column beyond its definition.
struct DeclaredColumn {
  std::string text;  // as it stood
  bool primary = false;
  bool unique = false;
  DefaultValue standard;
  ComputedText computed;
};

struct KeyColumn {
  std::string name;
  bool descending = false;
};

// A key of more than one column, or of one that is told behind the columns.
struct DeclaredKey {
  bool primary = false;  // else unique
  std::vector<KeyColumn> columns;
};

// A statement that changes the tables, taken apart, without the words of any engine.
struct SchemaStatement {
  enum class Kind : std::uint8_t { Table, Index, Drop };

  Kind kind = Kind::Table;
  std::string text;       // as it stood
  std::string tableName;  // of the table that it makes, indexes or drops
  // Of a table.
  TableDefinition table;
  std::vector<DeclaredColumn> columns;  // as many as the table has
  std::vector<DeclaredKey> keys;
  // Of an index.
  std::string indexName;
  bool unique = false;
  std::vector<KeyColumn> indexColumns;
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

// True when it begins with create or drop.
bool isSchemaStatement(std::string_view statement);

// Splits a script into its statements: at a semicolon, at a line "go", and where a word that begins a
// statement follows a complete one. A select behind an insert belongs to it unless a semicolon parts them.
std::vector<std::string_view> splitScript(std::string_view script);

}  // namespace ondrel::sql
