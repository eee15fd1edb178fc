#include "platform/xml.h"

#include <algorithm>
#include <pugixml.hpp>

namespace ondrel {
namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n";

std::string_view withoutWhiteSpace(std::string_view text) {
  const size_t start = text.find_first_not_of(kWhiteSpace);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kWhiteSpace) - start + 1);
}

// The parser takes fragments; a document has one element and no text beside it.
bool hasOneRoot(const pugi::xml_document& document) {
  const auto count = [&](pugi::xml_node_type type) {
    const auto nodes = document.children();
    return std::count_if(nodes.begin(), nodes.end(),
                         [&](const pugi::xml_node& node) { return node.type() == type; });
  };
  return count(pugi::node_element) == 1 && count(pugi::node_pcdata) == 0 && count(pugi::node_cdata) == 0;
}

}  // namespace

struct XmlDocument::Impl {
  pugi::xml_document document;
};

XmlDocument::XmlDocument() : impl_(std::make_unique<Impl>()) {}
XmlDocument::~XmlDocument() = default;
XmlDocument::XmlDocument(XmlDocument&&) noexcept = default;
XmlDocument& XmlDocument::operator=(XmlDocument&&) noexcept = default;

bool XmlDocument::loadXML(std::string_view text) {
  constexpr unsigned kOptions = pugi::parse_default | pugi::parse_fragment;
  pugi::xml_document& document = impl_->document;
  if (document.load_buffer(text.data(), text.size(), kOptions, pugi::encoding_utf8) && hasOneRoot(document))
    return true;
  document.reset();
  return false;
}

std::optional<std::string> XmlDocument::textOf(const char* path) const {
  const pugi::xpath_node found = impl_->document.select_node(path);
  if (!found.node()) return std::nullopt;
  const std::string all = pugi::xpath_query("string()").evaluate_string(found);
  return std::string(withoutWhiteSpace(all));
}

}  // namespace ondrel
