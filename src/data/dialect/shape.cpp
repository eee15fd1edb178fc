#include "data/dialect/shape.h"

#include <algorithm>
#include <cstring>

namespace ondrel::sql {
namespace {

// Short pieces are copied in one block of fixed size, which is quicker than one of the right size; what is
// copied too much is overwritten by the next piece.
constexpr size_t kBlock = 16;

char* append(char* end, std::string_view piece, const char* statementEnd) {
  const bool whole = piece.size() <= kBlock && static_cast<size_t>(statementEnd - piece.data()) >= kBlock;
  std::memcpy(end, piece.data(), whole ? kBlock : piece.size());
  return end + piece.size();
}

bool isLiteral(const Token& token) {
  return token.kind == TokenKind::Number || token.kind == TokenKind::Text;
}

}  // namespace

StatementPattern::StatementPattern(std::string_view statement, std::span<const int> fixed) {
  Lexer lexer(statement);
  size_t start = 0;
  for (bool expectsValue = false;; expectsValue = lexer.expectsValue()) {
    const Token token = lexer.next();
    const bool atEnd = token.kind == TokenKind::End;
    if (!atEnd && !isLiteral(token)) continue;
    text_ += statement.substr(start, token.position - start);
    if (atEnd) return;
    const auto number = static_cast<int>(gaps_.size());
    const bool isFixed = std::find(fixed.begin(), fixed.end(), number) != fixed.end();
    gaps_.push_back({static_cast<std::uint32_t>(text_.size()), token.kind, expectsValue,
                     token.kind == TokenKind::Number && token.text.starts_with('.'), isFixed,
                     isFixed ? std::string(token.text) : std::string()});
    start = lexer.position();
  }
}

bool StatementPattern::fits(std::string_view statement, std::vector<Token>& literals) const {
  literals.clear();
  literals.reserve(gaps_.size());
  Lexer lexer(statement);
  size_t at = 0, from = 0;
  const auto continuesWith = [&](size_t length) {
    return statement.size() - at >= length && isSame(statement.data() + at, text_.data() + from, length);
  };
  for (const Gap& gap : gaps_) {
    const size_t length = gap.end - from;
    if (!continuesWith(length)) return false;
    const Token token = lexer.literalAt(at + length, gap.expectsValue);
    if (token.kind != gap.kind || (gap.isFixed && token.text != gap.value)) return false;
    if (gap.startsWithPoint && !token.text.starts_with('.')) return false;
    literals.push_back(token);
    at = lexer.position();
    from = gap.end;
  }
  return statement.size() - at == text_.size() - from && continuesWith(text_.size() - from);
}

// A token takes at most two quotes and a blank more in the key than it took in the statement.
void StatementShape::assign(std::string_view statement) {
  literals_.clear();
  const size_t longest = statement.size() * 4 + kBlock;
  if (buffer_.size() < longest) buffer_.resize(longest);
  char* end = buffer_.data();
  const char* const statementEnd = statement.data() + statement.size();
  Lexer lexer(statement);
  for (Token token = lexer.next(); token.kind != TokenKind::End; token = lexer.next()) {
    if (isLiteral(token)) {
      *end++ = token.kind == TokenKind::Number ? kNumberMark : kTextMark;
      literals_.push_back(token);
      continue;
    }
    const bool quoted = token.kind == TokenKind::Quoted;
    if (quoted) *end++ = '"';
    end = append(end, token.text, statementEnd);
    if (quoted) *end++ = '"';
    *end++ = ' ';
  }
  keySize_ = static_cast<size_t>(end - buffer_.data());
}

}  // namespace ondrel::sql
