#include "platform/xml.h"

#include <gtest/gtest.h>

namespace ondrel {
namespace {

TEST(Xml, TakesWhatIsWellFormedAndNothingElse) {
  // The text of "//a/b"; nothing where the document is refused or has none.
  const std::pair<const char*, std::optional<const char*>> cases[] = {
      {"<a><b> x <i>y</i>&amp; \n</b><b>z</b></a>", "x y&"},
      {"<?xml version='1.0' encoding='utf-16'?>\n<!--c--><a><b>\xC3\xA9&amp;&#65;<![CDATA[<&]]></b></a>\n",
       "\xC3\xA9&A<&"},
      {"<!DOCTYPE a SYSTEM 'http://localhost/a.dtd'><a><b/></a>", ""},
      {"<a><c>x</c></a>", std::nullopt},
      {"<a><b>x &who; y</b></a>", std::nullopt},
      {"<a n=1><b>x</b></a>", std::nullopt},
      {"<a><p:b>x</p:b><b>x</b></a>", std::nullopt},
      {"<a><b>x</b></A>", std::nullopt},
      {"<a><b>x</b></a> and more", std::nullopt},
      {"<a><b>x\x01</b></a>", std::nullopt},
      {"<a><b>\xE9</b></a>", std::nullopt},
      {"<a><b>x]]></b></a>", std::nullopt},
      {" <?xml version='1.0'?><a><b>x</b></a>", std::nullopt},
      {"<!DOCTYPE a [<!ENTITY b 'bb'><!ENTITY c '&b;&b;&b;'>]><a><b>&c;</b></a>", std::nullopt},
      {"<!DOCTYPE a [<!ENTITY b SYSTEM '/etc/hostname'>]><a><b>&b;</b></a>", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [text, expected] : cases) {
    XmlDocument document;
    document.loadXML("<a><b>old</b></a>");
    document.loadXML(text);
    EXPECT_EQ(document.textOf("//a/b"), expected) << text;
  }
}

}  // namespace
}  // namespace ondrel
