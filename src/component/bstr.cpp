#include "component/bstr.h"

#include <cstdint>
#include <new>
#include <string>

#include "platform/utf16.h"

namespace ondrel {

BSTR toBSTR(std::string_view text) {
  const std::u16string units = toUtf16(text);
  const BSTR result = SysAllocStringLen(units.data(), static_cast<uint32_t>(units.size()));
  if (!result) throw std::bad_alloc();
  return result;
}

}  // namespace ondrel
