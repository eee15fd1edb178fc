#include <dlfcn.h>

#include <filesystem>

#include "automation/class_factory.h"
#include "component/class_directory.h"
#include "component/class_object.h"
#include "component/dispatch_object.h"
#include "component/guarded.h"
#include "component/identifiers.h"
#include "component/registration.h"

extern "C" {

DllGetClassObjectFunction DllGetClassObject;
DllCanUnloadNowFunction DllCanUnloadNow;
DllRegisterServerFunction DllRegisterServer;
DllUnregisterServerFunction DllUnregisterServer;

HRESULT DllGetClassObject(const GUID* classId, const GUID* interfaceId, void** object) {
  using namespace ondrel;
  if (!classId || !interfaceId || !object) return E_POINTER;
  *object = nullptr;
  return guarded([&]() -> HRESULT {
    const PublicClass* const row = findPublicClassById(*classId);
    if (!row && !(*classId == LIBID_OndrelCorpComponents)) return CLASS_E_CLASSNOTAVAILABLE;
    auto* const made = new ClassObject(row);
    const HRESULT status = ClassObject::queryInterface(made, interfaceId, object);
    ClassObject::release(made);
    return status;
  });
}

HRESULT DllCanUnloadNow() {
  return ondrel::DispatchObject::count() == 0 && ondrel::ClassObject::count() == 0 ? S_OK : S_FALSE;
}

HRESULT DllRegisterServer() {
  return ondrel::guarded([] {
           Dl_info here{};
           if (::dladdr(reinterpret_cast<const void*>(&DllRegisterServer), &here) == 0)
             return SELFREG_E_CLASS;
           ondrel::registerClasses(ondrel::Settings(),
                                   std::filesystem::absolute(here.dli_fname).lexically_normal().string());
           return S_OK;
         }) == S_OK
             ? S_OK
             : SELFREG_E_CLASS;
}

HRESULT DllUnregisterServer() {
  return ondrel::guarded([] {
           ondrel::unregisterClasses(ondrel::Settings());
           return S_OK;
         }) == S_OK
             ? S_OK
             : SELFREG_E_CLASS;
}

}  // extern "C"
