#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace ondrel {

// Database files that live in the memory of this process, known by name to the table engine. Unlike the
// engine's own memory databases they behave as files do: several handles open one, and a handle reads what
// was committed while another has a transaction open.
namespace memory_files {

// Name of the file system under which the engine opens them.
inline constexpr const char* kFileSystem = "ondrel-memory";

// Enters the file system with the engine; further calls do nothing.
void install();
// Makes a file of that name, with the contents of another one.
void create(const std::string& name, std::string_view contents);
// Puts contents in place of a file's own. No statement may run on it; handles that have it open notice.
void replace(const std::string& name, std::string_view contents);
std::string contents(const std::string& name);
// Handles that have it open keep it until they close.
void remove(const std::string& name);

}  // namespace memory_files
}  // namespace ondrel
