#include "automation/class_factory.h"
#include "automation/script/script_state.h"

namespace ondrel::script {
namespace {

constexpr const char* kSource = "Script";

void readAll(duk_context* context, NativeCall& call) {
  readArguments(context, call, 0);
}

// Everything as the language turns it into text, but dates in the form that pages show.
void readTexts(duk_context* context, NativeCall& call) {
  call.arguments.resize(static_cast<size_t>(duk_get_top(context)));
  for (size_t k = 0; k < call.arguments.size(); ++k) {
    const auto index = static_cast<duk_idx_t>(k);
    if (isDate(context, index)) {
      call.arguments[k] = dateAt(context, index);
    } else {
      duk_to_string(context, index);
      call.arguments[k] = textAt(context, index);
    }
  }
}

void print(NativeCall& call) {
  std::string line;
  for (const Variant& argument : call.arguments) {
    if (&argument != call.arguments.data()) line += ' ';
    line += argument.toText();
  }
  call.state.print(line += '\n');
}

void create(NativeCall& call) {
  if (call.arguments.size() != 1)
    throw Error(ErrorNumber::WrongNumberOfArguments, kSource, "Wrong number of arguments: 'CreateObject'");
  call.result = createObject(call.arguments.front().toText());
}

// Scripts have no exit that nothing catches: what follows a caught quit fails at its next library call.
void quit(NativeCall& call) {
  const int code = call.arguments.empty() ? 0 : call.arguments.front().toLong();
  call.state.hasQuit = true;
  call.state.exitCode = code;
}

void readHostCall(duk_context* context, NativeCall& call) {
  duk_push_current_function(context);
  duk_get_prop_string(context, -1, kHostFunctionKey);
  call.hostFunction = static_cast<const ScriptFunction*>(duk_get_pointer(context, -1));
  duk_pop_2(context);
  readArguments(context, call, 0);
}

void callHost(NativeCall& call) {
  call.result = (*call.hostFunction)(call.arguments);
}

duk_ret_t makeBox(duk_context* context) {
  duk_push_object(context);
  duk_dup(context, 0);
  duk_put_prop_string(context, -2, "value");
  duk_push_true(context);
  duk_put_prop_string(context, -2, kBoxKey);
  return 1;
}

void installFunction(duk_context* context, const char* name, duk_c_function function, duk_idx_t arguments) {
  duk_push_c_function(context, function, arguments);
  duk_put_global_string(context, name);
}

}  // namespace

void pushHostFunction(duk_context* context, ScriptFunction* function) {
  duk_push_c_function(context, native<readHostCall, callHost>, DUK_VARARGS);
  duk_push_pointer(context, function);
  duk_put_prop_string(context, -2, kHostFunctionKey);
}

void installGlobals(duk_context* context) {
  installFunction(context, "print", native<readTexts, print>, DUK_VARARGS);
  installFunction(context, "CreateObject", native<readAll, create>, DUK_VARARGS);
  installFunction(context, "quit", native<readAll, quit>, DUK_VARARGS);
  installFunction(context, "ByRef", makeBox, 1);
  // The engine's own object: with it a script could reach behind the objects of the library.
  duk_push_global_object(context);
  duk_del_prop_string(context, -1, "Duktape");
  duk_pop(context);
}

}  // namespace ondrel::script
