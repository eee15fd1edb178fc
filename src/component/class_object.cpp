#include "component/class_object.h"

#include <memory>

#include "component/class_directory.h"
#include "component/dispatch_object.h"
#include "component/guarded.h"
#include "component/identifiers.h"

namespace ondrel {
namespace {

std::atomic<long> heldCount = 0;

}  // namespace

const IClassFactoryVtbl ClassObject::kTable = {queryInterface, addReference, release, createInstance,
                                               lockServer};

// cppcheck-suppress uninitDerivedMemberVar
ClassObject::ClassObject(const PublicClass* row) : IClassFactory{&kTable}, row_(row) {
  ++heldCount;
}

ClassObject::~ClassObject() {
  --heldCount;
}

long ClassObject::count() {
  return heldCount;
}

HRESULT ClassObject::queryInterface(IClassFactory* interface, const GUID* interfaceId, void** object) {
  if (!interfaceId || !object) return E_POINTER;
  *object = nullptr;
  if (!(*interfaceId == IID_IUnknown) && !(*interfaceId == IID_IClassFactory)) return E_NOINTERFACE;
  addReference(interface);
  *object = interface;
  return S_OK;
}

std::uint32_t ClassObject::addReference(IClassFactory* interface) {
  return ++self(interface).references_;
}

std::uint32_t ClassObject::release(IClassFactory* interface) {
  const std::uint32_t left = --self(interface).references_;
  if (left == 0) delete &self(interface);
  return left;
}

HRESULT ClassObject::createInstance(IClassFactory* interface, IUnknown* outer, const GUID* interfaceId,
                                    void** object) {
  if (!interfaceId || !object) return E_POINTER;
  *object = nullptr;
  if (outer) return CLASS_E_NOAGGREGATION;
  return guarded([&] {
    const PublicClass* const row = self(interface).row_;
    IDispatch* const made =
        row ? DispatchObject::of(ondrel::createInstance(*row))
            : DispatchObject::of(std::make_shared<ClassDirectory>(), classDirectoryClass());
    const HRESULT status = made->lpVtbl->QueryInterface(made, interfaceId, object);
    made->lpVtbl->Release(made);
    return status;
  });
}

HRESULT ClassObject::lockServer(IClassFactory*, int lock) {
  heldCount += lock ? 1 : -1;
  return S_OK;
}

}  // namespace ondrel
