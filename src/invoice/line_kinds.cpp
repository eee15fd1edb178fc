#include "invoice/line_kinds.h"

#include <fmt/format.h>

namespace ondrel {

std::string ofKind(std::string_view code) {
  return fmt::format("itemType='{}'", code);
}

std::string ofKinds(std::initializer_list<std::string_view> codes) {
  std::string filter;
  for (const std::string_view code : codes) {
    if (!filter.empty()) filter += " OR ";
    filter += ofKind(code);
  }
  return filter;
}

}  // namespace ondrel
