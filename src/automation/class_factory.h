#pragma once

#include <span>
#include <string_view>

#include "base/object.h"

namespace ondrel {

inline constexpr std::string_view kProjectName = "OndrelCorpComponents";
inline constexpr std::string_view kTypeLibraryId = "65263065-0602-4A32-8F35-CEB5AE54191E";
inline constexpr int kTypeLibraryMajor = 1;
inline constexpr int kTypeLibraryMinor = 0;

// A class that pages create by name. Ids are texts in upper case without braces.
struct PublicClass {
  std::string_view name;
  std::string_view classId;
  std::string_view interfaceId;  // the default interface, named as the class with a leading underscore
  ObjectRef (*create)();
};

std::span<const PublicClass> publicClasses();
// By name, with or without the project name in front, in any case. Nothing when there is none.
const PublicClass* findPublicClass(std::string_view name);

// A new object of the class, in the calling thread's apartment. "Scripting.Dictionary" and
// "ADODB.Recordset" give a dictionary and a table that is not open. Error 429, which names the class, when
// there is no such class.
ObjectRef createObject(std::string_view name);

}  // namespace ondrel
