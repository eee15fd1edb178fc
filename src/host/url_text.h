#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ondrel {

// Names and values in the order of their arrival; a name may come twice.
using NamedTexts = std::vector<std::pair<std::string, std::string>>;

// "a=1&b=two+words%21": the form of queries and of forms. A broken escape stands as it is; control characters but tabs
// and line ends, and bytes that are no UTF-8, go.
NamedTexts parseForm(std::string_view text);
std::string formText(const NamedTexts& fields);

// The value of a name, the empty text without one; of several the first.
std::string_view valueOf(const NamedTexts& texts, std::string_view name);

// The value that a Cookie header gives for a name, the empty text without one.
std::string_view cookieValue(std::string_view header, std::string_view name);

// `text` in letters, digits and a few signs, the rest as %XX, and back.
std::string percentEncoded(std::string_view text);
std::string percentDecoded(std::string_view text);

// A JSON text with its quotes.
std::string jsonText(std::string_view text);

}  // namespace ondrel
