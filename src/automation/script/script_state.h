#pragma once

// Inside of the script engine; nothing outside this folder includes it.
//
// The engine unwinds its errors with longjmp, the library with C++ exceptions, and neither may cross frames
// of the other. So each native function has three steps:
//
//   1. read the arguments out of the script     under duk_safe_call, results kept by the NativeCall
//   2. run library code                         in C++ with everything caught
//   3. push the result or the error             under duk_safe_call
//
// and only when the NativeCall is gone does it return or throw. Functions that run under duk_safe_call take
// part in step 1 or 3: they hold no local with a destructor across an engine call.

#include <duktape.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "automation/dispatch/call.h"
#include "automation/script/script_function.h"
#include "data/apartment.h"

namespace ondrel {

// A member that a script takes as a function.
struct BoundMember {
  const ClassTable* table = nullptr;
  const Member* member = nullptr;
};

// What a script object holds of a library object; gone with the script object.
struct KnownObject {
  ObjectRef object;
  const ClassTable* table = nullptr;
};

namespace script {

struct State {
  ApartmentRef apartment;
  ScriptPrinter print;
  duk_context* context = nullptr;
  bool hasQuit = false;
  int exitCode = 0;
  size_t memoryInUse = 0;
  size_t memoryLimit = 0;
  // Set by another thread: from then on no allocation and no library call succeeds.
  std::atomic<bool> isInterrupted = false;
  // Spent in library calls so far.
  std::chrono::nanoseconds libraryTime{0};
  std::vector<std::unique_ptr<ScriptFunction>> functions;
  // Script functions made so far; the stash keeps them alive.
  std::unordered_map<const Member*, void*> memberFunctions;
};

// The platform's number for a failure inside, which no table names.
inline constexpr auto kInternalError = static_cast<ErrorNumber>(51);

// Hidden properties of script objects.
inline constexpr const char* kObjectKey = DUK_HIDDEN_SYMBOL("object");  // KnownObject
inline constexpr const char* kTableKey = DUK_HIDDEN_SYMBOL("table");    // ClassTable of a member function
inline constexpr const char* kMemberKey = DUK_HIDDEN_SYMBOL("member");  // Member of a member function
inline constexpr const char* kHostFunctionKey = DUK_HIDDEN_SYMBOL("host");
inline constexpr const char* kBoxKey = DUK_HIDDEN_SYMBOL("box");

// What a native call holds while it runs.
struct NativeCall {
  explicit NativeCall(State& owner) : state(owner) {}

  State& state;
  duk_idx_t firstArgument = 0;
  const KnownObject* self = nullptr;
  std::string_view name;  // of a member, where one is asked for by name; owned by the script's stack
  std::vector<Variant> arguments;
  std::vector<size_t> boxes;  // places of the arguments that are boxes
  Variant result;
  BoundMember function;  // the result where it is a function
  const ScriptFunction* hostFunction = nullptr;
  std::optional<Error> failure;
};

State& stateOf(duk_context* context);

// The library's part of a call; it may raise Error.
using LibraryCode = void (*)(NativeCall& call);
// Reads what a call needs from the engine's stack. Runs protected.
using Reader = void (*)(duk_context* context, NativeCall& call);

// The three steps; true with the result on the stack, false with the error on it.
bool runNative(duk_context* context, Reader read, LibraryCode code) noexcept;

template <Reader read, LibraryCode code>
duk_ret_t native(duk_context* context) {
  return runNative(context, read, code) ? 1 : duk_throw(context);
}

// ---- values: these run protected

// Sets `value` from the script's value at `index`. Raises error 13 for what has no counterpart.
void readValue(duk_context* context, duk_idx_t index, Variant& value, int depth = 0);
// The text at `index` as the library has it, and the moment of a Date there.
std::string textAt(duk_context* context, duk_idx_t index);
bool isDate(duk_context* context, duk_idx_t index);
Date dateAt(duk_context* context, duk_idx_t index);
void readArguments(duk_context* context, NativeCall& call, duk_idx_t first);
void writeBoxes(duk_context* context, NativeCall& call);
void pushValue(duk_context* context, State& state, const Variant& value);
void pushText(duk_context* context, std::string_view text);

// Values that the engine keeps for itself, out of reach of scripts. `keep` takes the top of the stack.
void keep(duk_context* context, const char* key);
void pushKept(duk_context* context, const char* key);

void pushError(duk_context* context, int number, std::string_view source, std::string_view description);
[[noreturn]] void raise(duk_context* context, ErrorNumber number, const char* description);

// ---- objects: these run protected

// `value` holds an object.
void pushObject(duk_context* context, const Variant& value);
void pushMemberFunction(duk_context* context, State& state, BoundMember bound);
// The library object at `index`, or nothing.
const KnownObject* objectAt(duk_context* context, duk_idx_t index);
void installObjects(duk_context* context);

// ---- globals

void installValues(duk_context* context);
void installGlobals(duk_context* context);
// Pushes a script function that calls `function`, which must live as long as the engine.
void pushHostFunction(duk_context* context, ScriptFunction* function);

}  // namespace script
}  // namespace ondrel
