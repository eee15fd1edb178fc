#include "data/odbc/timed_session.h"

#include <exception>
#include <type_traits>

namespace ondrel {
namespace {

constexpr std::string_view kNoAnswer = "Timeout expired: the server gives no answer";
constexpr std::string_view kNoAnswerToCommit =
    "Timeout expired: the server gives no answer to the commit, and it is not known whether it made it";

// What a call gives, alive as long as the call.
template <class Value>
struct Outcome {
  Value value{};
  std::exception_ptr failure;
};

}  // namespace

// ---- the limit

template <class Action>
auto TimedSession::within(Limit limit, std::string_view failure, Action action) {
  if (isGivenUp_) throw Error(kTimeoutExpired, kOdbcSource, kNoAnswer);
  using Result = std::invoke_result_t<Action>;
  if (!thread_) return action();
  const auto outcome = std::make_shared<Outcome<Result>>();
  const auto call = [outcome, action = std::move(action)]() mutable {
    try {
      outcome->value = action();
    } catch (...) {
      outcome->failure = std::current_exception();
    }
  };
  if (!thread_->run(call, limit)) {
    isGivenUp_ = true;
    throw Error(kTimeoutExpired, kOdbcSource, failure);
  }
  if (outcome->failure) std::rethrow_exception(outcome->failure);
  return std::move(outcome->value);
}

TimedSession::Limit TimedSession::limit() const {
  if (timeoutSeconds_ == 0) return std::nullopt;
  return std::chrono::seconds(timeoutSeconds_) + kOdbcGrace;
}

// ---- the calls

TimedSession::TimedSession(std::shared_ptr<const OdbcHandle> environment, const OdbcTarget& target) {
  if (target.isRemote) thread_ = std::make_unique<CallThread>();
  const Limit login = target.loginSeconds == 0 ? Limit() : std::chrono::seconds(target.loginSeconds);
  // The environment lives as long as a connection in it.
  session_ = within(login, "Cannot connect: the server gives no answer", [environment, target] {
    return std::shared_ptr<OdbcSession>(new OdbcSession(environment->get(), target),
                                        [environment](OdbcSession* session) { delete session; });
  });
}

TimedSession::~TimedSession() {
  if (isGivenUp_ || !thread_) return;
  thread_->run([session = std::move(session_)]() mutable { session = nullptr; }, kOdbcGrace);
}

void TimedSession::setTimeout(int seconds) {
  timeoutSeconds_ = seconds;
  if (!isGivenUp_) session_->setTimeout(seconds);
}

void TimedSession::begin() {
  within(limit(), kNoAnswer, [session = session_] { return session->begin(), true; });
}

void TimedSession::commit() {
  within(limit(), kNoAnswerToCommit, [session = session_] { return session->commit(), true; });
}

RecordsetRef TimedSession::run(std::string_view sql, bool fetch) {
  return within(limit(), kNoAnswer,
                [session = session_, text = std::string(sql), fetch] { return session->run(text, fetch); });
}

bool TimedSession::reset() {
  if (isGivenUp_) return false;
  timeoutSeconds_ = kOdbcTimeoutSeconds;
  return within(limit(), kNoAnswer, [session = session_] { return session->reset(); });
}

}  // namespace ondrel
