#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "data/recordset/filter_cache.h"
#include "data/recordset/table.h"

namespace ondrel {

// A filter text made ready for the rows of a table: its shape, and its literals as the types of their
// columns. Empty until bound.
//
// | column  | compares as                     | quoted literal                 | bare number        |
// |---------|---------------------------------|--------------------------------|--------------------|
// | integer | number                          | must be a number               | number             |
// | number  | number                          | must be a number               | number             |
// | Boolean | False before True               | a number, True or False        | 0 False, else True |
// | date    | moment                          | must be a date                 | days               |
// | text    | text without regard to case     | text                           | its digits as text |
//
// A Null cell passes no comparison.
class Filter {
 public:
  // Errors 3001 and 3265 leave the filter unusable until the next bind; text() is then undefined.
  void bind(std::string_view text, Table& table);
  const std::string& text() const { return text_; }

  // Bit k is set when column k, or one with k as the remainder of its position by 64, is compared.
  std::uint64_t columns() const { return columns_; }

  // 1 for each row that passes, from the place `first`, a multiple of Table::kBlock, for `blocks`
  // blocks. Places without a row may be 1 or 0. The result is valid until the next call.
  const std::uint8_t* run(const Table& table, size_t first, size_t blocks) const;

 private:
  // The value that a step compares with, as the storage of its column needs it.
  struct Operand {
    std::int64_t integer = 0;
    double number = 0;
    FoldedKey key = 0;
    std::string_view text;
    bool passes[2] = {};  // result for False and for True
  };

  Operand operandOf(const FilterStep& step, const ColumnStore& column);
  std::string_view literalText(std::string_view literal);
  void compare(const FilterStep& step, const Operand& operand, const Table& table, size_t first,
               size_t blocks, std::uint8_t* result) const;

  std::string text_;
  const FilterShape* shape_ = nullptr;
  std::uint64_t columns_ = 0;
  std::vector<std::string_view> literals_;
  std::vector<Operand> operands_;
  std::list<std::string> unescaped_;  // literals that had doubled quotes
  mutable std::vector<std::uint8_t> results_;
};

}  // namespace ondrel
