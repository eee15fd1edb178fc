#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/recordset/filter_expression.h"

namespace ondrel {

// Where the literals of a filter stand: begin and end of each.
class FilterLiterals {
 public:
  void clear() { bounds_.clear(); }
  void add(size_t begin, size_t end) {
    bounds_.push_back(begin);
    bounds_.push_back(end);
  }
  std::string_view of(std::string_view filter, size_t index) const {
    return filter.substr(bounds_[2 * index], bounds_[2 * index + 1] - bounds_[2 * index]);
  }

 private:
  std::vector<size_t> bounds_;
};

// What filter texts have in common that differ only in their literals: the pieces of text between the
// literals, and the expression that they stand for.
struct FilterShape {
  std::vector<std::string> pieces;  // one more than literals
  std::vector<FilterWord> literals;
  FilterExpression expression;

  // Whether the text is of this shape; `found` then has its literals.
  bool matches(std::string_view filter, FilterLiterals& found) const;
};

// The shapes of the filters that a table has seen, so that each is parsed once.
class FilterCache {
 public:
  // The shape of a text, and its literals in `found`. Errors as parseFilter.
  const FilterShape& shapeOf(std::string_view filter, const TableColumns& table, FilterLiterals& found);

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
