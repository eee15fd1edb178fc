#include "data/embedded/database_files.h"

#include <sys/stat.h>

#include <chrono>
#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "data/embedded/memory_databases.h"
#include "data/embedded/stored_schema.h"

namespace ondrel::sql {
namespace {

constexpr std::string_view kMemoryPrefix = ":memory:";
// What ":memory:" alone stands for.
constexpr std::string_view kProcessStore = ":memory:process";

// A file on disk is known by its place on the disk, so that one which was deleted and made again under the
// same name is another database.
using FileKey = std::pair<dev_t, ino_t>;

// A file under the name by which connections ask for it. For a moment after it was looked up on the disk
// the name is trusted: a page opens a connection for every read.
struct NamedFile {
  static constexpr std::chrono::milliseconds kTrusted{10};

  DatabaseRef database;
  std::chrono::steady_clock::time_point lookedUp;
};

struct Registry {
  std::mutex mutex;
  std::map<FileKey, DatabaseRef> files;
  std::unordered_map<std::string, NamedFile> names;
  std::map<std::string, DatabaseRef, std::less<>> memory;
};

Registry& registry() {
  static Registry instance;
  return instance;
}

DatabaseRef memoryDatabase(const std::string& name) {
  Registry& known = registry();
  {
    const std::scoped_lock guard(known.mutex);
    const auto found = known.memory.find(name);
    if (found != known.memory.end()) return found->second;
  }
  if (name != kProcessStore) failOpen(name, "there is no store of that name in memory");
  static const DatabaseRef processStore = [] {
    DatabaseRef database = newMemoryDatabase(StoreContents::Empty, std::string(kProcessStore));
    enterMemoryDatabase(database->file().path, database);
    return database;
  }();
  return processStore;
}

DatabaseRef databaseOnDisk(Registry& known, const std::string& name) {
  struct stat status {};
  if (::stat(name.c_str(), &status) != 0)
    failOpen(name, "the file does not exist; \"ondrel db create\" makes one");
  if (!S_ISREG(status.st_mode)) failOpen(name, "it is not a file");
  DatabaseRef& database = known.files[{status.st_dev, status.st_ino}];
  if (!database || !database->catalogue().isKnown())
    database = std::make_shared<Database>(DatabaseFile{name, nullptr});
  return database;
}

}  // namespace

DatabaseRef findDatabase(const std::string& name) {
  if (name == kMemoryPrefix) return memoryDatabase(std::string(kProcessStore));
  if (name.starts_with(kMemoryPrefix)) return memoryDatabase(name);
  Registry& known = registry();
  const std::scoped_lock guard(known.mutex);
  NamedFile& named = known.names[name];
  const auto now = std::chrono::steady_clock::now();
  if (!named.database || !named.database->catalogue().isKnown() || now - named.lookedUp > NamedFile::kTrusted)
    named = {databaseOnDisk(known, name), now};
  return named.database;
}

void forgetDatabaseFile(const std::string& path) {
  Registry& known = registry();
  const std::scoped_lock guard(known.mutex);
  known.names.erase(path);
  std::erase_if(known.files, [&](const auto& entry) { return entry.second->file().path == path; });
}

void enterMemoryDatabase(const std::string& name, DatabaseRef database) {
  const std::scoped_lock guard(registry().mutex);
  registry().memory[name] = std::move(database);
}

void removeMemoryDatabase(const std::string& name) {
  const std::scoped_lock guard(registry().mutex);
  registry().memory.erase(name);
}

}  // namespace ondrel::sql
