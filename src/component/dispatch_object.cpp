#include "component/dispatch_object.h"

#include <memory>
#include <mutex>
#include <unordered_map>

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

}  // namespace ondrel
