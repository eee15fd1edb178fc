#include "data/embedded/shape.h"

namespace ondrel {

void StatementShape::assign(std::string_view statement) {
  key.clear();
  literals.clear();
  Lexer lexer(statement);
  for (Token token = lexer.next(); token.kind != TokenKind::End; token = lexer.next()) {
    switch (token.kind) {
      case TokenKind::Number:
        key += kNumberMark;
        literals.push_back(token);
        continue;
      case TokenKind::Text:
        key += kTextMark;
        literals.push_back(token);
        continue;
      case TokenKind::Quoted:
        key.append(1, '"').append(token.text).append("\" ");
        continue;
      default:
        key.append(token.text).append(1, ' ');
    }
  }
}

}  // namespace ondrel
