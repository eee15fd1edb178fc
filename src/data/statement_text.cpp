#include "data/statement_text.h"

#include <cstring>

#include "base/text.h"

namespace ondrel {

StatementText::StatementText(std::string_view head) {
  add(head);
  head_ = end_;
}

void StatementText::add(std::string_view piece) {
  std::memcpy(room(piece.size()), piece.data(), piece.size());
  end_ += piece.size();
}

void StatementText::addNumber(std::int32_t value) {
  endAt(writeNumber(room(kShortNumber), value));
}

void StatementText::addNumber(double value) {
  if (const char* end = writeShortNumber(room(kShortNumber), value))
    endAt(end);
  else
    add(numberText(value));
}

void StatementText::addFixed(double value, int digits) {
  if (const char* end = writeShortFixed(room(kShortNumber), value, digits))
    endAt(end);
  else
    add(fixedText(value, digits));
}

void StatementText::addQuoted(std::string_view text) {
  char* to = room(2 * text.size() + 2);
  *to++ = '\'';
  for (const char c : text) {
    *to++ = c;
    if (c == '\'') *to++ = c;
  }
  *to++ = '\'';
  endAt(to);
}

}  // namespace ondrel
