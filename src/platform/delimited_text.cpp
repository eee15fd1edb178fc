#include "platform/delimited_text.h"

#include <algorithm>

#include "base/text.h"

namespace ondrel {
namespace {

constexpr std::string_view kBlanks = " \t";

void skipBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
}

std::string takeUpTo(std::string_view& text, std::string_view ends) {
  const size_t length = std::min(text.find_first_of(ends), text.size());
  std::string result(text.substr(0, length));
  text.remove_prefix(length);
  return result;
}

}  // namespace

// One comma, or one line end of either form.
bool DelimitedText::takeSeparator() {
  if (rest_.empty()) return false;
  const char first = rest_.front();
  if (first != ',' && first != '\r' && first != '\n') return false;
  rest_.remove_prefix(first == '\r' && rest_.starts_with("\r\n") ? 2 : 1);
  return true;
}

std::string DelimitedText::next() {
  skipBlanks(rest_);
  if (!rest_.starts_with('"')) {
    std::string value = takeUpTo(rest_, ",\r\n");
    wasEnded_ = takeSeparator();
    return value;
  }
  rest_.remove_prefix(1);
  std::string value = takeUpTo(rest_, "\"");
  wasEnded_ = !rest_.empty();
  if (wasEnded_) rest_.remove_prefix(1);
  skipBlanks(rest_);
  takeSeparator();
  return value;
}

std::string textOfBytes(std::string_view bytes) {
  std::string result;
  for (size_t position = 0; position < bytes.size();) {
    const size_t start = position;
    const char32_t character = nextCharacter(bytes, position);
    const bool isLoneByte = position == start + 1 && character >= 0x80;
    appendCharacter(result, isLoneByte ? ansiCharacter(static_cast<int>(character)) : character);
  }
  return result;
}

}  // namespace ondrel
