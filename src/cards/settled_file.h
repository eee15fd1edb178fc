#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "data/apartment.h"

namespace ondrel {

// Whole seconds from `start` to now on the apartment's clock.
long long secondsSince(Date start, Apartment& apartment);

// Reads a file that another program may still be writing. It is taken
//
// | when                                             | because                                  |
// |--------------------------------------------------|------------------------------------------|
// | the text says so itself, by `isComplete`         | nothing can follow                       |
// | it has text that stayed the same for two seconds | the writer ends its files without a mark |
//
// Otherwise it looks again every 500 ms. Before each further look `mayWait` is asked, unless there is text
// that may yet settle; on False the result is nothing. At most 64 KB are read.
struct AnswerRules {
  std::function<bool(std::string_view text)> isComplete;
  // Text that can be no whole answer however long it stands.
  std::function<bool(std::string_view text)> isOpenEnded;
};
std::optional<std::string> readSettledFile(Apartment& apartment, std::string_view path,
                                           const AnswerRules& rules, const std::function<bool()>& mayWait);

}  // namespace ondrel
