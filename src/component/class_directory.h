#pragma once

#include <string>

#include "automation/class_factory.h"
#include "automation/dispatch/class_table.h"
#include "component/ondrel_component.h"
#include "platform/settings.h"

namespace ondrel {

// Finds classes by the names that the settings of the machine hold.
class ClassDirectory : public Object {
 public:
  std::string_view className() const override { return "ClassDirectory"; }

  // A new object in the calling thread's apartment. Error 429 for a name that is not registered, or whose id is
  // of no class of this library.
  ObjectRef CreateObject(const std::string& name) const;
  // "{...}"; error 429 for a name that is not registered.
  std::string ClassId(const std::string& name) const;

 private:
  Settings settings_;
};

const ClassTable& classDirectoryClass();

// A class of this build; nothing for any other id.
const PublicClass* findPublicClassById(const GUID& classId);
// A new object in the calling thread's apartment, which reaches databases from then on.
ObjectRef createInstance(const PublicClass& row);

}  // namespace ondrel
