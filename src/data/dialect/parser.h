#pragma once

#include <memory>
#include <string_view>

#include "data/dialect/syntax_tree.h"
#include "data/dialect/token_cursor.h"

namespace ondrel::sql {

// Parses one statement, which must outlive the tree. What the grammar does not hold raises
// ServerError::IncorrectSyntax with the word, its position from 1 and the statement.
//
//   statement  = query | insert | update | delete | call | "set" name [name] ("on" | "off")
//   query      = core { ("union" ["all"] | "intersect" | "except") core } ["order by" expr ["desc"], ..]
//   core       = "select" ["distinct"] ["top" n] item, .. ["from" source, ..] ["where" expr]
//                ["group by" expr, ..] ["having" expr]
//   source     = primary { ["inner" | "left" | "right" | "full" | "cross"] "join" primary ["on" expr] }
//   primary    = table ["as"] [alias] ["with" "(" hint ")"] | "(" query ")" ["as"] alias | "(" source ")"
//   insert     = "insert" ["into"] table ["(" name, .. ")"] ("values" "(" expr, .. ")", .. | query)
//   update     = "update" table "set" [table "."] name "=" expr, .. ["from" source, ..] ["where" expr]
//   delete     = "delete" ["from"] table ["from" source, ..] ["where" expr]
//   call       = ["exec" | "execute"] ["dbo" "."] name [value, ..]
std::unique_ptr<SyntaxTree> parseStatement(std::string_view statement);

}  // namespace ondrel::sql
