#include "cards/settled_file.h"

#include <chrono>
#include <cmath>

namespace ondrel {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLookEvery{500};
constexpr int kQuietLooks = 4;
constexpr size_t kLargestAnswer = 65536;
constexpr double kSecondsPerDay = 86400;
constexpr double kRoundingSeconds = 0.001;  // of a moment held as a fraction of a day

}  // namespace

long long secondsSince(Date start, Apartment& apartment) {
  const double days = apartment.clock->now().serial() - start.serial();
  return std::llround(std::floor(days * kSecondsPerDay + kRoundingSeconds));
}

std::optional<std::string> readSettledFile(Apartment& apartment, std::string_view path,
                                           const AnswerRules& rules, const std::function<bool()>& mayWait) {
  std::string seen;
  for (int quiet = 0;;) {
    const std::string text = apartment.files.read(path, kLargestAnswer).value_or("");
    if (rules.isComplete(text)) return text;
    const bool canSettle = !text.empty() && !rules.isOpenEnded(text);
    quiet = canSettle && text == seen ? quiet + 1 : 0;
    if (quiet >= kQuietLooks) return text;
    seen = text;
    apartment.clock->sleep(kLookEvery);
    if (!canSettle && !mayWait()) return std::nullopt;
  }
}

}  // namespace ondrel
