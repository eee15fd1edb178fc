#pragma once

#include <optional>

#include "base/variant.h"
#include "component/ondrel_component.h"

namespace ondrel {

// Values on their way between a caller's VARIANT and ours.
//
// | VARIANT                         | ours                                                     |
// |---------------------------------|----------------------------------------------------------|
// | VT_EMPTY, VT_NULL               | Empty, Null                                              |
// | VT_UI1, VT_I2, VT_I4, VT_I8     | Long, or Double beyond 32 bits                           |
// | VT_R4, VT_R8, VT_CY             | Double                                                   |
// | VT_BOOL, VT_DATE, VT_BSTR       | Boolean, Date, text                                      |
// | VT_DISPATCH, VT_UNKNOWN         | an object of this library                                |
// | VT_ARRAY + VT_VARIANT           | an array, by value                                       |
// | VT_VARIANT + VT_BYREF           | the value that it points to                              |
// | a plain type + VT_BYREF         | the same; not of VT_UNKNOWN or an array                  |
//
// Everything else, objects of the caller's own included, is error 13.
Variant fromVARIANT(const VARIANT& value);

// A new value that the caller owns.
VARIANT toVARIANT(const Variant& value);

// Puts a result where a VARIANT by reference points to, converted to its type; what stood there is given back.
// Error 13 and the like when it does not convert. Every reference that `fromVARIANT` takes can be written.
void writeBack(const VARIANT& reference, const Variant& value);

// Whether the VARIANT stands for an argument that was left out.
bool isOmitted(const VARIANT& value);

}  // namespace ondrel
