#pragma once

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "cards/credit_card_processing.h"
#include "support/error_of.h"
#include "support/folders.h"
#include "support/store_fixture.h"
#include "support/temporary_folder.h"

namespace ondrel {

// Jumps by what it is told to sleep, and really waits a part of that where another process must get on.
class JumpingClock : public FixedClock {
 public:
  using FixedClock::FixedClock;
  void sleep(std::chrono::milliseconds duration) override {
    FixedClock::sleep(duration);
    if (haste > 0) std::this_thread::sleep_for(duration / haste);
  }
  int haste = 0;  // times faster than life; 0 does not wait at all
};

// A store with the card program's folder C:\xc\, which lies in a folder of the test's own.
class CardTest : public StoreTest {
 protected:
  CardTest() {
    std::filesystem::create_directories(folder);
    apartment->files = Files(drives);
    apartment->clock = cardClock;
    cards.setXChargeDirectory("C:/xc");
    cards.setXChargeTimeout(60);
  }
  ~CardTest() override {
    if (simulator_ <= 0) return;
    ::kill(simulator_, SIGKILL);
    ::waitpid(simulator_, nullptr, 0);
  }

  // Starts the card program; see its table of amounts. Sleeps are a hundred times shorter from here on.
  void startSimulator(const char* delayMs = "5") {
    cardClock->haste = 100;
    const std::string program = buildPath("card_simulator");
    simulator_ = ::fork();
    if (simulator_ != 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);  // it does not outlive a test that crashes
    ::execl(program.c_str(), "card_simulator", folder.c_str(), delayMs, nullptr);
    ::_exit(127);
  }
  CreditCardFieldsRef visa() const {
    auto fields = std::make_shared<CreditCardFields>();
    fields->accountnumber = "4111111111111111";
    fields->expirationyear = 28;
    fields->expirationmonth = 12;
    fields->firstname = "John";
    fields->lastname = "O'Hara";
    return fields;
  }
  std::string hostFile(const std::string& shopPath) const { return apartment->files.hostPath(shopPath); }
  std::string content(const std::string& shopPath) const {
    std::ifstream file(hostFile(shopPath), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void put(const std::string& shopPath, const std::string& text) const {
    std::ofstream(hostFile(shopPath), std::ios::binary) << text;
  }
  bool isThere(const std::string& shopPath) const { return std::filesystem::exists(hostFile(shopPath)); }

  std::string path(const std::string& guid, const char* suffix) const { return "C:\\xc\\" + guid + suffix; }
  double secondsSince(Date start) const { return (cardClock->now().serial() - start.serial()) * 86400; }

  TemporaryFolder temporary;
  std::string drives = temporary.path;
  std::filesystem::path folder = drives + "/c/xc";
  std::shared_ptr<JumpingClock> cardClock = std::make_shared<JumpingClock>(Date::of(2026, 11, 24, 10, 30));
  CreditCardProcessing cards;

 private:
  pid_t simulator_ = 0;
};

}  // namespace ondrel
