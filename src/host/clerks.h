#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/page_engine.h"

namespace ondrel {

// The clerks who may sign in, from a file with a line for each: id, name and hashed PIN, parted by tabs. It is
// read at every sign-in, so that a change needs no restart. Safe to share between threads.
class Clerks {
 public:
  // Without a file nobody can sign in.
  explicit Clerks(std::filesystem::path file) : file_(std::move(file)) {}

  enum class Verdict { Right, Wrong, Wait };
  // Five wrong tries for a clerk or from an address bar both for a minute, each further five for twice as long,
  // up to half an hour. A right try from an address that is not barred clears its account. A clerk at an address
  // where that clerk has signed in before has an account apart, so that nobody elsewhere can shut a clerk out.
  Verdict check(const std::string& address, const std::string& id, const std::string& pin, Clerk& clerk);

  // Enters a clerk in a file, in place of one with the same id; only the owner can read it. Error 5 when the id
  // or the name cannot stand in a line or the PIN has fewer than four characters.
  static void enter(const std::filesystem::path& file, const Clerk& clerk, const std::string& pin);

 private:
  struct Tries {
    int wrong = 0;
    std::chrono::steady_clock::time_point barredUntil;
  };

  bool isKnown(const std::string& pair);
  void remember(const std::string& pair);
  bool isBarred(const std::string& key);
  void count(const std::string& key, bool isRight);

  std::filesystem::path file_;
  std::mutex mutex_;
  std::map<std::string, Tries> tries_;
  std::set<std::string> known_;  // clerks at addresses
};

}  // namespace ondrel
