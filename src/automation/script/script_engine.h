#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "automation/script/script_function.h"
#include "base/variant.h"
#include "data/apartment.h"

namespace ondrel {

namespace script {
struct State;
}

// An error that a script did not catch.
struct ScriptFailure {
  std::optional<int> number;  // none for an error of the language itself
  std::string source;
  std::string description;
  std::string file;  // where it arose; empty when the script threw something that knows no position
  int line = 0;

  // "error 13: Type mismatch (counter.js:12)"
  std::string text() const;
};

struct ScriptOutcome {
  int exitCode = 0;  // of quit; 1 after a failure
  bool hasQuit = false;
  std::optional<ScriptFailure> failure;
};

// ECMAScript 5 with the library's objects in it. One engine serves one page or one script, on one thread at
// a time, inside its apartment.
//
// | in the library           | in a script                                                        |
// |--------------------------|--------------------------------------------------------------------|
// | Empty, Null, no object   | undefined, null, null                                              |
// | Boolean, text            | Boolean, string                                                    |
// | Long, Double             | number; a whole number of 32 bits becomes a Long, others a Double  |
// | Date                     | Date                                                               |
// | array                    | Array                                                              |
// | other objects            | an object with the members of its class, names in any case; one    |
// |                          | and the same for one object                                        |
//
// A property with arguments reads as a call, item(key), and is put by a call with the value behind the
// arguments, item(key, value). An object whose class has an item is called like it: fields("quantity").
// In a joining or a sum an object stands for its default value.
//
// Globals: CreateObject(name); ByRef(value), a box for an argument by reference, read `value` of it
// afterwards; print(...); quit(code), after which no library call succeeds any more.
//
// Object.getOwnPropertyNames gives the members of an object. A library error arrives as an Error with
// `number`, `source`, `description`; an unknown member is 438.
class ScriptEngine {
 public:
  using Printer = ScriptPrinter;
  using Function = ScriptFunction;

  static constexpr size_t kUsualMemoryLimit = size_t{256} << 20;

  // `print` takes what the script prints, line ends included. A script that wants more memory than the limit,
  // in bytes, gets an error, so that a runaway one does not take the host with it.
  ScriptEngine(ApartmentRef apartment, Printer print, size_t memoryLimit = kUsualMemoryLimit);
  ~ScriptEngine();
  ScriptEngine(const ScriptEngine&) = delete;
  ScriptEngine& operator=(const ScriptEngine&) = delete;

  // Sets a global of the script.
  void define(std::string_view name, const Variant& value);
  // Sets a global to a function of the host. It may run another script in this engine.
  void defineFunction(std::string_view name, Function function);
  // Runs a script; `fileName` stands in the positions of errors. Globals stay from run to run.
  ScriptOutcome run(std::string_view source, std::string_view fileName);

  // Makes every further library call and allocation of the script fail, for good. The only operation that
  // another thread may call. A loop that does neither goes on: the engine has no way to break it.
  void interrupt() noexcept;
  // Time spent in library calls since the engine was made; functions of the host are not counted.
  std::chrono::nanoseconds libraryTime() const noexcept;
  // Bytes that the script's own values take.
  size_t memoryInUse() const noexcept;

 private:
  std::unique_ptr<script::State> state_;
};

}  // namespace ondrel
