#include "data/recordset/filter_tokens.h"

#include <fmt/format.h>

#include <array>
#include <utility>

#include "base/text.h"

namespace ondrel {
namespace {

using enum FilterWord;

// clang-format off
// Longer signs stand before those they begin with.
constexpr std::array<std::pair<std::string_view, FilterWord>, 8> kSigns = {{
    {"<>", NotEqual}, {"<=", NotGreater}, {">=", NotLess},
    {"=", Equal},     {"<", Less},        {">", Greater},
    {"(", Open},      {")", Close},
}};
constexpr std::array<std::pair<std::string_view, FilterWord>, 5> kWords = {{
    {"and", And}, {"or", Or}, {"null", Null}, {"true", True}, {"false", False},
}};
// clang-format on

bool isNameCharacter(char c) {
  return isLetter(c) || isDigit(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

size_t nameEnd(std::string_view filter, size_t position) {
  if (isDigit(filter[position])) return position;
  while (position < filter.size() && isNameCharacter(filter[position])) ++position;
  return position;
}

size_t enclosedEnd(std::string_view filter, size_t position, char open, char close) {
  if (position >= filter.size() || filter[position] != open) return position;
  const size_t end = filter.find(close, position + 1);
  return end == std::string_view::npos ? position : end + 1;
}

FilterWord wordOf(std::string_view name) {
  for (const auto& [text, word] : kWords)
    if (equalsIgnoringCase(name, text)) return word;
  return Name;
}

FilterToken tokenAt(std::string_view filter, size_t position) {
  const auto token = [&](FilterWord word, size_t end) {
    return FilterToken{word, position, filter.substr(position, end - position)};
  };
  if (position == filter.size()) return token(End, position);
  for (const auto& [text, word] : kSigns)
    if (filter.substr(position).starts_with(text)) return token(word, position + text.size());
  if (const size_t end = numberEnd(filter, position); end > position) return token(Number, end);
  if (const size_t end = quotedEnd(filter, position); end > position) return token(Text, end);
  if (const size_t end = enclosedEnd(filter, position, '#', '#'); end > position) return token(Date, end);
  if (const size_t end = enclosedEnd(filter, position, '[', ']'); end > position) return token(Name, end);
  if (const size_t end = nameEnd(filter, position); end > position)
    return token(wordOf(filter.substr(position, end - position)), end);
  failFilter(filter, token(End, filter.size()));
}

char at(std::string_view filter, size_t position) {
  return position < filter.size() ? filter[position] : '\0';
}

size_t skipDigits(std::string_view filter, size_t position) {
  while (isDigit(at(filter, position))) ++position;
  return position;
}

size_t skipSign(std::string_view filter, size_t position) {
  const char sign = at(filter, position);
  return sign == '+' || sign == '-' ? position + 1 : position;
}

size_t skipBlanks(std::string_view filter, size_t position) {
  for (char c = at(filter, position); c == ' ' || c == '\t' || c == '\r' || c == '\n';)
    c = at(filter, ++position);
  return position;
}

}  // namespace

std::vector<FilterToken> filterTokens(std::string_view filter) {
  std::vector<FilterToken> tokens;
  size_t position = 0;
  do {
    position = skipBlanks(filter, position);
    tokens.push_back(tokenAt(filter, position));
    position += tokens.back().text.size();
  } while (tokens.back().word != End);
  return tokens;
}

size_t numberEnd(std::string_view filter, size_t position) {
  const size_t digits = skipSign(filter, position);
  size_t end = skipDigits(filter, digits);
  size_t count = end - digits;
  if (at(filter, end) == '.') {
    const size_t places = end + 1;
    end = skipDigits(filter, places);
    count += end - places;
  }
  if (count == 0) return position;
  if (at(filter, end) == 'e' || at(filter, end) == 'E') {
    const size_t power = skipSign(filter, end + 1);
    if (skipDigits(filter, power) > power) end = skipDigits(filter, power);
  }
  return end;
}

size_t quotedEnd(std::string_view filter, size_t position) {
  if (position >= filter.size() || filter[position] != '\'') return position;
  for (size_t end = position + 1; end < filter.size(); ++end) {
    if (filter[end] != '\'') continue;
    if (end + 1 == filter.size() || filter[end + 1] != '\'') return end + 1;
    ++end;
  }
  return position;
}

void failFilter(std::string_view filter, const FilterToken& token) {
  const std::string word = token.text.empty() ? "the end" : fmt::format("\"{}\"", token.text);
  throw Error(
      ErrorNumber::InvalidArgument, "Recordset",
      fmt::format("Filter \"{}\" is not understood at position {}: {}", filter, token.position + 1, word));
}

}  // namespace ondrel
