#include <algorithm>
#include <array>

#include "automation/script/script_state.h"
#include "base/text.h"

namespace ondrel::script {
namespace {

constexpr const char* kHandlerKey = DUK_HIDDEN_SYMBOL("handler");
constexpr const char* kFinalizerKey = DUK_HIDDEN_SYMBOL("finalizer");
constexpr const char* kFunctionsKey = DUK_HIDDEN_SYMBOL("functions");

// The value that stands for an object in a joining or a sum, where its class has one.
const Member* plainDefault(const ClassTable& table) {
  const Member* member = table.defaultMember();
  const bool isValue = member && member->parameters.empty() && member->resultType != AutomationType::Object;
  return isValue ? member : nullptr;
}

Variant valueOfObject(const ObjectRef& self) {
  const ClassTable& table = classTableOf(*self);
  const Member* member = plainDefault(table);
  return member ? callMember(table, self, *member) : Variant(self);
}

// The language makes text of any plain value itself.
Variant textOfObject(const ObjectRef& self) {
  const Variant value = valueOfObject(self);
  if (value.isObject()) return "[object " + std::string(self->className()) + "]";
  return value.kind() == Variant::Kind::Date ? Variant(value.toText()) : value;
}

// What the language itself asks of every object.
const ClassTable& anyObjectClass() {
  // clang-format off
  static const ClassTable table("Object", {
      method("toString", textOfObject),
      method("valueOf", valueOfObject),
  });
  // clang-format on
  return table;
}

// Asked for by the language where an object is turned into JSON; a class that lacks it has none.
constexpr std::string_view kJsonHook = "toJSON";

bool isFunction(const Member& member) {
  return member.kind == MemberKind::Method || !member.parameters.empty();
}

// ---- traps of the proxies: (target, key, ...)

void readKey(duk_context* context, NativeCall& call) {
  call.self = objectAt(context, 0);
  if (duk_is_symbol(context, 1)) return;
  duk_size_t length = 0;
  const char* name = duk_to_lstring(context, 1, &length);
  call.name = std::string_view(name, length);
}

void getMember(NativeCall& call) {
  const ClassTable& table = *call.self->table;
  if (call.name.empty() || (call.name == kJsonHook && !table.find(kJsonHook))) return;
  const Member* member = table.find(call.name);
  if (!member) {
    if (const Member* common = anyObjectClass().find(call.name)) {
      call.function = {&anyObjectClass(), common};
      return;
    }
    member = &table.member(call.name);
  }
  if (isFunction(*member))
    call.function = {&table, member};
  else
    call.result = callMember(table, call.self->object, *member);
}

void readKeyAndValue(duk_context* context, NativeCall& call) {
  readKey(context, call);
  call.arguments.resize(1);
  readValue(context, 2, call.arguments[0]);
}

void setMember(NativeCall& call) {
  const ClassTable& table = *call.self->table;
  putMember(table, call.self->object, table.member(call.name), call.arguments[0]);
  call.result = true;
}

void hasMember(NativeCall& call) {
  call.result = call.self->table->find(call.name) != nullptr;
}

void listMembers(NativeCall& call) {
  auto names = std::make_shared<Array>();
  for (const Member& member : call.self->table->members()) names->items.emplace_back(member.name);
  call.result = Variant(ArrayRef(names));
}

void readTarget(duk_context* context, NativeCall& call) {
  call.self = objectAt(context, 0);
}

// ---- functions

void readMethodCall(duk_context* context, NativeCall& call) {
  duk_push_this(context);
  call.self = objectAt(context, -1);
  duk_push_current_function(context);
  duk_get_prop_string(context, -1, kTableKey);
  duk_get_prop_string(context, -2, kMemberKey);
  call.function.table = static_cast<const ClassTable*>(duk_get_pointer(context, -2));
  call.function.member = static_cast<const Member*>(duk_get_pointer(context, -1));
  duk_pop_n(context, 4);
  readArguments(context, call, 0);
}

// One argument more than a property takes is the value that it is put to.
void callFunction(NativeCall& call) {
  const BoundMember bound = std::exchange(call.function, {});
  if (!call.self || (bound.table != call.self->table && bound.table != &anyObjectClass()))
    throw Error(ErrorNumber::ObjectRequired, "Script",
                "Object required: '" + std::string(bound.member->name) + "'");
  const Arguments arguments(call.arguments);
  const size_t parameters = bound.member->parameters.size();
  const bool isPut = bound.member->kind == MemberKind::Property && arguments.size() == parameters + 1;
  if (isPut)
    putMember(*bound.table, call.self->object, *bound.member, arguments.back(), arguments.first(parameters));
  else
    call.result = callMember(*bound.table, call.self->object, *bound.member, arguments);
}

void readDefaultCall(duk_context* context, NativeCall& call) {
  duk_push_current_function(context);
  call.self = objectAt(context, -1);
  duk_pop(context);
  readArguments(context, call, 0);
}

// rs("quantity") is rs.Fields("quantity"): a default member may lead to the next.
void callDefault(NativeCall& call) {
  call.result = callMember(*call.self->table, call.self->object, *call.self->table->defaultMember(),
                           Arguments(call.arguments));
}

bool isCallable(const ClassTable& table) {
  return table.defaultMember() != nullptr && !plainDefault(table);
}

// ---- life of the objects

duk_ret_t finalizeObject(duk_context* context) {
  duk_get_prop_string(context, 0, kObjectKey);
  auto* known = static_cast<KnownObject*>(duk_get_pointer(context, -1));
  duk_push_pointer(context, nullptr);
  duk_put_prop_string(context, 0, kObjectKey);
  delete known;
  return 0;
}

const ClassTable* tableOf(const Variant& value) noexcept {
  try {
    return &classTableOf(*value.toObject());
  } catch (const std::exception&) {
    return nullptr;
  }
}

// What a proxy stands before: a function where the object can be called, else an object.
void pushTarget(duk_context* context, const ClassTable& table) {
  if (isCallable(table))
    duk_push_c_function(context, native<readDefaultCall, callDefault>, DUK_VARARGS);
  else
    duk_push_object(context);
  duk_push_pointer(context, nullptr);
  duk_put_prop_string(context, -2, kObjectKey);
  pushKept(context, kFinalizerKey);
  duk_set_finalizer(context, -2);
}

}  // namespace

const KnownObject* objectAt(duk_context* context, duk_idx_t index) {
  if (!duk_is_object(context, index)) return nullptr;
  duk_get_prop_string(context, index, kObjectKey);
  const auto* known = static_cast<const KnownObject*>(duk_get_pointer(context, -1));
  duk_pop(context);
  return known;
}

void pushObject(duk_context* context, const Variant& value) {
  duk_require_stack(context, 8);
  const ClassTable* table = tableOf(value);
  if (!table) raise(context, ErrorNumber::NoSuchMember, "Object doesn't support this property or method");
  pushTarget(context, *table);
  duk_push_pointer(context, new KnownObject{value.toObject(), table});
  duk_put_prop_string(context, -2, kObjectKey);
  pushKept(context, kHandlerKey);
  duk_push_proxy(context, 0);
}

void pushMemberFunction(duk_context* context, State& state, BoundMember bound) {
  if (const auto made = state.memberFunctions.find(bound.member); made != state.memberFunctions.end()) {
    duk_push_heapptr(context, made->second);
    return;
  }
  duk_push_c_function(context, native<readMethodCall, callFunction>, DUK_VARARGS);
  duk_push_pointer(context, const_cast<ClassTable*>(bound.table));
  duk_put_prop_string(context, -2, kTableKey);
  duk_push_pointer(context, const_cast<Member*>(bound.member));
  duk_put_prop_string(context, -2, kMemberKey);
  pushKept(context, kFunctionsKey);
  duk_dup(context, -2);
  duk_put_prop_index(context, -2, static_cast<duk_uarridx_t>(state.memberFunctions.size()));
  duk_pop(context);
  state.memberFunctions.emplace(bound.member, duk_get_heapptr(context, -1));
}

void installObjects(duk_context* context) {
  struct Trap {
    const char* name;
    duk_c_function function;
    duk_idx_t arguments;
  };
  // clang-format off
  constexpr std::array<Trap, 4> traps = {{
      {"get",     native<readKey, getMember>,         2},
      {"set",     native<readKeyAndValue, setMember>, 3},
      {"has",     native<readKey, hasMember>,         2},
      {"ownKeys", native<readTarget, listMembers>,    1},
  }};
  // clang-format on
  duk_push_object(context);
  for (const Trap& trap : traps) {
    duk_push_c_function(context, trap.function, trap.arguments);
    duk_put_prop_string(context, -2, trap.name);
  }
  keep(context, kHandlerKey);
  duk_push_c_function(context, finalizeObject, 2);
  keep(context, kFinalizerKey);
  duk_push_array(context);
  keep(context, kFunctionsKey);
}

}  // namespace ondrel::script
