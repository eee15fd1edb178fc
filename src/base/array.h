#pragma once

#include <utility>
#include <vector>

#include "base/variant.h"

namespace ondrel {

// A list of values that crosses to a page by reference: the result of an operation that returns an array,
// or an array that a page passes in.
class Array : public Object {
 public:
  Array() = default;
  explicit Array(std::vector<Variant> values, int lowestIndex = 0)
      : items(std::move(values)), lowerBound(lowestIndex) {}

  std::string_view className() const override { return "Array"; }

  std::vector<Variant> items;
  // Index of the first item, for a caller that counts in the page's language.
  int lowerBound = 0;
};

using ArrayRef = std::shared_ptr<Array>;

}  // namespace ondrel
