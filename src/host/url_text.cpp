#include "host/url_text.h"

#include <fmt/format.h>

#include "base/text.h"

namespace ondrel {
namespace {

int digitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Without what nobody types: control characters but tabs and line ends, and bytes that are no text.
std::string typedText(std::string_view text) {
  std::string result;
  for (size_t position = 0; position < text.size();) {
    const size_t start = position;
    const char32_t c = nextCharacter(text, position);
    const bool isControl = (c < ' ' && c != '\t' && c != '\r' && c != '\n') || c == 0x7F;
    const bool isBroken = c >= 0x80 && position == start + 1;
    if (!isControl && !isBroken) result += text.substr(start, position - start);
  }
  return result;
}

std::string fieldText(std::string_view text) {
  std::string result(text);
  for (char& c : result)
    if (c == '+') c = ' ';
  return typedText(percentDecoded(result));
}

std::string_view takeUpTo(std::string_view& text, char end) {
  const size_t length = std::min(text.find(end), text.size());
  const std::string_view piece = text.substr(0, length);
  text.remove_prefix(std::min(length + 1, text.size()));
  return piece;
}

}  // namespace

std::string percentDecoded(std::string_view text) {
  std::string result;
  for (size_t k = 0; k < text.size(); ++k) {
    const bool isEscape =
        text[k] == '%' && k + 2 < text.size() && digitOf(text[k + 1]) >= 0 && digitOf(text[k + 2]) >= 0;
    if (isEscape) {
      result += static_cast<char>(digitOf(text[k + 1]) * 16 + digitOf(text[k + 2]));
      k += 2;
    } else {
      result += text[k];
    }
  }
  return result;
}

std::string percentEncoded(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (isLetter(c) || isDigit(c) || c == '-' || c == '_' || c == '.' || c == '/')
      result += c;
    else
      fmt::format_to(std::back_inserter(result), "%{:02X}", static_cast<unsigned char>(c));
  }
  return result;
}

NamedTexts parseForm(std::string_view text) {
  NamedTexts fields;
  while (!text.empty()) {
    std::string_view field = takeUpTo(text, '&');
    if (field.empty()) continue;
    const std::string_view name = takeUpTo(field, '=');
    fields.emplace_back(fieldText(name), fieldText(field));
  }
  return fields;
}

std::string formText(const NamedTexts& fields) {
  std::string text;
  for (const auto& [name, value] : fields) {
    if (!text.empty()) text += '&';
    text += percentEncoded(name) + "=" + percentEncoded(value);
  }
  return text;
}

std::string_view valueOf(const NamedTexts& texts, std::string_view name) {
  for (const auto& [key, value] : texts)
    if (key == name) return value;
  return {};
}

std::string_view cookieValue(std::string_view header, std::string_view name) {
  while (!header.empty()) {
    std::string_view cookie = trim(takeUpTo(header, ';'));
    if (takeUpTo(cookie, '=') == name) return cookie;
  }
  return {};
}

std::string jsonText(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    if (static_cast<unsigned char>(c) < 0x20)
      fmt::format_to(std::back_inserter(result), "\\u{:04x}", static_cast<unsigned char>(c));
    else
      result += c;
  }
  return result += '"';
}

}  // namespace ondrel
