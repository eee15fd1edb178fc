#include "web/html_writer.h"

#include "base/text.h"
#include "data/values.h"
#include "web/whole_number.h"

namespace ondrel {

HtmlWriter& HtmlWriter::raw(std::int32_t number) {
  appendWhole(text_, number);
  return *this;
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
