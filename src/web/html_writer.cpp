#include "web/html_writer.h"

#include <array>
#include <charconv>

#include "base/text.h"
#include "data/values.h"

namespace ondrel {

HtmlWriter& HtmlWriter::raw(std::int32_t number) {
  std::array<char, 12> digits;
  const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return raw(std::string_view(digits.data(), end));
}

HtmlWriter& HtmlWriter::encoded(std::string_view text) {
  appendHtmlEncoded(text_, text);
  return *this;
}

HtmlWriter& HtmlWriter::currency(double amount) {
  return raw(std::string_view(currencyText(amount)));
}

HtmlWriter& HtmlWriter::escaped(std::string_view name, std::string_view text) {
  startAttribute(name);
  appendJsEscaped(text_, text);
  return raw("\"");
}

}  // namespace ondrel
