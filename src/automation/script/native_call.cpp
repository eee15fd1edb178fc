// The three steps of a native call.

#include <new>
#include <utility>

#include "automation/script/script_state.h"

namespace ondrel::script {
namespace {

struct Reading {
  NativeCall& call;
  Reader read;
};

duk_ret_t readStep(duk_context* context, void* udata) {
  const Reading& reading = *static_cast<Reading*>(udata);
  reading.read(context, reading.call);
  return 0;
}

// Adds the time of a library call to the engine's account.
class Stopwatch {
 public:
  explicit Stopwatch(State& state) : state_(state), start_(std::chrono::steady_clock::now()) {}
  ~Stopwatch() { state_.libraryTime += std::chrono::steady_clock::now() - start_; }
  Stopwatch(const Stopwatch&) = delete;
  Stopwatch& operator=(const Stopwatch&) = delete;

 private:
  State& state_;
  std::chrono::steady_clock::time_point start_;
};

void runLibrary(NativeCall& call, LibraryCode code) {
  if (call.hostFunction) return code(call);
  const Stopwatch stopwatch(call.state);
  code(call);
}

void libraryStep(NativeCall& call, LibraryCode code) {
  try {
    if (call.state.hasQuit) return;
    if (call.state.isInterrupted) throw Error(kInternalError, "Script", "The script was interrupted");
    runLibrary(call, code);
  } catch (const Error& error) {
    call.failure = error;
  } catch (const std::bad_alloc&) {
    call.failure = Error(kInternalError, "Script", "Out of memory");
  } catch (const std::exception& exception) {
    call.failure = Error(kInternalError, "Script", std::string("Internal error: ") + exception.what());
  }
}

duk_ret_t answerStep(duk_context* context, void* udata) {
  NativeCall& call = *static_cast<NativeCall*>(udata);
  writeBoxes(context, call);
  if (call.failure)
    pushError(context, call.failure->number(), call.failure->source(), call.failure->what());
  else if (call.function.member)
    pushMemberFunction(context, call.state, call.function);
  else
    pushValue(context, call.state, call.result);
  return 1;
}

}  // namespace

State& stateOf(duk_context* context) {
  duk_memory_functions functions;
  duk_get_memory_functions(context, &functions);
  return *static_cast<State*>(functions.udata);
}

bool runNative(duk_context* context, Reader read, LibraryCode code) noexcept {
  NativeCall call(stateOf(context));
  Reading reading{call, read};
  if (duk_safe_call(context, readStep, &reading, 0, 1) != DUK_EXEC_SUCCESS) return false;
  duk_pop(context);
  libraryStep(call, code);
  if (call.state.hasQuit) call.failure = Error(ErrorNumber::InvalidCall, "Script", "The script has quit");
  if (duk_safe_call(context, answerStep, &call, 0, 1) != DUK_EXEC_SUCCESS) return false;
  return !call.failure;
}

}  // namespace ondrel::script
