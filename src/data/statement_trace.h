#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/card_masking.h"

namespace ondrel {

// The statements that went to the database, as sent but with card data masked, with the transaction steps
// between them as "begin", "commit" and "close" in angle brackets. Off until somebody wants to read it.
class StatementTrace {
 public:
  void start() { on_ = true; }
  void stop() { on_ = false; }
  bool isOn() const { return on_; }
  void add(std::string_view statement) {
    if (on_) statements_.push_back(maskCardData(statement));
  }
  // The statements since the last call.
  std::vector<std::string> take() { return std::exchange(statements_, {}); }

 private:
  bool on_ = false;
  std::vector<std::string> statements_;
};

}  // namespace ondrel
