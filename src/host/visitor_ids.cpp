#include "host/visitor_ids.h"

namespace ondrel {
namespace {

constexpr size_t kRandomDigits = 20, kProofDigits = 12;  // 32 as of any id
// Beyond this the ids that are out count no more.
constexpr size_t kMostTaken = 10'000;

}  // namespace

std::string VisitorIds::make() {
  const std::lock_guard lock(mutex_);
  return withProof(randomId().substr(0, kRandomDigits));
}

bool VisitorIds::isOut(std::string_view id) {
  const std::lock_guard lock(mutex_);
  return isRandomId(id) && isSameSecret(id, withProof(id.substr(0, kRandomDigits))) && !taken_.contains(id);
}

void VisitorIds::take(std::string_view id) {
  const std::lock_guard lock(mutex_);
  if (taken_.size() >= kMostTaken) {
    taken_.clear();
    secret_ = randomId();
  }
  taken_.emplace(id);
}

std::string VisitorIds::withProof(std::string_view random) const {
  const std::string id(random);
  return id + digestOf("visitor " + secret_, id).substr(0, kProofDigits);
}

}  // namespace ondrel
