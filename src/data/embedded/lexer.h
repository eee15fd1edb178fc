#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ondrel {

enum class TokenKind : std::uint8_t {
  End,
  Word,      // a name or keyword as written
  Quoted,    // [name] or "name", without the marks: never a keyword
  Variable,  // @@identity
  Number,    // unsigned, or with a minus where only a value can stand
  Text,      // 'text', without the marks
  Symbol,    // one of ( ) , . ; * + - / % = < > <= >= <> != & | ^ ~
  Stray,     // a character that starts nothing
};

struct Token {
  TokenKind kind = TokenKind::End;
  bool doubled = false;        // a Text that holds doubled quotes
  std::uint32_t position = 0;  // of the first character, from 0
  std::string_view text;       // views into the statement
};

// Splits a statement into tokens, the one place that knows how statements are spelled. Blanks and comments
// part tokens and are dropped. A minus directly before a digit belongs to the number after ( , = < > and
// at the start of a list, where it cannot be an operator: so -1 and 1 are the same kind of value.
class Lexer {
 public:
  explicit Lexer(std::string_view statement) : text_(statement) {}
  Token next();
  std::string_view statement() const { return text_; }

 private:
  void skipBlanks();
  Token take(TokenKind kind, std::size_t start, std::size_t end);
  Token takeNumber(std::size_t start);
  Token takeText(std::size_t start);
  Token takeEnclosed(std::size_t start, char close);
  Token takeSymbol(std::size_t start);

  std::string_view text_;
  std::size_t position_ = 0;
  bool valueExpected_ = false;
};

// The value of a Text token: doubled quotes become single ones.
std::string unquoted(const Token& token);

// ASCII letters only, for names and keywords.
bool sameWord(std::string_view a, std::string_view b);

}  // namespace ondrel
