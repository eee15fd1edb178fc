#include "platform/xml.h"

#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <limits>

namespace ondrel {
namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n";
// Nothing is fetched, the encoding that a document declares does not count (the text has been decoded), and
// what is wrong with it goes nowhere.
constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_IGNORE_ENC | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

struct FreesXml {
  void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
  void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
  void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }
  void operator()(xmlChar* text) const { xmlFree(text); }
};
template <class T>
using XmlPointer = std::unique_ptr<T, FreesXml>;

std::string_view withoutWhiteSpace(std::string_view text) {
  const size_t start = text.find_first_not_of(kWhiteSpace);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kWhiteSpace) - start + 1);
}

const xmlChar* xmlText(const char* text) {
  return reinterpret_cast<const xmlChar*>(text);
}

}  // namespace

struct XmlDocument::Impl {
  XmlPointer<xmlDoc> document;
};

XmlDocument::XmlDocument() : impl_(std::make_unique<Impl>()) {}
XmlDocument::~XmlDocument() = default;
XmlDocument::XmlDocument(XmlDocument&&) noexcept = default;
XmlDocument& XmlDocument::operator=(XmlDocument&&) noexcept = default;

// Entities of a document's own are refused: a few lines of them grow to any size.
bool XmlDocument::loadXML(std::string_view text) {
  impl_->document.reset();
  if (text.size() > std::numeric_limits<int>::max()) return false;
  const XmlPointer<xmlParserCtxt> parser(xmlNewParserCtxt());
  XmlPointer<xmlDoc> parsed(xmlCtxtReadMemory(parser.get(), text.data(), static_cast<int>(text.size()),
                                              nullptr, "UTF-8", kOptions));
  if (!parsed || !parser->nsWellFormed) return false;
  if (parsed->intSubset && parsed->intSubset->entities) return false;
  impl_->document = std::move(parsed);
  return true;
}

std::optional<std::string> XmlDocument::textOf(const char* path) const {
  if (!impl_->document) return std::nullopt;
  const XmlPointer<xmlXPathContext> context(xmlXPathNewContext(impl_->document.get()));
  const XmlPointer<xmlXPathObject> found(xmlXPathEvalExpression(xmlText(path), context.get()));
  if (!found || xmlXPathNodeSetIsEmpty(found->nodesetval)) return std::nullopt;
  const XmlPointer<xmlChar> all(xmlXPathCastNodeToString(found->nodesetval->nodeTab[0]));
  return std::string(withoutWhiteSpace(reinterpret_cast<const char*>(all.get())));
}

}  // namespace ondrel
