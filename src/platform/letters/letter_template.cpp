#include "platform/letters/letter_template.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdint>

#include "base/error.h"
#include "base/text.h"
#include "platform/letters/rtf_tokens.h"
#include "platform/utf16.h"

namespace ondrel {
namespace {

using Kind = RtfToken::Kind;

// Groups before the first paragraph; besides them every group that starts with "\*".
constexpr std::array<std::string_view, 5> kHeadGroups = {"fonttbl", "colortbl", "stylesheet", "info",
                                                         "filetbl"};
constexpr std::array<std::string_view, 4> kBodyWords = {"pard", "par", "plain", "sectd"};

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string withoutLineEnds(std::string_view text) {
  std::string result(text);
  std::erase_if(result, [](char c) { return c == '\r' || c == '\n'; });
  return result;
}

// The words of a field's instruction; a quoted one may hold blanks.
std::vector<std::string> instructionWords(std::string_view text) {
  std::vector<std::string> words;
  for (size_t k = 0; k < text.size();) {
    if (text[k] == ' ' || text[k] == '\t') {
      ++k;
      continue;
    }
    const bool isQuoted = text[k] == '"';
    const size_t from = isQuoted ? k + 1 : k;
    const size_t end = std::min(text.find_first_of(isQuoted ? "\"" : " \t", from), text.size());
    words.emplace_back(text.substr(from, end - from));
    k = end + (isQuoted ? 1 : 0);
  }
  return words;
}

bool isFormatSwitch(std::string_view word) {
  return equalsIgnoringCase(word, "MERGEFORMAT") || equalsIgnoringCase(word, "CHARFORMAT");
}

}  // namespace

// Goes over the tokens once and leaves the pieces of the template.
class LetterTemplate::Reader {
 public:
  Reader(LetterTemplate& letter, std::string_view text)
      : letter_(letter), text_(text), tokens_(rtfTokens(text)) {}

  void read() {
    for (size_t k = 0; k + 1 < tokens_.size();) {
      if (pieces_ == &letter_.head_ && depth_ == 1 && startsBody(k)) pieces_ = &letter_.body_;
      k = startsField(k) ? field(k) : raw(k);
    }
  }

 private:
  bool startsBody(size_t k) const {
    const RtfToken& token = tokens_[k];
    switch (token.kind) {
      case Kind::Text:
        return !isBlank(token.raw);
      case Kind::Word:
        return std::find(kBodyWords.begin(), kBodyWords.end(), token.name) != kBodyWords.end();
      case Kind::Open:
        return !(tokens_[k + 1].kind == Kind::Sign && tokens_[k + 1].name == "*") &&
               std::find(kHeadGroups.begin(), kHeadGroups.end(), tokens_[k + 1].name) == kHeadGroups.end();
      default:
        return token.kind == Kind::Hex;
    }
  }

  bool startsField(size_t k) const { return tokens_[k].kind == Kind::Open && tokens_[k + 1].isWord("field"); }

  size_t raw(size_t k) {
    if (tokens_[k].kind == Kind::Open) ++depth_;
    if (tokens_[k].kind == Kind::Close) --depth_;
    addText(tokens_[k].raw);
    return k + 1;
  }

  // A whole field, which starts at the Open `k`. Gives the place behind it, or behind the Open when it is
  // no merge field.
  size_t field(size_t k) {
    const size_t end = tokens_[k].partner;
    const size_t instruction = destination(k, end, "fldinst");
    const std::string name = instruction < end ? fieldName(instruction) : "";
    if (name.empty()) return raw(k);
    addText("{");
    const size_t result = destination(k, end, "fldrslt");
    if (result < end)
      addResult(result, name);
    else
      addField(name);
    addText("}");
    return end + 1;
  }

  // Place of the destination's word in the group, `end` when it has none.
  size_t destination(size_t k, size_t end, std::string_view name) const {
    while (k < end && !tokens_[k].isWord(name)) ++k;
    return k;
  }

  size_t endOfGroup(size_t k) const {
    for (; tokens_[k].kind != Kind::Close; ++k)
      if (tokens_[k].kind == Kind::Open) k = tokens_[k].partner;
    return k;
  }

  std::string plainText(size_t k) const {
    std::string text;
    for (const size_t end = endOfGroup(k); k < end; ++k) {
      const RtfToken& token = tokens_[k];
      if (token.kind == Kind::Text) text += withoutLineEnds(token.raw);
      if (token.kind == Kind::Sign) text += token.name;
      if (token.kind == Kind::Hex) appendCharacter(text, ansiCharacter(token.value));
    }
    return text;
  }

  // Empty for a field of another kind.
  std::string fieldName(size_t instruction) const {
    const std::vector<std::string> words = instructionWords(plainText(instruction + 1));
    if (words.empty() || !equalsIgnoringCase(words[0], "MERGEFIELD")) return "";
    const size_t position = static_cast<size_t>(tokens_[instruction].raw.data() - text_.data()) + 1;
    const auto fail = [&](const std::string& reason) {
      throw Error(ErrorNumber::InvalidFileFormat, "MailMerge",
                  fmt::format("Letter template, position {}: {}", position, reason));
    };
    if (words.size() < 2 || words[1].empty() || words[1].starts_with('\\')) fail("a merge field has no name");
    for (size_t k = 2; k < words.size(); k += 2)
      if (words[k] != "\\*" || k + 1 == words.size() || !isFormatSwitch(words[k + 1]))
        fail("merge field '" + words[1] + "' has a switch that is not known: " + words[k]);
    return words[1];
  }

  // The result with the field where its first text stands, and without its other texts.
  void addResult(size_t result, const std::string& name) {
    bool isPlaced = false;
    for (size_t k = result + 1, end = endOfGroup(k); k < end; ++k) {
      const RtfToken& token = tokens_[k];
      const bool isText = token.kind == Kind::Text || token.kind == Kind::Hex || token.isWord("u");
      if (!isText || (token.kind == Kind::Text && isBlank(token.raw))) {
        if (!isText) addText(token.raw);
        continue;
      }
      if (!isPlaced) addField(name);
      isPlaced = true;
    }
    if (!isPlaced) addField(name);
  }

  void addText(std::string_view text) {
    if (pieces_->empty() || pieces_->back().field) pieces_->push_back({});
    pieces_->back().text += text;
  }

  void addField(const std::string& name) {
    pieces_->push_back({"", letter_.fields_.size()});
    letter_.fields_.push_back(name);
  }

  LetterTemplate& letter_;
  std::string_view text_;
  std::vector<RtfToken> tokens_;
  std::vector<Piece>* pieces_ = &letter_.head_;
  int depth_ = 0;
};

LetterTemplate::LetterTemplate(std::string_view text) {
  Reader(*this, text).read();
}

std::string LetterTemplate::filled(const std::vector<Piece>& pieces,
                                   const std::vector<std::string>& values) const {
  std::string result;
  for (const Piece& piece : pieces)
    result += piece.field ? "{" + rtfText(values[*piece.field]) + "}" : piece.text;
  return result;
}

std::string LetterTemplate::fill(const std::vector<std::string>& values) const {
  return filled(head_, values) + filled(body_, values) + "}";
}

std::string LetterTemplate::fillAll(const std::vector<std::vector<std::string>>& letters,
                                    std::string_view attachedTemplate) const {
  assert(!letters.empty());
  std::string result = filled(head_, letters[0]);
  if (!attachedTemplate.empty()) result += "{\\*\\template " + rtfText(attachedTemplate) + "}";
  for (size_t k = 0; k < letters.size(); ++k)
    result += (k > 0 ? "\\page\\pard\\plain " : "") + filled(body_, letters[k]);
  return result + "}";
}

std::string rtfText(std::string_view value) {
  std::string result;
  bool isAscii = true;
  for (size_t position = 0; position < value.size();) {
    const size_t from = position;
    const char32_t character = nextCharacter(value, position);
    if (character == '\\' || character == '{' || character == '}') {
      result += '\\';
      result += static_cast<char>(character);
    } else if (character == '\n' || (character == '\r' && !value.substr(position).starts_with('\n'))) {
      result += "\\line ";
    } else if (character == '\t') {
      result += "\\tab ";
    } else if (character >= 0x80) {
      isAscii = false;
      const std::u16string units = toUtf16(value.substr(from, position - from));
      for (const char16_t unit : units)
        result += fmt::format("\\u{}\\'{:02x}", static_cast<std::int16_t>(unit),
                              units.size() == 1 ? ansiCode(character) : '?');
    } else if (character >= ' ') {
      result += static_cast<char>(character);
    }
  }
  return isAscii ? result : "\\uc1 " + result;
}

}  // namespace ondrel
