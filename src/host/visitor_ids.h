#pragma once

#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "host/secrets.h"

namespace ondrel {

// Ids for browsers that have been here once, of which the host keeps nothing: it knows its own by their second part.
// The session begins when one comes back, so that whoever only knocks takes no place. Safe to share between threads.
class VisitorIds {
 public:
  // A session's id that nobody has yet.
  std::string make();
  // True for one of them until it is taken: an id of a session that has ended begins no other.
  bool isOut(std::string_view id);
  void take(std::string_view id);

 private:
  std::string withProof(std::string_view random) const;

  std::mutex mutex_;
  std::string secret_ = randomId();
  std::set<std::string, std::less<>> taken_;
};

}  // namespace ondrel
