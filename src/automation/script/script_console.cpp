#include "automation/script/script_console.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>

#include "automation/dispatch/values.h"
#include "automation/drivers.h"
#include "automation/script/database_access.h"
#include "automation/script/script_engine.h"
#include "data/embedded/embedded_store.h"

namespace ondrel {
namespace {

std::string readFile(const std::string& fileName) {
  if (fileName == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  std::ifstream file(fileName, std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(file), {});
  if (!file) throw Error(ErrorNumber::FileNotFound, "ondrel", "File not found: " + fileName);
  return text;
}

ApartmentRef makeApartment(const ConsoleOptions& options) {
  auto apartment = std::make_shared<Apartment>();
  apartment->connect = connectToDatabase;
  if (options.now) apartment->clock = std::make_shared<FixedClock>(*options.now);
  apartment->trace.start();
  return apartment;
}

void writeTo(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
}

}  // namespace

int runScript(std::string_view source, std::string_view fileName, const ConsoleOptions& options,
              const std::function<void(std::string_view)>& print,
              const std::function<void(std::string_view)>& complain) {
  std::optional<EmbeddedStore> store;
  if (!options.connectionString)
    store.emplace(options.emptyStore ? StoreContents::Empty : StoreContents::Sample);
  const ApartmentRef apartment = makeApartment(options);

  ScriptEngine engine(apartment, print);
  const auto database = std::make_shared<DatabaseAccess>(
      *apartment, store ? store->connectionString() : *options.connectionString);
  engine.define("Database", Variant(database));
  engine.define("arguments", toVariant(options.arguments));
  const ScriptOutcome outcome = engine.run(source, fileName);
  if (outcome.failure) complain(outcome.failure->text() + "\n");
  return outcome.exitCode;
}

int runScriptFile(const std::string& fileName, const ConsoleOptions& options) {
  const std::string source = readFile(fileName);
  return runScript(
      source, fileName, options, [](std::string_view text) { writeTo(stdout, text); },
      [](std::string_view text) {
        std::fflush(stdout);
        writeTo(stderr, text);
      });
}

}  // namespace ondrel
