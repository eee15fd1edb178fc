#include "cards/exchange_files.h"

#include <chrono>
#include <cmath>
#include <filesystem>

#include "base/ignore_errors.h"
#include "platform/guid.h"

namespace ondrel {
namespace {

constexpr int kQuietLooks = 4;
constexpr size_t kLargestAnswer = size_t{64} << 20;
constexpr std::chrono::milliseconds kGoneRound{5000};
constexpr int kMostRounds = 10;
constexpr double kSecondsPerDay = 86400;
constexpr double kRoundingSeconds = 0.001;  // of a moment held as a fraction of a day

constexpr std::chrono::minutes kDraftTime{1};

}  // namespace

long long secondsSince(Date start, Apartment& apartment) {
  const double days = apartment.clock->now().serial() - start.serial();
  return std::llround(std::floor(days * kSecondsPerDay + kRoundingSeconds));
}

std::string readAnswer(Apartment& apartment, std::string_view path) {
  return apartment.files.read(path, kLargestAnswer).value_or("");
}

std::optional<std::string> readSettledFile(Apartment& apartment, std::string_view path,
                                           const AnswerRules& rules,
                                           const std::function<bool()>& waitForNextLook) {
  std::string seen;
  for (int quiet = 0;;) {
    const std::string text = readAnswer(apartment, path);
    if (rules.isComplete(text)) return text;
    const bool canSettle = !text.empty() && !rules.isOpenEnded(text);
    quiet = canSettle && text == seen ? quiet + 1 : 0;
    if (quiet >= kQuietLooks) return text;
    seen = text;
    if (canSettle)
      apartment.clock->sleep(kLookEvery);
    else if (!waitForNextLook())
      return std::nullopt;
  }
}

bool waitUntilGone(Apartment& apartment, std::string_view path) {
  for (int rounds = 0; apartment.files.exists(path);) {
    apartment.clock->sleep(kGoneRound);
    if (++rounds > kMostRounds) return false;
  }
  return true;
}

void writeThenRename(const Files& files, std::string_view text, const std::string& draft,
                     const std::string& finished) {
  try {
    files.write(draft, text);
    files.rename(draft, finished);
  } catch (const Error&) {
    ignoreErrors([&] { files.remove(draft); });
    throw;
  }
}

int clearUnfinishedRequests(const Files& files, std::string_view folder) {
  using FileClock = std::filesystem::file_time_type::clock;
  int removed = 0;
  std::error_code error;
  const auto oldest = FileClock::now() - kDraftTime;
  for (const auto& entry : std::filesystem::directory_iterator(files.hostPath(folder), error))
    if (isGuid(entry.path().filename().string()) && entry.last_write_time(error) < oldest)
      removed += std::filesystem::remove(entry.path(), error) ? 1 : 0;
  return removed;
}

}  // namespace ondrel
