// What a caller reaches through the table of an object's interface.

#include "automation/class_factory.h"
#include "component/dispatch_object.h"
#include "component/guarded.h"
#include "component/identifiers.h"
#include "component/invocation.h"
#include "platform/utf16.h"

namespace ondrel {

const IDispatchVtbl DispatchObject::kTable = {
    queryInterface, addReference, release, countTypeInfos, typeInfo, idsOfNames, invoke,
};

bool DispatchObject::answersTo(const GUID& interfaceId) const {
  if (interfaceId == IID_IUnknown || interfaceId == IID_IDispatch) return true;
  const PublicClass* const row = findPublicClass(class_.className());
  return row && interfaceId == toGuid(row->interfaceId);
}

HRESULT DispatchObject::queryInterface(IDispatch* interface, const GUID* interfaceId, void** object) {
  if (!interfaceId || !object) return E_POINTER;
  *object = nullptr;
  if (!self(interface).answersTo(*interfaceId)) return E_NOINTERFACE;
  addReference(interface);
  *object = interface;
  return S_OK;
}

HRESULT DispatchObject::countTypeInfos(IDispatch*, std::uint32_t* count) {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT DispatchObject::typeInfo(IDispatch*, std::uint32_t, std::uint32_t, void** typeInfo) {
  if (typeInfo) *typeInfo = nullptr;
  return E_NOTIMPL;
}

HRESULT DispatchObject::idsOfNames(IDispatch* interface, const GUID*, OLECHAR** names, std::uint32_t count,
                                   std::uint32_t, DISPID* ids) {
  if (!names || !ids || count == 0) return E_POINTER;
  return guarded([&] {
    const ClassTable& table = self(interface).class_;
    const auto text = [&](std::uint32_t k) { return fromUtf16(names[k]); };
    const Member* const member = table.find(text(0));
    ids[0] = member ? member->id : DISPID_UNKNOWN;
    bool areKnown = member;
    for (std::uint32_t k = 1; k < count; ++k) {
      ids[k] = member ? parameterPlace(*member, text(k)) : DISPID_UNKNOWN;
      areKnown = areKnown && ids[k] != DISPID_UNKNOWN;
    }
    return areKnown ? S_OK : DISP_E_UNKNOWNNAME;
  });
}

HRESULT DispatchObject::invoke(IDispatch* interface, DISPID id, const GUID*, std::uint32_t,
                               std::uint16_t flags, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* error,
                               std::uint32_t* wrongArgument) {
  if (!arguments) return E_POINTER;
  const ObjectRef object = self(interface).object_;  // it may be released while it works
  const ClassTable& table = self(interface).class_;
  const Member* const member = id == DISPID_VALUE ? table.defaultMember() : table.find(id);
  if (!member) return DISP_E_MEMBERNOTFOUND;
  return guarded(
      [&] { return invokeMember(table, object, *member, flags, *arguments, result, wrongArgument); }, error);
}

}  // namespace ondrel
