#pragma once

#include <string>
#include <string_view>

namespace ondrel {

// A statement with the values masked that it binds to columns of card data: compared or set with "=", in the
// list of an insert, or as an argument of a procedure. Numbers of fewer than 12 digits, such as those of checks
// and of cards that the card program keeps, stay.
std::string maskCardColumns(std::string_view statement);

}  // namespace ondrel
