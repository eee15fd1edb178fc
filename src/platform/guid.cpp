#include "platform/guid.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "base/error.h"

namespace ondrel {

std::string newGuid() {
  std::array<std::uint8_t, 16> bytes{};
  if (::getentropy(bytes.data(), bytes.size()) != 0)
    throw Error(ErrorNumber::InvalidCall, "newGuid", "The host gives no random bytes");
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4: random
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
  std::string digits;
  for (const std::uint8_t byte : bytes) digits += fmt::format("{:02X}", byte);
  const std::string_view all = digits;
  return fmt::format("{{{}-{}-{}-{}-{}}}", all.substr(0, 8), all.substr(8, 4), all.substr(12, 4),
                     all.substr(16, 4), all.substr(20));
}

bool isGuid(std::string_view text) {
  constexpr std::string_view kShape = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
  return std::equal(text.begin(), text.end(), kShape.begin(), kShape.end(), [](char c, char shape) {
    return shape == 'x' ? (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') : c == shape;
  });
}

}  // namespace ondrel
