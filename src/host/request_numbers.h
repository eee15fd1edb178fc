#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "host/page_request.h"

namespace ondrel {

struct RememberedAnswer {
  std::string number;
  std::string fingerprint;  // of the request; empty where it is not known
  PageAnswer answer;
};

// The latest numbered requests of a session with their answers: what makes a button that is pressed twice,
// or a request that the network repeats, do its work once.
class RequestNumbers {
 public:
  // The answer that was given to the number, or one of status 422 when the number belonged to another
  // request. Nothing for a new number.
  const PageAnswer* find(const PageRequest& request) const;
  void remember(const PageRequest& request, const PageAnswer& answer);
  void remember(RememberedAnswer remembered);

  const std::deque<RememberedAnswer>& all() const { return answers_; }

  static std::string fingerprintOf(const PageRequest& request);

 private:
  std::deque<RememberedAnswer> answers_;
  size_t bytes_ = 0;
};

}  // namespace ondrel
