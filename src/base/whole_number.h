#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>

namespace ondrel {

// The one way from a double to a whole number, its fraction dropped. Nothing for what the type does not hold, NaN
// among it: a cast of such a value gives anything.
template <std::integral Whole>
std::optional<Whole> wholeNumber(double value) {
  using Limits = std::numeric_limits<Whole>;
  constexpr double kEnd = 2.0 * static_cast<double>(std::uint64_t{1} << (Limits::digits - 1));
  constexpr double kLeast = Limits::is_signed ? -kEnd : 0;
  const double whole = std::trunc(value);
  if (!(whole >= kLeast && whole < kEnd)) return std::nullopt;
  return static_cast<Whole>(whole);
}

}  // namespace ondrel
