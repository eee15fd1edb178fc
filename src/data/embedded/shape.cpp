#include "data/embedded/shape.h"

#include <cstring>

namespace ondrel {
namespace {

// Short pieces are copied in one block of fixed size, which is quicker than one of the right size; what is
// copied too much is overwritten by the next piece.
constexpr size_t kBlock = 16;

char* append(char* end, std::string_view piece, const char* statementEnd) {
  const bool whole = piece.size() <= kBlock && static_cast<size_t>(statementEnd - piece.data()) >= kBlock;
  std::memcpy(end, piece.data(), whole ? kBlock : piece.size());
  return end + piece.size();
}

}  // namespace

// A token takes at most two quotes and a blank more in the key than it took in the statement.
void StatementShape::assign(std::string_view statement) {
  literals_.clear();
  const size_t longest = statement.size() * 4 + kBlock;
  if (buffer_.size() < longest) buffer_.resize(longest);
  char* end = buffer_.data();
  const char* const statementEnd = statement.data() + statement.size();
  Lexer lexer(statement);
  for (Token token = lexer.next(); token.kind != TokenKind::End; token = lexer.next()) {
    if (token.kind == TokenKind::Number || token.kind == TokenKind::Text) {
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

}  // namespace ondrel
