#include "data/dialect/lexer.h"

#include "base/text.h"

namespace ondrel::sql {
namespace {

constexpr char lowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

}  // namespace

std::string unquoted(const Token& token) {
  return token.doubled ? replaceAll(token.text, "''", "'") : std::string(token.text);
}

bool sameWord(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t k = 0; k < a.size(); ++k)
    if (lowerLetter(a[k]) != lowerLetter(b[k])) return false;
  return true;
}

}  // namespace ondrel::sql
