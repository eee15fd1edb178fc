#pragma once

#include <string_view>

#include "data/dialect/schema.h"
#include "data/dialect/translation.h"

namespace ondrel::sql {

// Translates one T-SQL statement for the table engine. Errors: IncorrectSyntax with statement, position and word;
// the server's own errors for names that the schema lacks.
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
Translation translateForSqlite(std::string_view statement, const Schema& schema);

}  // namespace ondrel::sql
