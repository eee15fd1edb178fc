#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace ondrel {

// A document that is read only. Nothing outside is fetched.
class XmlDocument {
 public:
  XmlDocument();
  ~XmlDocument();
  XmlDocument(XmlDocument&&) noexcept;
  XmlDocument& operator=(XmlDocument&&) noexcept;

  // False when the text is not well-formed, nests deeper than 256 elements or declares entities; the document
  // is then empty.
  bool loadXML(std::string_view text);
  // Text of the first element at the path ("//A/B/C") with that of the elements in it, without white
  // space at both ends. Nothing when there is no such element.
  std::optional<std::string> textOf(const char* path) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace ondrel
