#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <utility>

#include "base/variant.h"

namespace ondrel {

// Writes mark-up to one text that grows. Nothing is kept for an element: a page's fragment is the order of
// the calls.
//
//   html.tag("div").attribute("class", "name").content().encoded(name).end("div");
//
// | call      | value goes in                                                     |
// |-----------|-------------------------------------------------------------------|
// | raw       | as it is: finished mark-up, and values that a page takes plain    |
// | encoded   | with quotes, ampersands, brackets and special characters encoded  |
// | attribute | as it is, between quotes                                          |
// | escaped   | as script text, between quotes (a quote turns into a backslash)   |
//
// Null and Empty write nothing, numbers and dates their default text.
class HtmlWriter {
 public:
  HtmlWriter() = default;
  explicit HtmlWriter(size_t expectedSize) { text_.reserve(expectedSize); }

  HtmlWriter& raw(std::string_view markup) {
    text_ += markup;
    return *this;
  }
  HtmlWriter& raw(std::int32_t number);
  HtmlWriter& raw(const char* markup) { return raw(std::string_view(markup)); }
  template <std::same_as<Variant> Value>
  HtmlWriter& raw(const Value& value) {
    return withText(value, [this](std::string_view text) { text_ += text; });
  }

  HtmlWriter& encoded(std::string_view text);
  template <std::same_as<Variant> Value>
  HtmlWriter& encoded(const Value& value) {
    return withText(value, [this](std::string_view text) { encoded(text); });
  }

  // "$1,234.50"; negative "($1,234.50)".
  HtmlWriter& currency(double amount);

  HtmlWriter& tag(std::string_view name) {
    text_ += '<';
    return raw(name);
  }
  template <class Value>
  HtmlWriter& attribute(std::string_view name, const Value& value) {
    return startAttribute(name).raw(value).raw("\"");
  }
  HtmlWriter& escaped(std::string_view name, std::string_view text);
  template <std::same_as<Variant> Value>
  HtmlWriter& escaped(std::string_view name, const Value& value) {
    return withText(value, [&](std::string_view text) { escaped(name, text); });
  }
  // Ends the attributes of a tag: what follows is inside the element.
  HtmlWriter& content() { return raw(">"); }
  HtmlWriter& end(std::string_view name) { return raw("</").raw(name).raw(">"); }

  const std::string& text() const { return text_; }
  std::string take() { return std::move(text_); }

 private:
  // Text is used where it stands; other values have their text made.
  template <class Use>
  HtmlWriter& withText(const Variant& value, Use use) {
    if (value.isText())
      use(std::string_view(value.text()));
    else
      use(std::string_view(value.joined()));
    return *this;
  }
  HtmlWriter& startAttribute(std::string_view name) { return raw(" ").raw(name).raw("=\""); }

  std::string text_;
};

}  // namespace ondrel
