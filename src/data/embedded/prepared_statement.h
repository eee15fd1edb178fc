#pragma once

#include <sqlite3.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "data/dialect/shape.h"
#include "data/dialect/translation.h"
#include "data/recordset/column.h"

namespace ondrel::sql {

// Whole numbers of unknown size: the column takes Long when all of its values fit.
inline bool isUnsettled(const ResolvedType& type) {
  return type.category == Category::Numeral || type.declared.type == SqlType::BigInt;
}

// What a parameter holds from the last run: the literal as it stood, and what a conversion made of it.
struct BoundParameter {
  std::string literal, made;
  bool isBound = false;
};

struct PreparedStatement {
  Translation translation;
  std::unique_ptr<sqlite3_stmt, void (*)(sqlite3_stmt*)> statement{
      nullptr, [](sqlite3_stmt* done) { sqlite3_finalize(done); }};
  std::vector<ColumnSpec> layout;  // of the result
  size_t rows = 0;                 // of the last one
  std::uint64_t lastUse = 0;
  std::vector<BoundParameter> parameters;
  StatementPattern pattern;
  std::array<PreparedStatement*, 2> followers{};  // what came after it, the latest first

  explicit PreparedStatement(StatementPattern itsPattern) : pattern(std::move(itsPattern)) {}
  void follow(PreparedStatement* next) {
    if (followers[0] == next) return;
    followers[1] = std::exchange(followers[0], next);
  }
};

}  // namespace ondrel::sql
