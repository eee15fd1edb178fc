#include "data/embedded/embedded_store.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <mutex>

#include "data/dialect/server_errors.h"
#include "data/dialect/store_scripts.h"
#include "data/embedded/database_files.h"
#include "data/embedded/embedded_connection.h"
#include "data/embedded/memory_databases.h"
#include "data/embedded/stored_schema.h"

namespace ondrel {

using namespace sql;

// ---- stores in memory

EmbeddedStore::EmbeddedStore(DatabaseRef database)
    : connectionString_(embeddedConnectionString(database->file().path)), database_(std::move(database)) {
  enterMemoryDatabase(database_->file().path, database_);
}

EmbeddedStore::EmbeddedStore(StoreContents contents) : EmbeddedStore(newMemoryDatabase(contents)) {}

EmbeddedStore::EmbeddedStore(StoreContents contents, const std::string& name)
    : EmbeddedStore(newMemoryDatabase(contents, name)) {}

EmbeddedStore::EmbeddedStore(EmbeddedStore&&) noexcept = default;

EmbeddedStore::~EmbeddedStore() {
  if (!database_) return;
  removeMemoryDatabase(database_->file().path);
  recycleMemoryDatabase(std::move(database_));
}

std::unique_ptr<Connection> EmbeddedStore::connect(std::shared_ptr<Clock> clock) const {
  auto connection = connectEmbedded({connectionString_, "", "", std::move(clock)});
  connection->open();
  return connection;
}

EmbeddedStore EmbeddedStore::clone() const {
  return EmbeddedStore(copyMemoryDatabase(*database_));
}

void EmbeddedStore::replaceProcedure(std::string_view name, int least, int most, ProcedureBody body) {
  database_->catalogue().replaceProcedure({std::string(name), least, most, std::move(body)});
}

// ---- files

// A file of the table engine without tables, which keeps a log of changes beside it, its owner's alone: customers and
// cards stand in it.
static void makeFile(const std::string& path, const std::string& named) {
  constexpr mode_t kOwnerOnly = 0600;
  if (const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kOwnerOnly); file >= 0)
    ::close(file);
  sqlite3* handle = nullptr;
  const int code =
      sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  const bool logged =
      code == SQLITE_OK &&
      sqlite3_exec(handle,
                   "pragma journal_mode = wal; create table ondrel_begin (x); drop table ondrel_begin",
                   nullptr, nullptr, nullptr) == SQLITE_OK;
  const std::string reason = handle ? sqlite3_errmsg(handle) : "out of memory";
  sqlite3_close_v2(handle);
  if (!logged)
    throw Error(ErrorNumber::ConnectionFailed, kStoreSource,
                fmt::format("Cannot make the database \"{}\": {}", named, reason));
}

namespace {

void removeDatabaseFile(const std::string& path) {
  forgetDatabaseFile(path);
  for (const char* end : {"", "-wal", "-shm", "-journal"}) std::filesystem::remove(path + end);
}

void fillDatabaseFile(const std::string& path, const std::string& named, StoreContents contents) {
  makeFile(path, named);
  {
    Database database(DatabaseFile{path, nullptr});
    database.catalogue().setSchema(std::make_shared<Schema>());
    database.borrow()->runPlain(markStatements().c_str());
  }
  const auto connection = connectEmbedded({embeddedConnectionString(path), "", "", nullptr});
  connection->open();
  createSchema(*connection);
  if (contents == StoreContents::Sample) loadSampleStore(*connection);
  connection->close();
  forgetDatabaseFile(path);
}

}  // namespace

// Made under another name and put in place whole: who is interrupted leaves no half of a database behind.
void createDatabaseFile(const std::string& path, StoreContents contents) {
  constexpr int kFileAlreadyExists = 58;
  const auto exists = [&path] {
    return Error(static_cast<ErrorNumber>(kFileAlreadyExists), kStoreSource,
                 fmt::format("The file \"{}\" exists already", path));
  };
  if (std::filesystem::exists(path)) throw exists();
  const std::string unfinished = path + ".new";
  forgetDatabaseFile(path);
  for (const char* leftOver : {"-wal", "-shm", "-journal"}) std::filesystem::remove(path + leftOver);
  removeDatabaseFile(unfinished);
  fillDatabaseFile(unfinished, path, contents);
  std::error_code problem;
  std::filesystem::create_hard_link(unfinished, path, problem);
  removeDatabaseFile(unfinished);
  if (problem == std::errc::file_exists) throw exists();
  if (problem)
    throw Error(ErrorNumber::ConnectionFailed, kStoreSource,
                fmt::format("Cannot make the database \"{}\": {}", path, problem.message()));
}

}  // namespace ondrel
