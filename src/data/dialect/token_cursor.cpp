#include "data/dialect/token_cursor.h"

#include <fmt/format.h>

#include "data/dialect/server_errors.h"

namespace ondrel::sql {
namespace {

std::string wordOf(const Token& token) {
  return token.kind == TokenKind::End ? "the end" : fmt::format("'{}'", token.text);
}

}  // namespace

void failAt(std::string_view statement, const Token& token) {
  throw serverError(ServerError::IncorrectSyntax,
                    fmt::format("Incorrect syntax near {} at position {} of: {}", wordOf(token),
                                token.position + 1, statement));
}

// The statement is left out: it is as long as it is deep.
void failNested(std::string_view statement, const Token& token) {
  constexpr std::size_t kShown = 100;
  throw serverError(
      ServerError::NestedTooDeeply,
      fmt::format("The statement is nested too deeply, or joins too many terms in a row, near {} "
                  "at position {} of: {} ..",
                  wordOf(token), token.position + 1, statement.substr(0, kShown)));
}

TokenCursor::TokenCursor(std::string_view statement) : statement_(statement) {
  Lexer lexer(statement);
  int literals = 0;
  do {
    const Token token = lexer.next();
    const bool isLiteral = token.kind == TokenKind::Number || token.kind == TokenKind::Text;
    entries_.push_back({token, &keyRowOf(token), isLiteral ? literals++ : -1});
  } while (entries_.back().token.kind != TokenKind::End);
}

bool TokenCursor::isName(std::size_t ahead) const {
  const Entry& at = entry(ahead);
  return at.token.kind == TokenKind::Quoted || (at.token.kind == TokenKind::Word && !at.row->reserved);
}

Token TokenCursor::advance() {
  const Token token = peek();
  if (token.kind != TokenKind::End) ++at_;
  return token;
}

bool TokenCursor::take(Key key) {
  if (!is(key)) return false;
  advance();
  return true;
}

void TokenCursor::expect(Key key) {
  if (!take(key)) fail();
}

Token TokenCursor::expectName() {
  if (!isName()) fail();
  return advance();
}

Token TokenCursor::expectTable() {
  Token name = expectName();
  while (take(Key::Point)) name = expectName();
  return name;
}

int TokenCursor::takeLiteral() {
  return entries_[at_++].literal;
}

}  // namespace ondrel::sql
