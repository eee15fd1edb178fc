#include "component/class_directory.h"

#include "automation/class_factory.h"
#include "automation/drivers.h"
#include "component/identifiers.h"
#include "component/registration.h"
#include "data/apartment.h"

namespace ondrel {
namespace {

[[noreturn]] void failCreate(std::string_view name, std::string_view reason) {
  throw Error(ErrorNumber::CannotCreateObject, kProjectName,
              "Component can't create object '" + std::string(name) + "': " + std::string(reason));
}

}  // namespace

const PublicClass* findPublicClassById(const GUID& classId) {
  for (const PublicClass& row : publicClasses())
    if (toGuid(row.classId) == classId) return &row;
  return nullptr;
}

ObjectRef createInstance(const PublicClass& row) {
  const ApartmentRef apartment = Apartment::current();
  if (!apartment->connect) apartment->connect = connectToDatabase;
  return createObject(row.name);
}

std::string ClassDirectory::ClassId(const std::string& name) const {
  const auto id = registeredClassId(settings_, name);
  if (!id) failCreate(name, "the name is not registered");
  return *id;
}

ObjectRef ClassDirectory::CreateObject(const std::string& name) const {
  const PublicClass* const row = findPublicClassById(toGuid(ClassId(name)));
  if (!row) failCreate(name, "the name is registered for a class that is not here");
  return createInstance(*row);
}

const ClassTable& classDirectoryClass() {
  // clang-format off
  static const ClassTable table("ClassDirectory", {
      method("CreateObject", &ClassDirectory::CreateObject, {{"name"}}),
      method("ClassId", &ClassDirectory::ClassId, {{"name"}}),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
