#pragma once

#include <cstddef>
#include <string>

#include "data/dialect/schema_statement.h"

namespace ondrel::sql {

// A statement that changes the tables, and a column of a create table, in the language of the table engine.
std::string sqliteStatement(const SchemaStatement& statement);
std::string sqliteColumn(const SchemaStatement& statement, std::size_t column);

}  // namespace ondrel::sql
