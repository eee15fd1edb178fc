#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

#include "data/dialect/keywords.h"

namespace ondrel::sql {

// Raises ServerError::IncorrectSyntax with the word, its position from 1 and the statement.
[[noreturn]] void failAt(std::string_view statement, const Token& token);
// Raises ServerError::NestedTooDeeply the same way.
[[noreturn]] void failNested(std::string_view statement, const Token& token);

// The tokens of a statement, read from left to right: what parser and schema reader go along.
class TokenCursor {
 public:
  explicit TokenCursor(std::string_view statement);

  // The token at hand, or one of those that follow; the end repeats itself.
  const Token& peek(std::size_t ahead = 0) const { return entry(ahead).token; }
  Key key(std::size_t ahead = 0) const { return entry(ahead).row->key; }
  Binding binding() const { return entry(0).row->binding; }
  bool is(Key key, std::size_t ahead = 0) const { return entry(ahead).row->key == key; }
  bool isAtEnd() const { return peek().kind == TokenKind::End; }
  // Whether a name stands there: no value, and no word that is reserved.
  bool isName(std::size_t ahead = 0) const;

  Token advance();
  bool take(Key key);
  void expect(Key key);
  Token expectName();
  // [database . [dbo] .] dbo . name: what stands before the last point falls away.
  Token expectTable();
  // Goes past a value and gives its number among the values of the statement.
  int takeLiteral();

  std::string_view statement() const { return statement_; }
  [[noreturn]] void fail() const { failAt(statement_, peek()); }

  // Counts how deep a grammar has gone into itself; beyond `kDeepest` it raises ServerError::NestedTooDeeply.
  class Depth {
   public:
    explicit Depth(TokenCursor& cursor) : cursor_(cursor) {
      if (++cursor_.depth_ > kDeepest) failNested(cursor_.statement_, cursor_.peek());
    }
    ~Depth() { --cursor_.depth_; }
    Depth(const Depth&) = delete;
    Depth& operator=(const Depth&) = delete;

   private:
    TokenCursor& cursor_;
  };

 private:
  static constexpr int kDeepest = 400;

  struct Entry {
    Token token;
    const KeyRow* row;
    int literal;  // its number among the values, or -1
  };
  const Entry& entry(std::size_t ahead) const { return entries_[std::min(at_ + ahead, entries_.size() - 1)]; }

  std::string_view statement_;
  std::vector<Entry> entries_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

}  // namespace ondrel::sql
