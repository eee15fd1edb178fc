#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/dialect/syntax_tree.h"

namespace ondrel {

// One `?` of the translated text: which literal of the statement goes there, and how.
struct BoundLiteral {
  int literal = 0;
  ValueConversion conversion;
};

// A statement as the table engine takes it. It holds for every statement of the same shape whose fixed
// literals are the same.
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

// Translates one T-SQL statement. Errors: IncorrectSyntax with statement, position and word; the server's
// own errors for names that the schema lacks.
//
//   isnull(a, b)               ifnull(a, b)
//   [x], "x", as 'x'           "x"
//   dbo.f(x)                   f(x)
//   select top n ..            select .. limit n
//   a + b with a text          a || b
//   a / b                      a / divisor(b), which fails on 0
//   a = b, both texts          with the store's collation
//   delete t ..                delete from t ..
//   update t .. from t join u  update t .. from (the rows of the join and their new values) by row number
//   @@identity                 last_identity()
Translation translate(std::string_view statement, const Schema& schema);

}  // namespace ondrel
