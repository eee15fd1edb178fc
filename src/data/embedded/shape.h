#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/lexer.h"

namespace ondrel {

// A statement text taken apart: its literals, in order, and what is left, in which a mark stands for each
// literal and one blank parts the tokens. Statements that differ only in their values have one shape.
struct StatementShape {
  static constexpr char kNumberMark = '\1';
  static constexpr char kTextMark = '\2';

  std::string key;
  std::vector<Token> literals;

  // Replaces the contents; keeps the memory of the statement before.
  void assign(std::string_view statement);
};

}  // namespace ondrel
