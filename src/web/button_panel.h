#pragma once

#include <string>
#include <string_view>

#include "web/html_writer.h"

namespace ondrel {

// A panel of buttons with a head that names what is chosen among them.
class ButtonPanel {
 public:
  // Adds to the head; `pieces` above 1 are told in brackets.
  void choose(const std::string& name, std::int32_t pieces = 1) {
    if (!chosen_.empty()) chosen_ += ", ";
    chosen_ += name;
    if (pieces > 1) chosen_ += " (" + std::to_string(pieces) + ")";
  }
  HtmlWriter& buttons() { return buttons_; }

  // The panel from its head on.
  void writeTo(HtmlWriter& html, std::string_view groupName, const std::string& title,
               std::string_view type) {
    html.raw("<div class=\"pligroup\"><div class=\"header\"><span class=\"group\"")
        .attribute("groupname", groupName);
    html.content().encoded(title).raw("</span><span class=\"sel-").raw(type).raw("-name\">").encoded(chosen_);
    html.raw("</span></div>").raw(buttons_.text()).raw("</div></div>");
  }

 private:
  static constexpr size_t kExpectedSize = 8192;

  std::string chosen_;
  HtmlWriter buttons_{kExpectedSize};
};

inline void writeImage(HtmlWriter& html, const std::string& icon) {
  html.raw("background-image: url(/uploadedimages/").raw(icon).raw(")");
}

}  // namespace ondrel
