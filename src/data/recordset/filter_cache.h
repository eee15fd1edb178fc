#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/recordset/filter_expression.h"

namespace ondrel {

// What filter texts have in common that differ only in their literals: the pieces of text between the
// literals, and the expression that they stand for.
struct FilterShape {
  std::vector<std::string> pieces;  // one more than literals
  std::vector<FilterWord> literals;
  FilterExpression expression;

  // Whether the text is of this shape; `values` then has its literals as they stand.
  bool matches(std::string_view filter, std::vector<std::string_view>& values) const;
};

// The shapes of the filters that a table has seen, so that each is parsed once.
class FilterCache {
 public:
  // The shape of a text, and its literals in `values`. Errors as parseFilter.
  const FilterShape& shapeOf(std::string_view filter, const Table& table,
                             std::vector<std::string_view>& values);

 private:
  struct Hash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  // The latest shape for each beginning of a text: most texts find theirs here, without a look at
  // their words.
  std::array<const FilterShape*, 32> latest_{};
  std::unordered_map<std::string, std::unique_ptr<FilterShape>, Hash, std::equal_to<>> shapes_;
};

}  // namespace ondrel
