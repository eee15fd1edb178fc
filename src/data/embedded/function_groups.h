#pragma once

#include <span>

#include "data/embedded/functions.h"

namespace ondrel::sql {

std::span<const RegisteredFunction> dateFunctions();
std::span<const RegisteredFunction> textFunctions();
std::span<const RegisteredFunction> valueFunctions();
std::span<const RegisteredFunction> storeFunctions();

// The text of a moment in a style of convert.
std::string styledDate(Date moment, int style, bool dayOnly);

}  // namespace ondrel::sql
