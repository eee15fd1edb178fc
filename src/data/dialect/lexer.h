#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/text.h"

namespace ondrel::sql {

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

  // Where the next token is looked for.
  std::size_t position() const { return position_; }
  // Whether a minus would begin a number here.
  bool expectsValue() const { return valueExpected_; }
  // The token that starts right at `position` when it is a Number or a Text, of another kind otherwise. Goes on
  // behind it.
  Token literalAt(std::size_t position, bool expectsValue);

 private:
  void skipBlanks();
  Token take(TokenKind kind, std::size_t start, std::size_t end);
  Token takeWord(std::size_t start);
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

// ---- in line, since every statement goes through here character by character

namespace lexer_detail {

enum class CharClass : std::uint8_t { Stray, Blank, Word, Digit, Symbol };

constexpr std::array<CharClass, 256> classTable() {
  std::array<CharClass, 256> table{};
  for (int c = 0; c < 256; ++c) {
    const char letter = static_cast<char>(c);
    if (c == ' ' || (c >= '\t' && c <= '\r')) {
      table[static_cast<size_t>(c)] = CharClass::Blank;
    } else if (isLetter(letter) || c == '_' || c == '#' || c == '@' || c >= 0x80) {
      table[static_cast<size_t>(c)] = CharClass::Word;
    } else if (isDigit(letter)) {
      table[static_cast<size_t>(c)] = CharClass::Digit;
    } else if (std::string_view("(),.;*+-/%=<>!&|^~").find(letter) != std::string_view::npos && c != 0) {
      table[static_cast<size_t>(c)] = CharClass::Symbol;
    }
  }
  return table;
}

constexpr std::array<CharClass, 256> kClasses = classTable();

constexpr CharClass classOf(char c) {
  return kClasses[static_cast<unsigned char>(c)];
}

constexpr bool continuesWord(char c) {
  const CharClass kind = classOf(c);
  return kind == CharClass::Word || kind == CharClass::Digit || c == '$';
}

}  // namespace lexer_detail

[[gnu::always_inline]] inline Token Lexer::next() {
  skipBlanks();
  const size_t start = position_;
  if (start >= text_.size()) return take(TokenKind::End, text_.size(), text_.size());
  switch (lexer_detail::classOf(text_[start])) {
    case lexer_detail::CharClass::Word:
      return takeWord(start);
    case lexer_detail::CharClass::Digit:
      return takeNumber(start);
    case lexer_detail::CharClass::Symbol:
      return takeSymbol(start);
    default:
      break;
  }
  switch (text_[start]) {
    case '\'':
      return takeText(start);
    case '[':
      return takeEnclosed(start, ']');
    case '"':
      return takeEnclosed(start, '"');
    default:
      return take(TokenKind::Stray, start, start + 1);
  }
}

[[gnu::always_inline]] inline Token Lexer::literalAt(size_t position, bool expectsValue) {
  if (position >= text_.size()) return {};
  const char first = text_[position];
  if (isDigit(first)) return takeNumber(position);
  if (first == '\'') return takeText(position);
  if (first != '-' && first != '.') return {};
  valueExpected_ = expectsValue;
  return takeSymbol(position);
}

[[gnu::always_inline]] inline void Lexer::skipBlanks() {
  while (position_ < text_.size()) {
    const char c = text_[position_];
    if (lexer_detail::classOf(c) == lexer_detail::CharClass::Blank) {
      ++position_;
    } else if (c != '-' && c != '/') {
      return;
    } else if (const std::string_view ahead = text_.substr(position_, 2); ahead == "--") {
      position_ = std::min(text_.find('\n', position_), text_.size());
    } else if (ahead == "/*") {
      const size_t end = text_.find("*/", position_ + 2);
      position_ = end == std::string_view::npos ? text_.size() : end + 2;
    } else {
      return;
    }
  }
}

[[gnu::always_inline]] inline Token Lexer::take(TokenKind kind, size_t start, size_t end) {
  position_ = end;
  valueExpected_ = false;
  Token token;
  token.kind = kind;
  token.position = static_cast<std::uint32_t>(start);
  token.text = std::string_view(text_.data() + start, end - start);
  return token;
}

inline Token Lexer::takeWord(size_t start) {
  const char c = text_[start];
  size_t end = start + 1;
  if ((c == 'N' || c == 'n') && end < text_.size() && text_[end] == '\'') return takeText(end);
  while (end < text_.size() && lexer_detail::continuesWord(text_[end])) ++end;
  return take(c == '@' ? TokenKind::Variable : TokenKind::Word, start, end);
}

[[gnu::always_inline]] inline Token Lexer::takeNumber(size_t start) {
  const auto digits = [&](size_t at) {
    while (at < text_.size() && isDigit(text_[at])) ++at;
    return at;
  };
  size_t end = digits(text_[start] == '-' ? start + 1 : start);
  if (end < text_.size() && text_[end] == '.') end = digits(end + 1);
  if (end < text_.size() && (text_[end] == 'e' || text_[end] == 'E')) {
    const size_t sign = end + 1 < text_.size() && (text_[end + 1] == '+' || text_[end + 1] == '-') ? 1 : 0;
    if (end + 1 + sign < text_.size() && isDigit(text_[end + 1 + sign])) end = digits(end + 1 + sign);
  }
  return take(TokenKind::Number, start, end);
}

[[gnu::always_inline]] inline Token Lexer::takeText(size_t start) {
  bool doubled = false;
  size_t end = text_.find('\'', start + 1);
  while (end != std::string_view::npos && end + 1 < text_.size() && text_[end + 1] == '\'') {
    doubled = true;
    end = text_.find('\'', end + 2);
  }
  if (end == std::string_view::npos) return take(TokenKind::Stray, start, text_.size());
  Token token = take(TokenKind::Text, start, end + 1);
  token.text = token.text.substr(1, token.text.size() - 2);
  token.doubled = doubled;
  return token;
}

inline Token Lexer::takeEnclosed(size_t start, char close) {
  const size_t end = text_.find(close, start + 1);
  if (end == std::string_view::npos || end == start + 1) return take(TokenKind::Stray, start, text_.size());
  Token token = take(TokenKind::Quoted, start, end + 1);
  token.text = token.text.substr(1, token.text.size() - 2);
  return token;
}

[[gnu::always_inline]] inline Token Lexer::takeSymbol(size_t start) {
  const char c = text_[start];
  const char after = start + 1 < text_.size() ? text_[start + 1] : '\0';
  if (c == '.' && isDigit(after)) return takeNumber(start);
  if (c == '-' && valueExpected_) {
    const char second = start + 2 < text_.size() ? text_[start + 2] : '\0';
    if (isDigit(after) || (after == '.' && isDigit(second))) return takeNumber(start);
  }
  const bool compares = c == '<' || c == '>' || c == '!';
  const bool pair = compares && (after == '=' || (c == '<' && after == '>'));
  const Token token = take(TokenKind::Symbol, start, start + (pair ? 2 : 1));
  valueExpected_ = compares || c == '(' || c == ',' || c == '=';
  return token;
}

}  // namespace ondrel::sql
