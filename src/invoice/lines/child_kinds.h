#pragma once

#include <array>
#include <string_view>

#include "invoice/line_columns.h"
#include "invoice/line_kinds.h"

namespace ondrel {

// The children whose amounts their garment adds up, and where.
struct ChildKind {
  std::string_view kind;
  LineColumn parentSum;
  bool isUpcharge;  // logged without a test, and coupons follow its quantity
};

inline constexpr std::array<ChildKind, 3> kChildKinds = {{
    {kind::upcharge, LineColumn::upchargeTotal, true},
    {kind::pattern, LineColumn::patternTotal, false},
    {kind::color, LineColumn::colorTotal, false},
}};

// The row of a kind in upper case; nullptr for any other kind of line.
inline const ChildKind* childKind(std::string_view kind) {
  for (const ChildKind& row : kChildKinds)
    if (row.kind == kind) return &row;
  return nullptr;
}

}  // namespace ondrel
