#pragma once

#include <string>
#include <string_view>

namespace ondrel {

// The platform's texts are sequences of 16-bit units. A unit that is half of a pair without its other half is
// kept in our text as the three bytes that its number makes, so that both directions lose nothing.
std::u16string toUtf16(std::string_view text);
std::string fromUtf16(std::u16string_view units);

}  // namespace ondrel
