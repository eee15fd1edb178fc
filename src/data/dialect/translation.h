#pragma once

#include <string>
#include <vector>

#include "data/dialect/syntax_tree.h"

namespace ondrel::sql {

// One parameter of the translated text: which literal of the statement goes there, and how.
struct BoundLiteral {
  int literal = 0;
  ValueConversion conversion;
};

// A statement as an engine takes it. It holds for every statement of the same shape whose fixed literals are the
// same.
struct Translation {
  StatementKind kind = StatementKind::Select;
  std::string sql;  // empty for a call or a setting
  std::vector<BoundLiteral> parameters;
  std::vector<OutputColumn> columns;  // of a select
  bool movesIdentity = false;         // an insert into a table with an identity column
  std::vector<int> fixedLiterals;
  std::string procedure;
  std::vector<CallArgument> arguments;
};

}  // namespace ondrel::sql
