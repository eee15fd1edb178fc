#include <dlfcn.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "base/error.h"
#include "commands.h"
#include "component/ondrel_component.h"
#include "program_folders.h"

namespace ondrel {
namespace {

constexpr const char* kLibrary = "libOndrelCorpComponents.so";

// Beside the program, as it is built, or where an installation has it; otherwise where the system looks.
std::string libraryOfProgram() {
  const auto folder = std::filesystem::exists(programFolder() / kLibrary)
                          ? programFolder()
                          : installedFolder(ONDREL_LIBRARY_FOLDER, {});
  return std::filesystem::exists(folder / kLibrary) ? (folder / kLibrary).string() : kLibrary;
}

[[noreturn]] void failLibrary() {
  throw Error(ErrorNumber::FileNotFound, "ondrel", ::dlerror());  // NOLINT(concurrency-mt-unsafe)
}

// Calls an export that takes nothing and gives a status.
int callExport(const std::string& library, const char* name) {
  void* const handle = ::dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) failLibrary();
  auto* const function = reinterpret_cast<DllRegisterServerFunction*>(::dlsym(handle, name));
  if (!function) failLibrary();
  const HRESULT status = function();
  ::dlclose(handle);
  if (status < 0)
    std::fprintf(stderr, "%s of %s failed: the settings cannot be changed\n", name, library.c_str());
  return status < 0 ? 1 : 0;
}

struct Action {
  const char* name;
  const char* description;
  const char* function;
};

// clang-format off
constexpr Action kActions[] = {
    {"register",   "Enter the names and ids of the component's classes in the settings", "DllRegisterServer"},
    {"unregister", "Remove them from the settings",                                      "DllUnregisterServer"},
};
// clang-format on

}  // namespace

void addRegisterCommands(CLI::App& app, int& exitCode) {
  const auto library = std::make_shared<std::string>();
  for (const Action& action : kActions) {
    CLI::App* command = app.add_subcommand(action.name, action.description);
    command->add_option("LIBRARY", *library, "The component's file; without it the one of this program");
    command->callback([&action, library, &exitCode] {
      exitCode = callExport(library->empty() ? libraryOfProgram() : *library, action.function);
    });
  }
}

}  // namespace ondrel
