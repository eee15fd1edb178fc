#pragma once

#include <string_view>
#include <vector>

namespace ondrel {

// The words of an RTF text:
//
//   open  = "{"          close = "}"
//   word  = "\" letters [ ["-"] digits ] [ blank ]     after "\bin" as many bytes of data
//   hex   = "\'" two hex digits                        a character's code
//   sign  = "\" any other character                    "\*", "\{", "\~"
//   text  = anything else; line ends count for nothing
struct RtfToken {
  enum class Kind { Open, Close, Word, Hex, Sign, Text };

  Kind kind = Kind::Text;
  std::string_view raw;   // as it stands in the text
  std::string_view name;  // letters of a word, character of a sign
  int value = 0;          // number of a word, code of a hex
  size_t partner = 0;     // place of the token that closes an Open

  bool isWord(std::string_view word) const { return kind == Kind::Word && name == word; }
};

// Error 321, with the position, for a text that is no RTF document: no "{\rtf" at the start, a brace without
// its partner, or a word cut off. The tokens point into `text`.
std::vector<RtfToken> rtfTokens(std::string_view text);

}  // namespace ondrel
