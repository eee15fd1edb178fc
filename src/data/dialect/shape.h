#pragma once

#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/dialect/lexer.h"

namespace ondrel::sql {

// Whether two pieces of a length are the same. Between two values there is mostly a comma, and most values are of
// a few characters.
inline bool isSame(const char* a, const char* b, size_t length) {
  constexpr size_t kShort = 8;
  if (length > kShort) return std::memcmp(a, b, length) == 0;
  for (size_t k = 0; k < length; ++k)
    if (a[k] != b[k]) return false;
  return true;
}

// A statement with its literals left open, by which another one that differs in them alone is known at once:
// what stands between them is compared byte for byte, blanks and case included.
class StatementPattern {
 public:
  // `fixed` are the literals that belong to the pattern.
  StatementPattern(std::string_view statement, std::span<const int> fixed);
  // Whether the statement is of the pattern. `literals` then holds its literals, as a shape would.
  bool fits(std::string_view statement, std::vector<Token>& literals) const;

 private:
  struct Gap {
    std::uint32_t end;  // of the text before the literal, in text_
    TokenKind kind;
    bool expectsValue;
    bool startsWithPoint;  // a digit in its place would belong to the word before it
    bool isFixed;
    std::string value;  // of one that is fixed
  };

  std::string text_;  // what stands between the literals, one after the other
  std::vector<Gap> gaps_;
};

// A statement text taken apart: its literals, in order, and what is left, in which a mark stands for each
// literal and one blank parts the tokens. Statements that differ only in their values have one key.
class StatementShape {
 public:
  static constexpr char kNumberMark = '\1';
  static constexpr char kTextMark = '\2';

  // Replaces the contents; keeps the memory of the statement before.
  void assign(std::string_view statement);

  // Replaces the contents by the literals of a statement of the pattern; there is no key then. Nothing remains
  // of them when it is not of the pattern.
  bool assign(std::string_view statement, const StatementPattern& pattern) {
    return pattern.fits(statement, literals_);
  }

  // Valid until the next statement.
  std::string_view key() const { return {buffer_.data(), keySize_}; }
  // Views into the statement.
  const std::vector<Token>& literals() const { return literals_; }

 private:
  std::vector<char> buffer_;
  size_t keySize_ = 0;
  std::vector<Token> literals_;
};

}  // namespace ondrel::sql
