#include "component/guarded.h"

#include "component/bstr.h"

namespace ondrel {

HRESULT tellError(int number, std::string_view source, std::string_view description, EXCEPINFO* info) {
  if (!info) return DISP_E_EXCEPTION;
  constexpr std::uint32_t kControl = 0x800A0000;  // numbers of the platform's error object within a status
  *info = EXCEPINFO{};
  info->bstrSource = toBSTR(source);
  info->bstrDescription = toBSTR(description);
  info->scode =
      number > 0 ? static_cast<std::int32_t>(kControl | static_cast<std::uint32_t>(number)) : number;
  return DISP_E_EXCEPTION;
}

}  // namespace ondrel
