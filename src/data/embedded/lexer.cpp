#include "data/embedded/lexer.h"

#include <array>

#include "base/text.h"

namespace ondrel {
namespace {

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

constexpr char lowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

}  // namespace

Token Lexer::next() {
  skipBlanks();
  const size_t start = position_;
  if (start >= text_.size()) return take(TokenKind::End, text_.size(), text_.size());
  const char c = text_[start];
  switch (classOf(c)) {
    case CharClass::Word: {
      if ((c == 'N' || c == 'n') && start + 1 < text_.size() && text_[start + 1] == '\'')
        return takeText(start + 1);
      size_t end = start + 1;
      while (end < text_.size() && continuesWord(text_[end])) ++end;
      return take(c == '@' ? TokenKind::Variable : TokenKind::Word, start, end);
    }
    case CharClass::Digit:
      return takeNumber(start);
    case CharClass::Symbol:
      return takeSymbol(start);
    default:
      break;
  }
  if (c == '\'') return takeText(start);
  if (c == '[') return takeEnclosed(start, ']');
  if (c == '"') return takeEnclosed(start, '"');
  return take(TokenKind::Stray, start, start + 1);
}

void Lexer::skipBlanks() {
  while (position_ < text_.size()) {
    const std::string_view ahead = text_.substr(position_, 2);
    if (classOf(ahead[0]) == CharClass::Blank) {
      ++position_;
    } else if (ahead == "--") {
      position_ = std::min(text_.find('\n', position_), text_.size());
    } else if (ahead == "/*") {
      const size_t end = text_.find("*/", position_ + 2);
      position_ = end == std::string_view::npos ? text_.size() : end + 2;
    } else {
      return;
    }
  }
}

Token Lexer::take(TokenKind kind, size_t start, size_t end) {
  position_ = end;
  Token token;
  token.kind = kind;
  token.position = static_cast<std::uint32_t>(start);
  token.text = text_.substr(start, end - start);
  valueExpected_ =
      kind == TokenKind::Symbol && std::string_view("(,=<><=>=<>").find(token.text) != std::string_view::npos;
  return token;
}

Token Lexer::takeNumber(size_t start) {
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

Token Lexer::takeText(size_t start) {
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

Token Lexer::takeEnclosed(size_t start, char close) {
  const size_t end = text_.find(close, start + 1);
  if (end == std::string_view::npos || end == start + 1) return take(TokenKind::Stray, start, text_.size());
  Token token = take(TokenKind::Quoted, start, end + 1);
  token.text = token.text.substr(1, token.text.size() - 2);
  return token;
}

Token Lexer::takeSymbol(size_t start) {
  const char c = text_[start];
  const char after = start + 1 < text_.size() ? text_[start + 1] : '\0';
  const char second = start + 2 < text_.size() ? text_[start + 2] : '\0';
  if (c == '.' && isDigit(after)) return takeNumber(start);
  if (c == '-' && valueExpected_ && (isDigit(after) || (after == '.' && isDigit(second))))
    return takeNumber(start);
  const bool pair = ((c == '<' || c == '>' || c == '!') && after == '=') || (c == '<' && after == '>');
  return take(TokenKind::Symbol, start, start + (pair ? 2 : 1));
}

std::string unquoted(const Token& token) {
  return token.doubled ? replaceAll(token.text, "''", "'") : std::string(token.text);
}

bool sameWord(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t k = 0; k < a.size(); ++k)
    if (lowerLetter(a[k]) != lowerLetter(b[k])) return false;
  return true;
}

}  // namespace ondrel
