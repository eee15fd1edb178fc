#include <cmath>
#include <limits>
#include <optional>

#include "automation/script/script_state.h"
#include "base/array.h"
#include "base/text.h"
#include "base/whole_number.h"

namespace ondrel::script {
namespace {

constexpr int kDeepestArray = 16;
constexpr size_t kLongestArray = 1'000'000;
constexpr double kMillisecondsPerDay = 86'400'000;
// The years that the platform's date can hold.
constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;

constexpr const char* kDateKey = DUK_HIDDEN_SYMBOL("Date");
constexpr const char* kErrorKey = DUK_HIDDEN_SYMBOL("Error");

// The engine keeps a character outside the basic plane as two surrogates of three bytes each:
// ED A0..AF xx, ED B0..BF xx. The library has it in four bytes.
constexpr char32_t kFirstSupplementary = 0x10000;
constexpr char32_t kFirstHighSurrogate = 0xD800;
constexpr char32_t kFirstLowSurrogate = 0xDC00;
constexpr size_t kSurrogateBytes = 3;

void appendSurrogate(std::string& text, char32_t surrogate) {
  text += '\xED';
  text += static_cast<char>(0x80 | (surrogate >> 6 & 0x3F));
  text += static_cast<char>(0x80 | (surrogate & 0x3F));
}

std::string scriptText(std::string_view text) {
  std::string result;
  for (size_t position = 0; position < text.size();) {
    const char32_t c = nextCharacter(text, position);
    if (c < kFirstSupplementary) {
      appendCharacter(result, c);
    } else {
      appendSurrogate(result, kFirstHighSurrogate + ((c - kFirstSupplementary) >> 10));
      appendSurrogate(result, kFirstLowSurrogate + ((c - kFirstSupplementary) & 0x3FF));
    }
  }
  return result;
}

// The low bits of the surrogate at `position`, or nothing when none of that half stands there.
std::optional<char32_t> surrogateAt(std::string_view text, size_t position, unsigned char half) {
  if (position + kSurrogateBytes > text.size() || text[position] != '\xED') return std::nullopt;
  const auto second = static_cast<unsigned char>(text[position + 1]);
  const auto third = static_cast<unsigned char>(text[position + 2]);
  if ((second & 0xF0) != half) return std::nullopt;
  return static_cast<char32_t>((second & 0x0F) << 6 | (third & 0x3F));
}

std::string libraryText(std::string_view text) {
  constexpr unsigned char highHalf = 0xA0, lowHalf = 0xB0;
  std::string result;
  for (size_t position = 0; position < text.size();) {
    const auto high = surrogateAt(text, position, highHalf);
    const auto low = surrogateAt(text, position + kSurrogateBytes, lowHalf);
    if (high && low) {
      appendCharacter(result, kFirstSupplementary + (*high << 10) + *low);
      position += 2 * kSurrogateBytes;
    } else if (high || surrogateAt(text, position, lowHalf)) {
      position += kSurrogateBytes;  // half a character, as a script's substring leaves it, is none
    } else {
      result += text[position++];
    }
  }
  return result;
}

bool isPlain(std::string_view text) {
  for (const char c : text)
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  return true;
}

void pushDate(duk_context* context, Date date) {
  const DateParts parts = date.parts();
  pushKept(context, kDateKey);
  duk_push_int(context, parts.year);
  duk_push_int(context, parts.month - 1);
  duk_push_int(context, parts.day);
  duk_push_int(context, parts.hour);
  duk_push_int(context, parts.minute);
  duk_push_int(context, parts.second);
  duk_new(context, 6);
}

int datePart(duk_context* context, duk_idx_t index, const char* getter) {
  duk_push_string(context, getter);
  duk_call_prop(context, index, 0);
  const double part = duk_get_number(context, -1);
  duk_pop(context);
  const auto whole = wholeNumber<int>(part);
  if (!whole) raise(context, ErrorNumber::TypeMismatch, "Type mismatch: not a date");
  return *whole;
}

}  // namespace

Date dateAt(duk_context* context, duk_idx_t index) {
  const int year = datePart(context, index, "getFullYear");
  if (year < kFirstYear || year > kLastYear)
    raise(context, ErrorNumber::TypeMismatch, "Type mismatch: year out of range");
  const int month = datePart(context, index, "getMonth") + 1;
  const int day = datePart(context, index, "getDate");
  const int hour = datePart(context, index, "getHours");
  const int minute = datePart(context, index, "getMinutes");
  const int second = datePart(context, index, "getSeconds");
  const int millisecond = datePart(context, index, "getMilliseconds");
  return Date::of(year, month, day, hour, minute, second).addDays(millisecond / kMillisecondsPerDay);
}

namespace {

Variant numberValue(double number) {
  const auto whole = wholeNumber<std::int32_t>(number);
  return whole && *whole == number ? Variant(*whole) : Variant(number);
}

// The array is the value's from the start, so that an error on the way leaves nothing behind.
void readArray(duk_context* context, duk_idx_t index, Variant& value, int depth) {
  const size_t length = duk_get_length(context, index);
  if (depth >= kDeepestArray || length > kLongestArray)
    raise(context, ErrorNumber::TypeMismatch, "Type mismatch: array too deep or too long");
  value = Variant(std::make_shared<Array>());
  auto& items = static_cast<Array&>(*value.toObject()).items;
  items.resize(length);
  for (size_t k = 0; k < length; ++k) {
    duk_get_prop_index(context, index, static_cast<duk_uarridx_t>(k));
    readValue(context, -1, items[k], depth + 1);
    duk_pop(context);
  }
}

void readObject(duk_context* context, duk_idx_t index, Variant& value, int depth) {
  duk_require_stack(context, 8);
  if (const KnownObject* known = objectAt(context, index))
    value = Variant(known->object);
  else if (duk_is_array(context, index))
    readArray(context, index, value, depth);
  else if (isDate(context, index))
    value = Variant(dateAt(context, index));
  else
    raise(context, ErrorNumber::TypeMismatch, "Type mismatch: the library takes no script objects");
}

void pushArray(duk_context* context, State& state, const Array& array) {
  duk_require_stack(context, 4);
  const duk_idx_t place = duk_push_array(context);
  duk_uarridx_t next = 0;
  for (const Variant& item : array.items) {
    pushValue(context, state, item);
    duk_put_prop_index(context, place, next++);
  }
}

}  // namespace

void installValues(duk_context* context) {
  duk_get_global_string(context, "Date");
  keep(context, kDateKey);
  duk_get_global_string(context, "Error");
  keep(context, kErrorKey);
}

void keep(duk_context* context, const char* key) {
  duk_push_global_stash(context);
  duk_insert(context, -2);
  duk_put_prop_string(context, -2, key);
  duk_pop(context);
}

void pushKept(duk_context* context, const char* key) {
  duk_push_global_stash(context);
  duk_get_prop_string(context, -1, key);
  duk_remove(context, -2);
}

std::string textAt(duk_context* context, duk_idx_t index) {
  duk_size_t length = 0;
  const char* bytes = duk_get_lstring(context, index, &length);
  const std::string_view text = bytes ? std::string_view(bytes, length) : std::string_view();
  return isPlain(text) ? std::string(text) : libraryText(text);
}

void pushText(duk_context* context, std::string_view text) {
  if (isPlain(text)) {
    duk_push_lstring(context, text.data(), text.size());
    return;
  }
  // The converted text stands in a buffer of the engine, since pushing it may fail and leave this frame.
  const size_t length = scriptText(text).size();
  void* buffer = duk_push_fixed_buffer(context, length);
  scriptText(text).copy(static_cast<char*>(buffer), length);
  duk_push_lstring(context, static_cast<const char*>(buffer), length);
  duk_remove(context, -2);
}

bool isDate(duk_context* context, duk_idx_t index) {
  index = duk_require_normalize_index(context, index);
  pushKept(context, kDateKey);
  const bool result = duk_instanceof(context, index, -1) != 0;
  duk_pop(context);
  return result;
}

void readValue(duk_context* context, duk_idx_t index, Variant& value, int depth) {
  index = duk_require_normalize_index(context, index);
  switch (duk_get_type(context, index)) {
    case DUK_TYPE_NONE:
    case DUK_TYPE_UNDEFINED:
      value = Variant();
      return;
    case DUK_TYPE_NULL:
      value = Variant::null();
      return;
    case DUK_TYPE_BOOLEAN:
      value = Variant(duk_get_boolean(context, index) != 0);
      return;
    case DUK_TYPE_NUMBER:
      value = numberValue(duk_get_number(context, index));
      return;
    case DUK_TYPE_STRING:
      if (duk_is_symbol(context, index)) break;
      value = Variant(textAt(context, index));
      return;
    case DUK_TYPE_OBJECT:
      readObject(context, index, value, depth);
      return;
    default:
      break;
  }
  raise(context, ErrorNumber::TypeMismatch, "Type mismatch: the library takes no value of this kind");
}

void readArguments(duk_context* context, NativeCall& call, duk_idx_t first) {
  const duk_idx_t end = duk_get_top(context);
  call.firstArgument = first;
  call.arguments.resize(end > first ? static_cast<size_t>(end - first) : 0);
  for (size_t k = 0; k < call.arguments.size(); ++k) {
    const duk_idx_t index = first + static_cast<duk_idx_t>(k);
    if (duk_is_object(context, index) && duk_has_prop_string(context, index, kBoxKey)) {
      call.boxes.push_back(k);
      duk_get_prop_string(context, index, "value");
      readValue(context, -1, call.arguments[k]);
      duk_pop(context);
    } else {
      readValue(context, index, call.arguments[k]);
    }
  }
}

void writeBoxes(duk_context* context, NativeCall& call) {
  for (const size_t place : call.boxes) {
    pushValue(context, call.state, call.arguments[place]);
    duk_put_prop_string(context, call.firstArgument + static_cast<duk_idx_t>(place), "value");
  }
}

void pushValue(duk_context* context, State& state, const Variant& value) {
  switch (value.kind()) {
    case Variant::Kind::Empty:
      duk_push_undefined(context);
      return;
    case Variant::Kind::Null:
      duk_push_null(context);
      return;
    case Variant::Kind::Boolean:
      duk_push_boolean(context, value.toBoolean());
      return;
    case Variant::Kind::Long:
      duk_push_int(context, value.toLong());
      return;
    case Variant::Kind::Double:
      duk_push_number(context, value.toDouble());
      return;
    case Variant::Kind::Date:
      pushDate(context, value.toDate());
      return;
    case Variant::Kind::Text:
      pushText(context, value.text());
      return;
    case Variant::Kind::Object:
      break;
  }
  const Object* object = value.toObject().get();
  if (!object)
    duk_push_null(context);
  else if (const auto* array = dynamic_cast<const Array*>(object))
    pushArray(context, state, *array);
  else
    pushObject(context, value);
}

void pushError(duk_context* context, int number, std::string_view source, std::string_view description) {
  pushKept(context, kErrorKey);
  pushText(context, description);
  duk_new(context, 1);
  duk_push_int(context, number);
  duk_put_prop_string(context, -2, "number");
  pushText(context, source);
  duk_put_prop_string(context, -2, "source");
  pushText(context, description);
  duk_put_prop_string(context, -2, "description");
}

void raise(duk_context* context, ErrorNumber number, const char* description) {
  pushError(context, static_cast<int>(number), "Script", description);
  static_cast<void>(duk_throw(context));
  std::abort();
}

}  // namespace ondrel::script
