#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "data/recordset/filter_cache.h"

namespace ondrel {

class TableColumns;
struct ColumnStore;
struct FilterSpan;

// A filter text made ready for the rows of a table: its shape, and its literals as the types of their
// columns.
//
// | column  | compares as                 | quoted literal           | bare number            |
// |---------|-----------------------------|--------------------------|------------------------|
// | integer | number                      | must be a number         | number                 |
// | number  | number                      | must be a number         | number                 |
// | Boolean | False before True           | a number, True or False  | 0 is False, else True  |
// | date    | moment                      | must be a date           | days                   |
// | text    | text without regard to case | text                     | its digits as text     |
//
// A Null cell passes no comparison.
class Filter {
 public:
  // Errors 3001 and 3265 leave the filter unusable until the next bind.
  void bind(std::string_view text, const TableColumns& table, FilterCache& shapes);
  const std::string& text() const { return text_; }

  // Columns that are compared, as in FilterExpression.
  std::uint64_t columns() const { return shape_->expression.columns; }

  // 1 for each row that passes, from the place `first`, a multiple of TableColumns::kBlock, for `blocks`
  // blocks. Places without a row may be 1 or 0. The result lies in the table's working space and is
  // valid until the next run on it.
  const std::uint8_t* run(const TableColumns& table, size_t first, size_t blocks) const;

 private:
  // The value that a step compares with, as the storage of its column needs it.
  struct Operand {
    bool isInteger = false;
    bool passes[2] = {};  // result for False and for True
    std::int32_t integer = 0;
    double number = 0;
    std::uint64_t key = 0;
    std::string_view text;
  };

  static void compare(const FilterSpan& span, FilterWord comparison, const ColumnStore& column,
                      const Operand& operand);
  void setOperand(Operand& operand, const FilterStep& step, const ColumnStore& column,
                  std::string_view filter);

  std::string text_;
  const FilterShape* shape_ = nullptr;
  FilterLiterals literals_;
  std::vector<Operand> operands_;     // one a step
  std::list<std::string> unescaped_;  // literals that had doubled quotes
};

}  // namespace ondrel
