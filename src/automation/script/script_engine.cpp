#include "automation/script/script_engine.h"

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <new>
#include <utility>

#include "automation/script/script_state.h"

namespace ondrel {

using script::NativeCall;
using State = ScriptEngine::State;

namespace {

constexpr int kFailureExitCode = 1;
// The platform's number for a failure inside, which no table names.
constexpr auto kInternalError = static_cast<ErrorNumber>(51);

void* allocate(void* udata, duk_size_t size) {
  State& state = *static_cast<State*>(udata);
  if (size == 0 || state.isInterrupted || state.memoryInUse + size > state.memoryLimit) return nullptr;
  void* block = std::malloc(size);
  if (block) state.memoryInUse += malloc_usable_size(block);
  return block;
}

void release(void* udata, void* block) {
  if (!block) return;
  static_cast<State*>(udata)->memoryInUse -= malloc_usable_size(block);
  std::free(block);
}

void* reallocate(void* udata, void* block, duk_size_t size) {
  if (!block) return allocate(udata, size);
  if (size == 0) {
    release(udata, block);
    return nullptr;
  }
  State& state = *static_cast<State*>(udata);
  const size_t before = malloc_usable_size(block);
  const bool isTooMuch = state.isInterrupted || state.memoryInUse + size > state.memoryLimit + before;
  if (size > before && isTooMuch) return nullptr;
  void* moved = std::realloc(block, size);
  if (moved) state.memoryInUse += malloc_usable_size(moved) - before;
  return moved;
}

void onFatal(void*, const char* message) {
  std::fprintf(stderr, "script engine: %s\n", message ? message : "fatal error");
  std::abort();
}

// ---- functions that run under duk_safe_call

duk_ret_t install(duk_context* context, void*) {
  script::installValues(context);
  script::installObjects(context);
  script::installGlobals(context);
  return 0;
}

struct Global {
  State& state;
  std::string_view name;
  const Variant& value;
};

struct GlobalFunction {
  ScriptEngine::Function* function;
  std::string_view name;
};

duk_ret_t defineGlobalFunction(duk_context* context, void* udata) {
  const GlobalFunction& global = *static_cast<GlobalFunction*>(udata);
  script::pushHostFunction(context, global.function);
  duk_put_global_lstring(context, global.name.data(), global.name.size());
  return 0;
}

duk_ret_t defineGlobal(duk_context* context, void* udata) {
  const Global& global = *static_cast<Global*>(udata);
  script::pushValue(context, global.state, global.value);
  duk_put_global_lstring(context, global.name.data(), global.name.size());
  return 0;
}

struct Source {
  std::string_view text;
  std::string_view fileName;
};

duk_ret_t compileAndRun(duk_context* context, void* udata) {
  const Source& source = *static_cast<Source*>(udata);
  duk_push_lstring(context, source.fileName.data(), source.fileName.size());
  duk_compile_lstring_filename(context, DUK_COMPILE_SHEBANG, source.text.data(), source.text.size());
  duk_call(context, 0);
  return 0;
}

std::string textOfProperty(duk_context* context, duk_idx_t object, const char* name) {
  duk_get_prop_string(context, object, name);
  if (!duk_is_string(context, -1)) duk_safe_to_string(context, -1);
  return script::textAt(context, -1);
}

// Takes apart what a script threw; it stands on top of the stack.
duk_ret_t describe(duk_context* context, void* udata) {
  ScriptFailure& failure = *static_cast<ScriptFailure*>(udata);
  const duk_idx_t thrown = duk_get_top_index(context);
  if (duk_is_error(context, thrown)) {
    failure.file = textOfProperty(context, thrown, "fileName");
    duk_get_prop_string(context, thrown, "lineNumber");
    failure.line = duk_get_int_default(context, -1, 0);
    duk_get_prop_string(context, thrown, "number");
    if (duk_is_number(context, -1)) {
      failure.number = duk_get_int(context, -1);
      failure.source = textOfProperty(context, thrown, "source");
      failure.description = textOfProperty(
          context, thrown, duk_has_prop_string(context, thrown, "description") ? "description" : "message");
      return 0;
    }
  }
  duk_safe_to_string(context, thrown);
  failure.description = script::textAt(context, thrown);
  return 0;
}

// ---- the three steps of a native call

struct Reading {
  NativeCall& call;
  script::Reader read;
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

void runLibrary(NativeCall& call, script::LibraryCode code) {
  if (call.hostFunction) return code(call);
  const Stopwatch stopwatch(call.state);
  code(call);
}

void libraryStep(NativeCall& call, script::LibraryCode code) {
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
  script::writeBoxes(context, call);
  if (call.failure)
    script::pushError(context, call.failure->number(), call.failure->source(), call.failure->what());
  else if (call.function.member)
    script::pushMemberFunction(context, call.state, call.function);
  else
    script::pushValue(context, call.state, call.result);
  return 1;
}

}  // namespace

namespace script {

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

}  // namespace script

std::string ScriptFailure::text() const {
  std::string result = number ? "error " + std::to_string(*number) + ": " : std::string();
  result += description;
  if (!file.empty()) result += " (" + file + ":" + std::to_string(line) + ")";
  return result;
}

ScriptEngine::ScriptEngine(ApartmentRef apartment, Printer print, size_t memoryLimit)
    : state_(std::make_unique<State>()) {
  state_->memoryLimit = memoryLimit;
  state_->apartment = std::move(apartment);
  state_->print = std::move(print);
  state_->context = duk_create_heap(allocate, reallocate, release, state_.get(), onFatal);
  if (!state_->context || duk_safe_call(state_->context, install, nullptr, 0, 1) != DUK_EXEC_SUCCESS)
    throw std::bad_alloc();
  duk_pop(state_->context);
}

ScriptEngine::~ScriptEngine() {
  const ApartmentScope scope(state_->apartment);
  state_->isInterrupted = false;  // what gives the objects back may allocate
  duk_destroy_heap(state_->context);
}

void ScriptEngine::define(std::string_view name, const Variant& value) {
  Global global{*state_, name, value};
  const bool isDefined = duk_safe_call(state_->context, defineGlobal, &global, 0, 1) == DUK_EXEC_SUCCESS;
  duk_pop(state_->context);
  if (!isDefined)
    throw Error(kInternalError, "Script", "The global '" + std::string(name) + "' could not be defined");
}

void ScriptEngine::defineFunction(std::string_view name, Function function) {
  state_->functions.push_back(std::make_unique<Function>(std::move(function)));
  GlobalFunction global{state_->functions.back().get(), name};
  const bool isDefined =
      duk_safe_call(state_->context, defineGlobalFunction, &global, 0, 1) == DUK_EXEC_SUCCESS;
  duk_pop(state_->context);
  if (!isDefined)
    throw Error(kInternalError, "Script", "The global '" + std::string(name) + "' could not be defined");
}

void ScriptEngine::interrupt() noexcept {
  state_->isInterrupted = true;
}

std::chrono::nanoseconds ScriptEngine::libraryTime() const noexcept {
  return state_->libraryTime;
}

size_t ScriptEngine::memoryInUse() const noexcept {
  return state_->memoryInUse;
}

ScriptOutcome ScriptEngine::run(std::string_view source, std::string_view fileName) {
  const ApartmentScope scope(state_->apartment);
  duk_context* context = state_->context;
  Source script{source, fileName};
  ScriptOutcome outcome;
  const bool hasFailed = duk_safe_call(context, compileAndRun, &script, 0, 1) != DUK_EXEC_SUCCESS;
  outcome.hasQuit = state_->hasQuit;
  if (outcome.hasQuit) {
    outcome.exitCode = state_->exitCode;
    duk_pop(context);
  } else if (hasFailed) {
    outcome.exitCode = kFailureExitCode;
    duk_safe_call(context, describe, &outcome.failure.emplace(), 1, 1);
    duk_pop(context);
  } else {
    duk_pop(context);
  }
  return outcome;
}

}  // namespace ondrel
