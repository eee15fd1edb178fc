#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/lexer.h"

namespace ondrel {

// A statement text taken apart: its literals, in order, and what is left, in which a mark stands for each
// literal and one blank parts the tokens. Statements that differ only in their values have one key.
class StatementShape {
 public:
  static constexpr char kNumberMark = '\1';
  static constexpr char kTextMark = '\2';

  // Replaces the contents; keeps the memory of the statement before.
  void assign(std::string_view statement);

  // Valid until the next statement.
  std::string_view key() const { return {buffer_.data(), keySize_}; }
  // Views into the statement.
  const std::vector<Token>& literals() const { return literals_; }

 private:
  std::vector<char> buffer_;
  size_t keySize_ = 0;
  std::vector<Token> literals_;
};

}  // namespace ondrel
