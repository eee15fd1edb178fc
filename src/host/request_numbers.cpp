#include "host/request_numbers.h"

#include "host/secrets.h"

namespace ondrel {
namespace {

constexpr size_t kMostAnswers = 64;
constexpr size_t kMostBytes = size_t{2} << 20;

}  // namespace

std::string RequestNumbers::fingerprintOf(const PageRequest& request) {
  return digestOf(request.path,
                  formText(request.query) + "\n" + formText(request.form) + "\n" + request.body);
}

const PageAnswer* RequestNumbers::find(const PageRequest& request) const {
  static const PageAnswer other = plainAnswer(422, "This request number belongs to another request.");
  for (const RememberedAnswer& known : answers_) {
    if (known.number != request.number) continue;
    const bool isSame = known.fingerprint.empty() || known.fingerprint == fingerprintOf(request);
    return isSame ? &known.answer : &other;
  }
  return nullptr;
}

void RequestNumbers::remember(const PageRequest& request, const PageAnswer& answer) {
  remember({request.number, fingerprintOf(request), answer});
}

void RequestNumbers::remember(RememberedAnswer remembered) {
  bytes_ += remembered.answer.body.size();
  answers_.push_back(std::move(remembered));
  while (answers_.size() > kMostAnswers || (bytes_ > kMostBytes && answers_.size() > 1)) {
    bytes_ -= answers_.front().answer.body.size();
    answers_.pop_front();
  }
}

}  // namespace ondrel
