#include <algorithm>

#include "base/text.h"
#include "data/embedded/functions.h"

namespace ondrel::sql {
namespace {

// `count` characters from position `start`, which counts from 1; what lies before the text counts too.
std::string_view charactersFrom(std::string_view text, std::int64_t start, std::int64_t count) {
  const std::int64_t first = std::max<std::int64_t>(start - 1, 0);
  const std::int64_t kept = std::max<std::int64_t>(start - 1 + count - first, 0);
  text.remove_prefix(leftCharacters(text, static_cast<size_t>(first)).size());
  return leftCharacters(text, static_cast<size_t>(kept));
}

// Blanks at the end do not count.
void length(const FunctionCall& call) {
  if (call.isNull(0)) return call.giveNull();
  const std::string_view text = call.text(0);
  call.give(static_cast<std::int64_t>(characterCount(text.substr(0, text.find_last_not_of(' ') + 1))));
}

void substring(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  call.give(charactersFrom(call.text(0), call.integer(1), call.integer(2)));
}

void leftPart(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  call.give(charactersFrom(call.text(0), 1, call.integer(1)));
}

void rightPart(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  const auto total = static_cast<std::int64_t>(characterCount(call.text(0)));
  const std::int64_t kept = std::clamp<std::int64_t>(call.integer(1), 0, total);
  call.give(charactersFrom(call.text(0), total - kept + 1, kept));
}

void upper(const FunctionCall& call) {
  if (call.isNull(0)) return call.giveNull();
  call.give(std::string_view(toUpper(call.text(0))));
}

void lower(const FunctionCall& call) {
  if (call.isNull(0)) return call.giveNull();
  call.give(std::string_view(toLower(call.text(0))));
}

void replaceIn(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  const std::string folded = toLower(call.text(0)), what = toLower(call.text(1));
  if (what.empty()) return call.give(call.text(0));
  std::string result;
  size_t from = 0;
  for (size_t found; (found = folded.find(what, from)) != std::string::npos; from = found + what.size())
    result.append(call.text(0).substr(from, found - from)).append(call.text(2));
  call.give(std::string_view(result.append(call.text(0).substr(from))));
}

// Position from 1 of the first text in the second, from a position on; 0 when it is not there.
void charIndex(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  const std::string what = toLower(call.text(0)), where = toLower(call.text(1));
  const std::int64_t start = call.count() > 2 ? std::max<std::int64_t>(call.integer(2), 1) : 1;
  const size_t skipped = leftCharacters(where, static_cast<size_t>(start - 1)).size();
  const size_t found = what.empty() ? std::string::npos : where.find(what, skipped);
  if (found == std::string::npos) return call.give(std::int64_t{0});
  call.give(static_cast<std::int64_t>(characterCount(std::string_view(where).substr(0, found))) + 1);
}

// Takes a set "[a-f]" or "[^a-f]" from the pattern and tells whether it holds the character.
bool setHolds(std::string_view pattern, size_t& at, char32_t character) {
  const bool inverted = at < pattern.size() && pattern[at] == '^';
  if (inverted) ++at;
  bool found = false;
  while (at < pattern.size() && pattern[at] != ']') {
    const char32_t low = nextCharacter(pattern, at);
    char32_t high = low;
    if (at + 1 < pattern.size() && pattern[at] == '-' && pattern[at + 1] != ']')
      high = nextCharacter(pattern, ++at);
    found = found || (low <= character && character <= high);
  }
  if (at < pattern.size()) ++at;
  return found != inverted;
}

// Both in lower case. % any text, _ any character, [..] one of a set.
bool matches(std::string_view pattern, std::string_view text) {
  size_t p = 0, t = 0;
  size_t starPattern = std::string_view::npos, starText = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '%') {
      starPattern = ++p;
      starText = t;
      continue;
    }
    size_t nextP = p, nextT = t;
    bool fits = false;
    if (p < pattern.size()) {
      const char32_t wanted = nextCharacter(pattern, nextP);
      const char32_t character = nextCharacter(text, nextT);
      fits = wanted == '_' || (wanted == '[' ? setHolds(pattern, nextP, character) : wanted == character);
    }
    if (fits) {
      p = nextP;
      t = nextT;
    } else if (starPattern != std::string_view::npos) {
      nextCharacter(text, starText);
      p = starPattern;
      t = starText;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('%', p) == std::string_view::npos;
}

void like(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  call.give(std::int64_t{matches(toLower(call.text(0)), toLower(call.text(1)))});
}

// clang-format off
constexpr RegisteredFunction kTextFunctions[] = {
    {"len",          1, length},
    {"substring_of", 3, substring},
    {"left_of",      2, leftPart},
    {"right_of",     2, rightPart},
    {"upper",        1, upper},
    {"lower",        1, lower},
    {"replace_in",   3, replaceIn},
    {"charindex",    2, charIndex},
    {"charindex",    3, charIndex},
    {"like",         2, like},
};
// clang-format on

}  // namespace

std::span<const RegisteredFunction> textFunctions() {
  return kTextFunctions;
}

}  // namespace ondrel::sql
