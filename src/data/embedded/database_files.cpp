#include "data/embedded/database_files.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <chrono>
#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "data/dialect/server_errors.h"
#include "data/embedded/database_upgrade.h"
#include "data/embedded/embedded_store.h"
#include "data/embedded/schema_reader.h"

namespace ondrel::sql {
namespace {

constexpr std::string_view kMemoryPrefix = ":memory:";
// What ":memory:" alone stands for.
constexpr std::string_view kProcessStore = ":memory:process";

[[noreturn]] void failOpen(const std::string& path, std::string_view reason) {
  throw Error(ErrorNumber::ConnectionFailed, kStoreSource,
              fmt::format("Cannot open the database \"{}\": {}", path, reason));
}

// Runs a statement of one column and hands over each value as text.
template <class Take>
void readTexts(sqlite3* handle, const std::string& path, const char* sql, Take take) {
  sqlite3_stmt* statement = nullptr;
  int code = sqlite3_prepare_v2(handle, sql, -1, &statement, nullptr);
  if (code == SQLITE_OK)
    while ((code = sqlite3_step(statement)) == SQLITE_ROW)
      take(std::string_view(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)),
                            static_cast<size_t>(sqlite3_column_bytes(statement, 0))));
  const std::string reason = sqlite3_errmsg(handle);
  sqlite3_finalize(statement);
  if (code != SQLITE_DONE) failOpen(path, reason);
}

// What a newer program wrote may mean what this one does not know.
void refuseNewer(sqlite3* handle, const std::string& path) {
  bool hasVersion = false;
  int version = 0;
  readTexts(handle, path,
            "select name from sqlite_master where type = 'table' and lower(name) = 'schemaversion'",
            [&](std::string_view) { hasVersion = true; });
  if (hasVersion)
    readTexts(handle, path, "select ifnull(max(version), 0) from SchemaVersion",
              [&](std::string_view text) { version = std::stoi(std::string(text)); });
  if (version > schemaVersion())
    failOpen(path, fmt::format("a newer program made it (version {}, this one knows {})", version,
                               schemaVersion()));
}

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
  static const EmbeddedStore processStore(StoreContents::Empty, std::string(kProcessStore));
  return memoryDatabase(name);
}

DatabaseRef databaseOnDisk(Registry& known, const std::string& name) {
  struct stat status {};
  if (::stat(name.c_str(), &status) != 0)
    failOpen(name, "the file does not exist; \"ondrel db create\" makes one");
  if (!S_ISREG(status.st_mode)) failOpen(name, "it is not a file");
  DatabaseRef& database = known.files[{status.st_dev, status.st_ino}];
  if (!database || !database->isKnown()) database = std::make_shared<Database>(DatabaseFile{name, nullptr});
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
  if (!named.database || !named.database->isKnown() || now - named.lookedUp > NamedFile::kTrusted)
    named = {databaseOnDisk(known, name), now};
  return named.database;
}

void forgetDatabaseFile(const std::string& path) {
  Registry& known = registry();
  const std::scoped_lock guard(known.mutex);
  known.names.erase(path);
  std::erase_if(known.files, [&](const auto& entry) { return entry.second->file().path == path; });
}

std::shared_ptr<const Schema> readSchema(sqlite3* handle, const std::string& path) {
  std::string mark;
  readTexts(handle, path, "pragma application_id", [&](std::string_view text) { mark = text; });
  if (mark != std::to_string(kApplicationId)) failOpen(path, "it is not a database of this program");
  refuseNewer(handle, path);
  auto schema = std::make_shared<Schema>();
  readTexts(handle, path, "select text from ondrel_schema order by position", [&](std::string_view text) {
    SchemaStatement statement = readSchemaStatement(text);
    if (statement.kind == SchemaStatement::Kind::Table) schema->add(std::move(statement.table));
  });
  return schema;
}

void markDatabase(Session& session) {
  session.runPlain(fmt::format("pragma application_id = {}", kApplicationId).c_str());
  session.runPlain(
      "create table ondrel_schema (position integer primary key, name text not null collate store, text text not null)");
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
