#include "host/clerks.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "base/error.h"
#include "base/text.h"
#include "host/secrets.h"

namespace ondrel {
namespace {

constexpr int kTries = 5;
constexpr size_t kShortestPin = 4;
constexpr size_t kMostAccounts = 10'000;
constexpr std::chrono::minutes kFirstBar{1};
constexpr std::chrono::minutes kLongestBar{30};
constexpr mode_t kOwnerOnly = 0600;

struct ClerkLine {
  Clerk clerk;
  std::string hash;
};

std::vector<ClerkLine> read(const std::filesystem::path& path) {
  std::vector<ClerkLine> entries;
  std::ifstream stream(path);
  for (std::string line; std::getline(stream, line);) {
    const size_t first = line.find('\t');
    const size_t second = line.find('\t', first + 1);
    if (first == std::string::npos || second == std::string::npos) continue;
    entries.push_back(
        {{line.substr(0, first), line.substr(first + 1, second - first - 1)}, line.substr(second + 1)});
  }
  return entries;
}

bool fitsInLine(const std::string& text) {
  return !text.empty() &&
         std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

}  // namespace

Clerks::Verdict Clerks::check(const std::string& address, const std::string& id, const std::string& pin,
                              Clerk& clerk) {
  const std::string pair = id + " at " + address;
  std::vector<std::string> accounts = {"clerk " + id, "address " + address};
  if (isKnown(pair)) accounts = {pair};
  if (std::ranges::any_of(accounts, [this](const std::string& key) { return isBarred(key); }))
    return Verdict::Wait;
  const std::vector<ClerkLine> entries = read(file_);
  const auto entry =
      std::ranges::find_if(entries, [&](const ClerkLine& each) { return each.clerk.id == id; });
  // Somebody unknown takes as long as a wrong PIN.
  static const std::string nobody = hashPin(randomId());
  // Counted before it is known, so that many tries at once are not more than the same one after the other.
  for (const std::string& key : accounts) count(key, false);
  const bool isRight = isPinOf(pin, entry == entries.end() ? nobody : entry->hash) && entry != entries.end();
  if (!isRight) return Verdict::Wrong;
  for (const std::string& key : accounts) count(key, true);
  remember(pair);
  clerk = entry->clerk;
  return Verdict::Right;
}

bool Clerks::isKnown(const std::string& pair) {
  const std::lock_guard lock(mutex_);
  return known_.contains(pair);
}

void Clerks::remember(const std::string& pair) {
  const std::lock_guard lock(mutex_);
  if (known_.size() >= kMostAccounts) known_.clear();
  known_.insert(pair);
}

bool Clerks::isBarred(const std::string& key) {
  const std::lock_guard lock(mutex_);
  const auto tries = tries_.find(key);
  return tries != tries_.end() && std::chrono::steady_clock::now() < tries->second.barredUntil;
}

void Clerks::count(const std::string& key, bool isRight) {
  const std::lock_guard lock(mutex_);
  if (isRight) {
    tries_.erase(key);
    return;
  }
  if (tries_.size() >= kMostAccounts) tries_.clear();
  Tries& tries = tries_[key];
  if (++tries.wrong % kTries != 0) return;
  const auto bar = std::min(kFirstBar * (1 << std::min(tries.wrong / kTries - 1, 5)), kLongestBar);
  tries.barredUntil = std::chrono::steady_clock::now() + bar;
}

void Clerks::enter(const std::filesystem::path& file, const Clerk& clerk, const std::string& pin) {
  if (!fitsInLine(clerk.id) || !fitsInLine(clerk.name))
    throw Error(ErrorNumber::InvalidCall, "Host", "A clerk needs a number and a name");
  if (clerk.id.size() > 9 || !std::ranges::all_of(clerk.id, isDigit))
    throw Error(ErrorNumber::InvalidCall, "Host", "A clerk's number is that of an employee: digits only");
  if (pin.size() < kShortestPin)
    throw Error(ErrorNumber::InvalidCall, "Host", "A PIN has at least four characters");
  std::vector<ClerkLine> entries = read(file);
  std::erase_if(entries, [&](const ClerkLine& each) { return each.clerk.id == clerk.id; });
  entries.push_back({clerk, hashPin(pin)});
  const std::filesystem::path fresh = file.string() + ".new";
  const int created = ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kOwnerOnly);
  if (created >= 0) ::close(created);
  std::ofstream stream(fresh, std::ios::trunc);
  for (const ClerkLine& each : entries)
    stream << each.clerk.id << '\t' << each.clerk.name << '\t' << each.hash << '\n';
  stream.close();
  if (!stream || ::rename(fresh.c_str(), file.c_str()) != 0)
    throw Error(ErrorNumber::PathAccess, "Host", "The file of clerks cannot be written: " + file.string());
}

}  // namespace ondrel
