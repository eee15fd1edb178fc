#include "platform/letters/rtf_tokens.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "base/error.h"
#include "base/text.h"

namespace ondrel {
namespace {

[[noreturn]] void failRtf(size_t position, std::string_view reason) {
  throw Error(ErrorNumber::InvalidFileFormat, "MailMerge",
              "Letter template, position " + std::to_string(position + 1) + ": " + std::string(reason));
}

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  std::vector<RtfToken> scan() {
    if (!text_.starts_with("{\\rtf")) failRtf(0, "no RTF document");
    do {
      next();
    } while (!open_.empty() && position_ < text_.size());
    if (!open_.empty()) failRtf(text_.size(), "a brace is not closed");
    return std::move(tokens_);
  }

 private:
  void next() {
    start_ = position_;
    const char c = text_[position_++];
    if (c == '{') {
      open_.push_back(tokens_.size());
      add(RtfToken::Kind::Open);
    } else if (c == '}') {
      tokens_[open_.back()].partner = tokens_.size();
      open_.pop_back();
      add(RtfToken::Kind::Close);
    } else if (c == '\\') {
      control();
    } else {
      position_ = std::min(text_.find_first_of("{}\\", position_), text_.size());
      add(RtfToken::Kind::Text);
    }
  }

  void control() {
    if (position_ == text_.size()) failRtf(start_, "the text ends in a control word");
    if (isLetter(text_[position_])) return word();
    const size_t sign = position_++;
    if (text_[sign] == '\'') return hex();
    add(RtfToken::Kind::Sign, text_.substr(sign, 1));
  }

  void word() {
    const size_t letters = position_;
    while (position_ < text_.size() && isLetter(text_[position_])) ++position_;
    const std::string_view name = text_.substr(letters, position_ - letters);
    int value = 0;
    const auto [end, failure] = std::from_chars(text_.data() + position_, text_.data() + text_.size(), value);
    if (failure == std::errc::result_out_of_range) failRtf(start_, "a number is too large");
    if (failure == std::errc()) position_ = static_cast<size_t>(end - text_.data());
    if (position_ < text_.size() && text_[position_] == ' ') ++position_;
    if (name == "bin" && value > 0) {
      if (text_.size() - position_ < static_cast<size_t>(value)) failRtf(start_, "binary data is cut off");
      position_ += static_cast<size_t>(value);
    }
    add(RtfToken::Kind::Word, name, value);
  }

  void hex() {
    int code = 0;
    const char* const first = text_.data() + position_;
    const char* const last = text_.data() + std::min(position_ + 2, text_.size());
    if (std::from_chars(first, last, code, 16).ptr != first + 2 || code < 0)
      failRtf(start_, "two hex digits were expected");
    position_ += 2;
    add(RtfToken::Kind::Hex, {}, code);
  }

  void add(RtfToken::Kind kind, std::string_view name = {}, int value = 0) {
    tokens_.push_back({kind, text_.substr(start_, position_ - start_), name, value, 0});
  }

  std::string_view text_;
  size_t position_ = 0, start_ = 0;
  std::vector<RtfToken> tokens_;
  std::vector<size_t> open_;
};

}  // namespace

std::vector<RtfToken> rtfTokens(std::string_view text) {
  return Scanner(text).scan();
}

}  // namespace ondrel
