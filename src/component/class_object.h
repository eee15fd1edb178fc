#pragma once

#include <atomic>

#include "base/object.h"
#include "component/ondrel_component.h"

namespace ondrel {

struct PublicClass;

// Makes objects of one class, or the directory of all classes when it has none.
class ClassObject : public IClassFactory {
 public:
  explicit ClassObject(const PublicClass* row);
  ~ClassObject();
  ClassObject(const ClassObject&) = delete;
  ClassObject& operator=(const ClassObject&) = delete;

  // Class objects and locks that callers hold.
  static long count();

  static HRESULT queryInterface(IClassFactory* interface, const GUID* interfaceId, void** object);
  static std::uint32_t release(IClassFactory* interface);

 private:
  static ClassObject& self(IClassFactory* interface) { return *static_cast<ClassObject*>(interface); }
  static std::uint32_t addReference(IClassFactory* interface);
  static HRESULT createInstance(IClassFactory* interface, IUnknown* outer, const GUID* interfaceId,
                                void** object);
  static HRESULT lockServer(IClassFactory* interface, int lock);

  static const IClassFactoryVtbl kTable;

  const PublicClass* row_;
  std::atomic<std::uint32_t> references_ = 1;
};

}  // namespace ondrel
