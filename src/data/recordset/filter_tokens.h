#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/error.h"

namespace ondrel {

enum class FilterWord : std::uint8_t {
  Name,
  Equal,
  NotEqual,
  Less,
  Greater,
  NotGreater,
  NotLess,
  Number,
  Text,
  Date,
  And,
  Or,
  Null,
  True,
  False,
  Open,
  Close,
  End
};

// A word of a filter text: where it starts and the bytes it takes, quotes and brackets included.
struct FilterToken {
  FilterWord word = FilterWord::End;
  size_t position = 0;
  std::string_view text;

  bool isLiteral() const {
    return word == FilterWord::Number || word == FilterWord::Text || word == FilterWord::Date;
  }
  bool isComparison() const { return word >= FilterWord::Equal && word <= FilterWord::NotLess; }
};

// Words of the text, the last one End. Error 3001 at a character that starts no word.
std::vector<FilterToken> filterTokens(std::string_view filter);

// Where the literal that starts at `position` ends; `position` itself when none starts there.
size_t numberEnd(std::string_view filter, size_t position);
size_t quotedEnd(std::string_view filter, size_t position);

// Error 3001 that names the filter, the position (from 1) and the word.
[[noreturn]] void failFilter(std::string_view filter, const FilterToken& token);

}  // namespace ondrel
