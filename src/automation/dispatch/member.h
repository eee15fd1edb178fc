#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/dispatch/values.h"

namespace ondrel {

// The arguments of a call in order; those by reference are written back in place.
using Arguments = std::span<Variant>;

struct MemberParameter {
  std::string_view name;
  AutomationType type = AutomationType::Variant;
  bool byReference = false;
  // What a call without the argument takes; nothing for one that must be given.
  std::optional<Variant> defaultValue;

  bool isOptional() const { return defaultValue.has_value(); }
};

enum class MemberKind { Method, Property };

// One row of a class table.
struct Member {
  // A method's call or a property's get. The caller has checked the number of arguments.
  using Call = std::function<Variant(const ObjectRef& self, Arguments arguments, const Member& member)>;
  using Put = std::function<void(const ObjectRef& self, Arguments arguments, const Variant& value,
                                 const Member& member)>;

  std::string_view name;
  MemberKind kind = MemberKind::Method;
  std::vector<MemberParameter> parameters;
  AutomationType resultType = AutomationType::None;
  Call call;
  Put put;     // none for a method and a property that is read only
  int id = 0;  // a number above 0 that depends on the name alone

  size_t requiredArguments() const;
};

// An argument, or the value of a property put, that did not convert.
struct ConversionFailure {
  static constexpr size_t kPutValue = static_cast<size_t>(-1);
  size_t argument = 0;
  Error error;
};

// What a row says of a parameter: its name, and the default of one that may be left out.
struct ParameterRow {
  std::string_view name;
  std::optional<Variant> defaultValue = std::nullopt;
};
using ParameterRows = std::initializer_list<ParameterRow>;

namespace dispatch {

// How a callable takes its object and its parameters. A callable is a member function or a function whose
// first parameter is the object: `Class&`, or `const std::shared_ptr<Class>&` where it keeps the object.
template <class Callable>
struct Signature;
template <class C, class R, class... P>
struct Signature<R (C::*)(P...)> {
  using Self = C&;
  using Result = R;
  using Parameters = std::tuple<P...>;
};
template <class C, class R, class... P>
struct Signature<R (C::*)(P...) const> : Signature<R (C::*)(P...)> {};
template <class S, class R, class... P>
struct Signature<R (*)(S, P...)> {
  using Self = S;
  using Result = R;
  using Parameters = std::tuple<P...>;
};

template <class T>
inline constexpr bool takesPointer = false;
template <class Class>
inline constexpr bool takesPointer<std::shared_ptr<Class>> = true;

template <class Self>
decltype(auto) selfOf(const ObjectRef& object) {
  using Plain = std::remove_cvref_t<Self>;
  if constexpr (takesPointer<Plain>)
    return std::static_pointer_cast<typename Plain::element_type>(object);
  else
    return static_cast<Plain&>(*object);
}

template <class P>
inline constexpr bool isByReference =
    std::is_lvalue_reference_v<P> && !std::is_const_v<std::remove_reference_t<P>>;

template <class T>
T converted(const Variant& value, size_t argument) {
  try {
    return fromVariant<T>(value);
  } catch (const Error& error) {
    throw ConversionFailure{argument, error};
  }
}

// Where an argument stands between the caller's value and the callable's parameter of type P.
template <class P>
class Slot {
  using Given = std::remove_cvref_t<P>;
  using Kept = std::conditional_t<std::same_as<Given, std::string_view>, std::string, Given>;

 public:
  void load(Variant* given, const Variant* fallback, size_t argument) {
    given_ = given;
    value_ = converted<Kept>(given ? *given : *fallback, argument);
  }
  Kept& value() { return value_; }
  void store() {
    if constexpr (isByReference<P>) {
      if (given_) *given_ = toVariant(value_);
    }
  }

 private:
  Variant* given_ = nullptr;
  Kept value_{};
};

// Variants pass as they are, without a copy unless a default is written to.
template <class P>
requires std::same_as<std::remove_cvref_t<P>, Variant>
class Slot<P> {
 public:
  void load(Variant* given, const Variant* fallback, size_t) {
    if (!given) fallback_ = *fallback;
    given_ = given ? given : &fallback_;
  }
  Variant& value() { return *given_; }
  void store() {}

 private:
  Variant* given_ = nullptr;
  Variant fallback_;
};

inline Variant* givenAt(Arguments arguments, size_t place) {
  return place < arguments.size() ? &arguments[place] : nullptr;
}

inline const Variant* defaultAt(const Member& member, size_t place) {
  const bool isOptional = place < member.parameters.size() && member.parameters[place].isOptional();
  return isOptional ? &*member.parameters[place].defaultValue : nullptr;
}

template <class Callable, class Self, class... P, size_t... I>
Variant invoke(const Callable& callable, const ObjectRef& self, [[maybe_unused]] Arguments arguments,
               [[maybe_unused]] const Member& member, std::tuple<P...>*, std::index_sequence<I...>) {
  std::tuple<Slot<P>...> slots;
  (std::get<I>(slots).load(givenAt(arguments, I), defaultAt(member, I), I), ...);
  using Result = typename Signature<Callable>::Result;
  if constexpr (std::is_void_v<Result>) {
    std::invoke(callable, selfOf<Self>(self), std::get<I>(slots).value()...);
    (std::get<I>(slots).store(), ...);
    return Variant();
  } else {
    Variant result = toVariant(std::invoke(callable, selfOf<Self>(self), std::get<I>(slots).value()...));
    (std::get<I>(slots).store(), ...);
    return result;
  }
}

template <class Callable>
Member::Call callOf(Callable callable) {
  using Shape = Signature<Callable>;
  using Parameters = typename Shape::Parameters;
  return [callable](const ObjectRef& self, Arguments arguments, const Member& member) {
    return invoke<Callable, typename Shape::Self>(callable, self, arguments, member,
                                                  static_cast<Parameters*>(nullptr),
                                                  std::make_index_sequence<std::tuple_size_v<Parameters>>());
  };
}

template <class... P>
std::vector<MemberParameter> parametersOf(std::string_view member, ParameterRows rows, std::tuple<P...>*) {
  if (rows.size() != sizeof...(P))
    throw std::logic_error("wrong number of parameters in row " + std::string(member));
  std::vector<MemberParameter> result;
  [[maybe_unused]] const ParameterRow* row = rows.begin();
  [[maybe_unused]] const auto add = [&](AutomationType type, bool byReference) {
    result.push_back({row->name, type, byReference, row->defaultValue});
    ++row;
  };
  (add(automationTypeOf<std::remove_cvref_t<P>>(), isByReference<P>), ...);
  return result;
}

// A lambda without captures as the function that it is; anything else as it stands.
template <class Callable>
auto plain(Callable callable) {
  if constexpr (requires { +callable; })
    return +callable;
  else
    return callable;
}

template <class Callable>
Member callableMember(std::string_view name, MemberKind kind, Callable callable, ParameterRows rows) {
  using Shape = Signature<Callable>;
  Member member;
  member.name = name;
  member.kind = kind;
  member.parameters = parametersOf(name, rows, static_cast<typename Shape::Parameters*>(nullptr));
  member.resultType = automationTypeOf<std::remove_cvref_t<typename Shape::Result>>();
  member.call = callOf(callable);
  return member;
}

template <class Class, class Value>
Member dataMember(std::string_view name, Value Class::*field) {
  Member member;
  member.name = name;
  member.kind = MemberKind::Property;
  member.resultType = automationTypeOf<Value>();
  member.call = [field](const ObjectRef& self, Arguments, const Member&) {
    return toVariant(static_cast<Class&>(*self).*field);
  };
  member.put = [field](const ObjectRef& self, Arguments, const Variant& value, const Member&) {
    static_cast<Class&>(*self).*field = converted<Value>(value, ConversionFailure::kPutValue);
  };
  return member;
}

}  // namespace dispatch

// ---- rows of a class table

// method("addItem", &Invoice::addItem, {{"priceListItemId"}, {"multiplier", 1.0}})
template <class Callable>
Member method(std::string_view name, Callable callable, ParameterRows rows = {}) {
  return dispatch::callableMember(name, MemberKind::Method, dispatch::plain(callable), rows);
}

// A data member that pages read and write, or a getter: a property that they only read.
template <class Readable>
Member property(std::string_view name, Readable readable, ParameterRows rows = {}) {
  const auto plain = dispatch::plain(readable);
  if constexpr (std::is_member_object_pointer_v<decltype(plain)>)
    return dispatch::dataMember(name, plain);
  else
    return dispatch::callableMember(name, MemberKind::Property, std::decay_t<decltype(plain)>(plain), rows);
}

// A getter and a setter. The setter takes the getter's parameters, then the value.
template <class Getter, class Setter>
requires(!std::same_as<Setter, ParameterRows>) Member
    property(std::string_view name, Getter getter, Setter setter, ParameterRows rows = {}) {
  Member member = property(name, getter, rows);
  const auto set = dispatch::plain(setter);
  using Parameters = typename dispatch::Signature<std::decay_t<decltype(set)>>::Parameters;
  if (std::tuple_size_v<Parameters> != rows.size() + 1)
    throw std::logic_error("wrong number of parameters in setter " + std::string(name));
  member.put = [call = dispatch::callOf(std::decay_t<decltype(set)>(set))](
                   const ObjectRef& self, Arguments arguments, const Variant& value, const Member& row) {
    std::vector<Variant> all(arguments.begin(), arguments.end());
    all.push_back(value);
    try {
      call(self, all, row);
    } catch (ConversionFailure& failure) {
      if (failure.argument == arguments.size()) failure.argument = ConversionFailure::kPutValue;
      throw;
    }
  };
  return member;
}

// A data member that pages only read.
template <class Class, class Value>
Member readOnly(std::string_view name, Value Class::*field) {
  Member member = dispatch::dataMember(name, field);
  member.put = nullptr;
  return member;
}

}  // namespace ondrel
