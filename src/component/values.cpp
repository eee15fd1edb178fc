#include "component/values.h"

#include <cmath>
#include <limits>
#include <new>

#include "base/array.h"
#include "base/error.h"
#include "base/whole_number.h"
#include "component/bstr.h"
#include "component/dispatch_object.h"
#include "platform/utf16.h"

namespace ondrel {
namespace {

constexpr double kCurrencyUnits = 10000;

[[noreturn]] void failType() {
  throw Error(ErrorNumber::TypeMismatch, "Variant", "Type mismatch");
}

std::string textOf(BSTR text) {
  return text ? fromUtf16({text, SysStringLen(text)}) : std::string();
}

Variant listOf(const SAFEARRAY* array) {
  auto list = std::make_shared<Array>();
  if (!array) return Variant(ArrayRef(list));
  list->lowerBound = array->lLbound;
  for (uint32_t k = 0; k < array->cElements; ++k) list->items.push_back(fromVARIANT(array->pvData[k]));
  return Variant(ArrayRef(list));
}

// The value that a reference points to, as one that does not. What this takes, `writeBack` writes: a member
// is not called with a place that could not be written.
VARIANT pointedAt(const VARIANT& reference) {
  if (!reference.byref) failType();
  if (reference.vt == (VT_BYREF | VT_VARIANT)) return *reference.pvarVal;
  VARIANT value;
  VariantInit(&value);
  value.vt = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
  switch (value.vt) {
    case VT_UI1:
      value.bVal = *reference.pbVal;
      break;
    case VT_I2:
    case VT_BOOL:
      value.iVal = *reference.piVal;
      break;
    case VT_I4:
    case VT_R4:
      value.lVal = *reference.plVal;
      break;
    case VT_I8:
    case VT_CY:
    case VT_R8:
    case VT_DATE:
      value.llVal = *reference.pllVal;
      break;
    case VT_BSTR:
    case VT_DISPATCH:
      value.pdispVal = *reference.ppdispVal;
      break;
    default:
      failType();
  }
  return value;
}

void putList(VARIANT& value, const Array& list) {
  SAFEARRAY* const array = SafeArrayCreateVector(list.lowerBound, static_cast<uint32_t>(list.items.size()));
  if (!array) throw std::bad_alloc();
  value.vt = VT_ARRAY | VT_VARIANT;
  value.parray = array;
  try {
    for (size_t k = 0; k < list.items.size(); ++k) array->pvData[k] = toVARIANT(list.items[k]);
  } catch (...) {
    VariantClear(&value);
    throw;
  }
}

void putObject(VARIANT& value, const ObjectRef& object) {
  if (const auto list = std::dynamic_pointer_cast<Array>(object)) return putList(value, *list);
  value.pdispVal = object ? DispatchObject::of(object) : nullptr;
  value.vt = VT_DISPATCH;
}

void writeVariant(VARIANT& place, const Variant& value) {
  if (place.vt & VT_BYREF) return writeBack(place, value);
  const VARIANT made = toVARIANT(value);
  VariantClear(&place);
  place = made;
}

template <class Number>
void writeWhole(Number* place, double number) {
  const auto whole = wholeNumber<Number>(std::nearbyint(number));
  if (!whole) throw Error(ErrorNumber::Overflow, "Variant", "Overflow");
  *place = *whole;
}

}  // namespace

bool isOmitted(const VARIANT& value) {
  return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

Variant fromVARIANT(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
      return {};
    case VT_NULL:
      return Variant::null();
    case VT_UI1:
      return Variant(static_cast<std::int32_t>(value.bVal));
    case VT_I2:
      return Variant(static_cast<std::int32_t>(value.iVal));
    case VT_I4:
      return Variant(value.lVal);
    case VT_I8:
      return Variant(value.llVal);
    case VT_R4:
      return Variant(static_cast<double>(value.fltVal));
    case VT_R8:
      return Variant(value.dblVal);
    case VT_CY:
      return Variant(static_cast<double>(value.cyVal) / kCurrencyUnits);
    case VT_BOOL:
      return Variant(value.boolVal != VARIANT_FALSE);
    case VT_DATE:
      return Variant(Date(value.date));
    case VT_BSTR:
      return Variant(textOf(value.bstrVal));
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return Variant(value.punkVal ? DispatchObject::objectBehind(value.punkVal) : ObjectRef());
    case VT_ARRAY | VT_VARIANT:
      return listOf(value.parray);
    default:
      if (value.vt & VT_BYREF) return fromVARIANT(pointedAt(value));
      failType();
  }
}

VARIANT toVARIANT(const Variant& value) {
  VARIANT result;
  VariantInit(&result);
  switch (value.kind()) {
    case Variant::Kind::Empty:
      break;
    case Variant::Kind::Null:
      result.vt = VT_NULL;
      break;
    case Variant::Kind::Boolean:
      result.vt = VT_BOOL;
      result.boolVal = value.toBoolean() ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    case Variant::Kind::Long:
      result.vt = VT_I4;
      result.lVal = value.toLong();
      break;
    case Variant::Kind::Double:
      result.vt = VT_R8;
      result.dblVal = value.toDouble();
      break;
    case Variant::Kind::Date:
      result.vt = VT_DATE;
      result.date = value.toDate().serial();
      break;
    case Variant::Kind::Text:
      result.vt = VT_BSTR;
      result.bstrVal = toBSTR(value.text());
      break;
    case Variant::Kind::Object:
      putObject(result, value.toObject());
      break;
  }
  return result;
}

void writeBack(const VARIANT& reference, const Variant& value) {
  switch (reference.vt & ~VT_BYREF) {
    case VT_VARIANT:
      return writeVariant(*reference.pvarVal, value);
    case VT_UI1:
      return writeWhole(reference.pbVal, value.toDouble());
    case VT_I2:
      return writeWhole(reference.piVal, value.toDouble());
    case VT_BOOL:
      *reference.pboolVal = value.toBoolean() ? VARIANT_TRUE : VARIANT_FALSE;
      return;
    case VT_I4:
      *reference.plVal = value.toLong();
      return;
    case VT_I8:
      return writeWhole(reference.pllVal, value.toDouble());
    case VT_CY:
      return writeWhole(reference.pllVal, value.toDouble() * kCurrencyUnits);
    case VT_R4:
      *reference.pfltVal = static_cast<float>(value.toDouble());
      return;
    case VT_R8:
      *reference.pdblVal = value.toDouble();
      return;
    case VT_DATE:
      *reference.pdate = value.toDate().serial();
      return;
    case VT_BSTR: {
      const BSTR made = toBSTR(value.toText());
      SysFreeString(*reference.pbstrVal);
      *reference.pbstrVal = made;
      return;
    }
    case VT_DISPATCH: {
      const ObjectRef object = value.toObject();
      IDispatch* const before = *reference.ppdispVal;
      *reference.ppdispVal = object ? DispatchObject::of(object) : nullptr;
      if (before) before->lpVtbl->Release(before);
      return;
    }
    default:
      failType();
  }
}

}  // namespace ondrel
