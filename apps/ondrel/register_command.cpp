#include <dlfcn.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>

#include "base/error.h"
#include "commands.h"
#include "component/ondrel_component.h"
#include "platform/settings.h"
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

// What the status does not tell: the reason why the first file cannot be changed.
[[noreturn]] void failSettings() {
  const Settings settings;
  const std::string& file = settings.files().front();
  Settings({file}).value("Software\\Classes", "");  // raises what is wrong with the file itself
  throw Error(ErrorNumber::PathAccess, "ondrel",
              "Settings file " + file + " cannot be written, or holds a value where a key must stand");
}

// Calls an export that takes nothing and gives a status.
void callExport(const std::string& library, const char* name) {
  void* const handle = ::dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) failLibrary();
  auto* const function = reinterpret_cast<DllRegisterServerFunction*>(::dlsym(handle, name));
  if (!function) failLibrary();
  const HRESULT status = function();
  ::dlclose(handle);
  if (status < 0) failSettings();
}

struct RegisterAction {
  const char* name;
  const char* description;
  const char* function;
};

// clang-format off
constexpr RegisterAction kRegisterActions[] = {
    {"register",   "Enter the names and ids of the component's classes in the settings", "DllRegisterServer"},
    {"unregister", "Remove them from the settings",                                      "DllUnregisterServer"},
};
// clang-format on

}  // namespace

void addRegisterCommands(CLI::App& app) {
  const auto library = std::make_shared<std::string>();
  for (const RegisterAction& action : kRegisterActions) {
    CLI::App* command = app.add_subcommand(action.name, action.description);
    command->add_option("LIBRARY", *library, "The component's file; without it the one of this program");
    command->callback([&action, library] {
      callExport(library->empty() ? libraryOfProgram() : *library, action.function);
    });
  }
}

}  // namespace ondrel
