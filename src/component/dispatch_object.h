#pragma once

#include <cstdint>

#include "automation/dispatch/class_table.h"
#include "component/ondrel_component.h"

namespace ondrel {

// An object of this library as a caller of the component sees it. One object has one of these as long as
// somebody holds it, so that two ways to an object give the same pointer.
class DispatchObject : public IDispatch {
 public:
  // A reference that the caller owns. An object whose class is not in the tables raises error 438.
  static IDispatch* of(const ObjectRef& object);
  static IDispatch* of(const ObjectRef& object, const ClassTable& table);
  // Error 13 when the interface is not one of ours.
  static ObjectRef objectBehind(IUnknown* interface);
  // How many are held.
  static long count();

 private:
  DispatchObject(const ObjectRef& object, const ClassTable& table);

  static DispatchObject& self(IDispatch* interface) { return *static_cast<DispatchObject*>(interface); }
  static HRESULT queryInterface(IDispatch* interface, const GUID* interfaceId, void** object);
  static std::uint32_t addReference(IDispatch* interface);
  static std::uint32_t release(IDispatch* interface);
  static HRESULT countTypeInfos(IDispatch* interface, std::uint32_t* count);
  static HRESULT typeInfo(IDispatch* interface, std::uint32_t place, std::uint32_t locale, void** typeInfo);
  static HRESULT idsOfNames(IDispatch* interface, const GUID* reserved, OLECHAR** names, std::uint32_t count,
                            std::uint32_t locale, DISPID* ids);
  static HRESULT invoke(IDispatch* interface, DISPID id, const GUID* reserved, std::uint32_t locale,
                        std::uint16_t flags, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* error,
                        std::uint32_t* wrongArgument);
  bool answersTo(const GUID& interfaceId) const;

  static const IDispatchVtbl kTable;

  ObjectRef object_;
  const ClassTable& class_;
  std::uint32_t references_ = 1;
};

}  // namespace ondrel
