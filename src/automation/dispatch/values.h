#pragma once

#include <concepts>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/array.h"
#include "base/variant.h"

namespace ondrel {

// The types of arguments and results as a page knows them.
enum class AutomationType { None, Variant, Boolean, Long, Double, Date, Text, Object };

// "Long", "Text", ...; "" for None.
std::string_view automationTypeName(AutomationType type);

// The C++ types that cross between a Variant and a member, and how.
//
// | C++ type                        | page's type | from a Variant                          |
// |---------------------------------|-------------|-----------------------------------------|
// | Variant                         | Variant     | itself                                  |
// | bool                            | Boolean     | toBoolean                               |
// | int, long long, enums           | Long        | toLong                                  |
// | double                          | Double      | toDouble                                |
// | Date                            | Date        | toDate                                  |
// | string, string_view             | Text        | toText                                  |
// | shared_ptr of an Object class   | Object      | Empty and Null give nothing; error 13   |
// |                                 |             | when the object is of another class     |
// | vector (results only)           | Object      |                                         |
template <class T>
inline constexpr bool isObjectPointer = false;
template <class Class>
inline constexpr bool isObjectPointer<std::shared_ptr<Class>> = std::derived_from<Class, Object>;

template <class T>
inline constexpr bool isVector = false;
template <class Item>
inline constexpr bool isVector<std::vector<Item>> = true;

template <class T>
concept TextType = std::same_as<T, std::string> || std::same_as<T, std::string_view>;

template <class T>
constexpr AutomationType automationTypeOf() {
  if constexpr (std::is_void_v<T>)
    return AutomationType::None;
  else if constexpr (std::same_as<T, Variant>)
    return AutomationType::Variant;
  else if constexpr (std::same_as<T, bool>)
    return AutomationType::Boolean;
  else if constexpr (std::integral<T> || std::is_enum_v<T>)
    return AutomationType::Long;
  else if constexpr (std::floating_point<T>)
    return AutomationType::Double;
  else if constexpr (std::same_as<T, Date>)
    return AutomationType::Date;
  else if constexpr (TextType<T>)
    return AutomationType::Text;
  else {
    static_assert(isObjectPointer<T> || isVector<T>, "a type that does not cross to pages");
    return AutomationType::Object;
  }
}

template <class T>
T fromVariant(const Variant& value) {
  constexpr AutomationType type = automationTypeOf<T>();
  if constexpr (type == AutomationType::Variant)
    return value;
  else if constexpr (type == AutomationType::Boolean)
    return value.toBoolean();
  else if constexpr (type == AutomationType::Long)
    return static_cast<T>(value.toLong());
  else if constexpr (type == AutomationType::Double)
    return static_cast<T>(value.toDouble());
  else if constexpr (type == AutomationType::Date)
    return value.toDate();
  else if constexpr (type == AutomationType::Text)
    return value.toText();
  else {
    if (value.isNull()) return nullptr;
    const ObjectRef object = value.toObject();
    T result = std::dynamic_pointer_cast<typename T::element_type>(object);
    if (object && !result) throw Error(ErrorNumber::TypeMismatch, "Variant", "Type mismatch");
    return result;
  }
}

template <class T>
Variant toVariant(const T& value) {
  if constexpr (std::is_enum_v<T>)
    return Variant(static_cast<std::int32_t>(value));
  else if constexpr (isVector<T>) {
    auto array = std::make_shared<Array>();
    for (const auto& item : value) array->items.push_back(toVariant(item));
    return Variant(ArrayRef(array));
  } else
    return Variant(value);
}

// The items of an array argument; a value that is no array counts as a list of one.
std::vector<Variant> listOf(const Variant& value);

}  // namespace ondrel
