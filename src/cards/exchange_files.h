#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "data/apartment.h"

namespace ondrel {

// Between two looks at a file.
inline constexpr std::chrono::milliseconds kLookEvery{500};

// Whole seconds from `start` to now on the apartment's clock.
long long secondsSince(Date start, Apartment& apartment);

// What the file holds now; "" without one. More than 64 MB are cut off.
std::string readAnswer(Apartment& apartment, std::string_view path);

// Reads a file that another program may still be writing. It is taken
//
// | when                                             | because                                  |
// |--------------------------------------------------|------------------------------------------|
// | the text says so itself, by `isComplete`         | nothing can follow                       |
// | it has text that stayed the same for two seconds | the writer ends its files without a mark |
//
// Text that may yet settle is looked at again every 500 ms. Without such text `waitForNextLook` waits for
// as long as it likes and says whether there is another look; on False the result is nothing.
struct AnswerRules {
  std::function<bool(std::string_view text)> isComplete;
  // Text that can be no whole answer however long it stands.
  std::function<bool(std::string_view text)> isOpenEnded;
};
std::optional<std::string> readSettledFile(Apartment& apartment, std::string_view path,
                                           const AnswerRules& rules,
                                           const std::function<bool()>& waitForNextLook);

// Waits in rounds of 5 seconds until the file is gone. False when it is still there after 11 of them.
bool waitUntilGone(Apartment& apartment, std::string_view path);

// Writes `text` to `draft` and renames that to `finished`, so that another program sees all of it or nothing.
// After an error there is no draft either.
void writeThenRename(const Files& files, std::string_view text, const std::string& draft,
                     const std::string& finished);

// Removes the drafts that a sudden end left under the ids of transactions; they hold card numbers. Those of the last
// minute may yet be finished. Gives their number.
int clearUnfinishedRequests(const Files& files, std::string_view folder);

}  // namespace ondrel
