#pragma once

#include <span>
#include <string_view>

namespace ondrel::sql {

// The SQL texts of the folder database/, which the build puts into the program.
std::string_view schemaText();
std::span<const std::string_view> sampleTexts();

}  // namespace ondrel::sql
