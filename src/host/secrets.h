#pragma once

#include <string>
#include <string_view>

namespace ondrel {

// 128 random bits as 32 hexadecimal digits.
std::string randomId();
bool isRandomId(std::string_view text);

// SHA-256 of `purpose` and `secret` as 64 hexadecimal digits: a name for a secret that does not give it away.
// Another purpose gives another name.
std::string digestOf(std::string_view purpose, std::string_view secret);

// Equality in a time that does not tell where two texts differ.
bool isSameSecret(std::string_view a, std::string_view b);

// A clerk's PIN as it may be stored: salted, and slow to try out. Takes some hundredths of a second.
std::string hashPin(std::string_view pin);
// False as well when `hash` was not made by hashPin.
bool isPinOf(std::string_view pin, std::string_view hash);

}  // namespace ondrel
