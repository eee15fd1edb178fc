#include "automation/script/script_engine.h"

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <new>
#include <utility>

#include "automation/script/script_state.h"

namespace ondrel {

using script::kInternalError;
using script::State;

namespace {

constexpr int kFailureExitCode = 1;

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
  ScriptFunction* function;
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

}  // namespace

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
