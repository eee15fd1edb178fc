#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ondrel {

// The addressees of a letter run: a text of lines, the first of which names the fields.
//
//   line   = value { delimiter value }      the delimiter is the first of tab, comma and semicolon that the
//                                           first line has
//   value  = '"' anything, '""' for a quote, line ends included '"' | anything up to a delimiter or line end
//
// Lines without a character are passed over.
struct MergeSource {
  std::vector<std::string> fields;
  std::vector<std::vector<std::string>> rows;  // as many values each as there are fields

  // Place of a field, in any case; npos when there is none.
  size_t find(std::string_view field) const;
};

// Error 321, which names the line, when there is no first line, a row has other values than it, or a quote is
// not closed.
MergeSource parseMergeSource(std::string_view text);

}  // namespace ondrel
