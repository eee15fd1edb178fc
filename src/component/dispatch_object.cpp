#include "component/dispatch_object.h"

#include <memory>
#include <mutex>
#include <unordered_map>

#include "automation/class_factory.h"
#include "component/guarded.h"
#include "component/identifiers.h"
#include "component/invocation.h"
#include "platform/utf16.h"

namespace ondrel {
namespace {

// The objects that callers hold, each with the one interface that it has.
struct Held {
  std::mutex mutex;
  std::unordered_map<const Object*, DispatchObject*> interfaces;
};

// Never destroyed: a caller may release an object while the process ends.
Held& held() {
  static Held& all = *new Held;
  return all;
}

}  // namespace

const IDispatchVtbl DispatchObject::kTable = {
    queryInterface, addReference, release, countTypeInfos, typeInfo, idsOfNames, invoke,
};

// cppcheck-suppress uninitDerivedMemberVarPrivate
DispatchObject::DispatchObject(const ObjectRef& object, const ClassTable& table)
    : IDispatch{&kTable}, object_(object), class_(table) {}

IDispatch* DispatchObject::of(const ObjectRef& object) {
  return of(object, classTableOf(*object));
}

IDispatch* DispatchObject::of(const ObjectRef& object, const ClassTable& table) {
  const std::lock_guard lock(held().mutex);
  const auto found = held().interfaces.find(object.get());
  if (found != held().interfaces.end()) {
    ++found->second->references_;
    return found->second;
  }
  std::unique_ptr<DispatchObject> made(new DispatchObject(object, table));
  held().interfaces.emplace(object.get(), made.get());
  return made.release();
}

ObjectRef DispatchObject::objectBehind(IUnknown* interface) {
  // No interface but our own has this very table.
  if (static_cast<const void*>(interface->lpVtbl) != &kTable)
    throw Error(ErrorNumber::TypeMismatch, "Variant", "Type mismatch: an object of another library");
  return reinterpret_cast<DispatchObject*>(interface)->object_;
}

long DispatchObject::count() {
  const std::lock_guard lock(held().mutex);
  return static_cast<long>(held().interfaces.size());
}

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

std::uint32_t DispatchObject::addReference(IDispatch* interface) {
  const std::lock_guard lock(held().mutex);
  return ++self(interface).references_;
}

std::uint32_t DispatchObject::release(IDispatch* interface) {
  {
    const std::lock_guard lock(held().mutex);
    if (const std::uint32_t left = --self(interface).references_) return left;
    held().interfaces.erase(self(interface).object_.get());
  }
  delete &self(interface);
  return 0;
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
