#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondrel {

// A letter in RTF with merge fields, as word processors write them:
//
//   {\field{\*\fldinst MERGEFIELD firstName}{\fldrslt {\b <<firstName>>}}}
//
// Filling puts a value in the place of the field's result, with the format of that result. Other fields stay.
class LetterTemplate {
 public:
  // Error 321 with the position when `text` is no RTF, or a merge field has no name or a switch other than
  // those of formatting (\* MERGEFORMAT, \* CHARFORMAT).
  explicit LetterTemplate(std::string_view text);

  // Names in order of appearance, a name as often as it stands there.
  const std::vector<std::string>& fields() const { return fields_; }

  // One letter: `values[k]` stands for `fields()[k]`.
  std::string fill(const std::vector<std::string>& values) const;
  // All letters, one at least, in one document, each on a page of its own, which names `attachedTemplate` when that is given.
  std::string fillAll(const std::vector<std::vector<std::string>>& letters,
                      std::string_view attachedTemplate) const;

 private:
  class Reader;

  // Text of the template, or the place of a field in `fields_`.
  struct Piece {
    std::string text;
    std::optional<size_t> field;
  };

  std::string filled(const std::vector<Piece>& pieces, const std::vector<std::string>& values) const;

  std::vector<Piece> head_,
      body_;  // what stands once in a document, and what each letter has; "}" is in neither
  std::vector<std::string> fields_;
};

// `value` as RTF text: braces and backslashes escaped, line ends and tabs as words, every other character
// than ASCII by its Unicode number with its Windows-1252 code for old readers.
std::string rtfText(std::string_view value);

}  // namespace ondrel
