#include "data/embedded/embedded_store.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <mutex>

#include "data/dialect/server_errors.h"
#include "data/dialect/store_texts.h"
#include "data/embedded/database.h"
#include "data/embedded/database_files.h"
#include "data/embedded/database_upgrade.h"
#include "data/embedded/embedded_connection.h"
#include "data/embedded/memory_files.h"
#include "data/embedded/schema_reader.h"

namespace ondrel {

using namespace sql;

namespace {

constexpr std::string_view kNamePrefix = ":memory:";

DatabaseRef newMemoryDatabase(const std::string& name, std::string_view image,
                              std::shared_ptr<const Schema> schema) {
  memory_files::install();
  memory_files::create(name, image);
  auto database = std::make_shared<Database>(DatabaseFile{name, memory_files::kFileSystem});
  database->setSchema(std::move(schema));
  return database;
}

std::string unusedName() {
  static std::atomic<int> counter{0};
  return fmt::format("{}store-{}", kNamePrefix, ++counter);
}

// The images that new stores are copies of, and the databases of stores that are gone: their sessions have
// the statements of a store prepared, which hold for the next store too as long as its tables are the same.
class Templates {
 public:
  static Templates& instance() {
    static Templates templates;
    return templates;
  }

  DatabaseRef make(StoreContents contents) {
    return make(contents == StoreContents::Empty ? empty_ : sample(), schema_);
  }

  DatabaseRef make(std::string_view image, const std::shared_ptr<const Schema>& schema) {
    {
      const std::scoped_lock guard(mutex_);
      if (schema == schema_ && !spare_.empty()) {
        DatabaseRef database = std::move(spare_.back());
        spare_.pop_back();
        memory_files::replace(database->file().path, image);
        return database;
      }
    }
    return newMemoryDatabase(unusedName(), image, schema);
  }

  DatabaseRef make(StoreContents contents, const std::string& name) {
    return newMemoryDatabase(name, contents == StoreContents::Empty ? empty_ : sample(), schema_);
  }

  void recycle(DatabaseRef database) {
    const bool unchanged = database->schema() == schema_ && database.use_count() == 1;
    const std::scoped_lock guard(mutex_);
    if (unchanged && spare_.size() < kSpares && database->file().path.starts_with(kStoreNames)) {
      database->restoreProcedures();
      spare_.push_back(std::move(database));
    } else {
      database->closeSessions();
      memory_files::remove(database->file().path);
    }
  }

 private:
  static constexpr size_t kSpares = 8;
  static constexpr std::string_view kStoreNames = ":memory:store-";

  Templates() {
    const DatabaseRef database = newMemoryDatabase(unusedName(), "", std::make_shared<Schema>());
    build(database, [&](Connection& connection) {
      const std::unique_ptr<Session> session = database->borrow();
      markDatabase(*session);
      createSchema(connection);
    });
    schema_ = database->schema();
    empty_ = memory_files::contents(database->file().path);
    memory_files::remove(database->file().path);
  }

  const std::string& sample() {
    std::call_once(sampleOnce_, [&] {
      const DatabaseRef database = newMemoryDatabase(unusedName(), empty_, schema_);
      build(database, loadSampleStore);
      sample_ = memory_files::contents(database->file().path);
      memory_files::remove(database->file().path);
    });
    return sample_;
  }

  template <class Fill>
  static void build(const DatabaseRef& database, Fill fill) {
    enterMemoryDatabase(database->file().path, database);
    const auto connection =
        connectEmbedded({embeddedConnectionString(database->file().path), "", "", nullptr});
    connection->open();
    fill(*connection);
    connection->close();
    removeMemoryDatabase(database->file().path);
    database->closeSessions();
  }

  std::mutex mutex_;
  std::shared_ptr<const Schema> schema_;
  std::string empty_;
  std::string sample_;
  std::once_flag sampleOnce_;
  std::vector<DatabaseRef> spare_;
};

}  // namespace

// ---- stores in memory

EmbeddedStore::EmbeddedStore(DatabaseRef database)
    : connectionString_(embeddedConnectionString(database->file().path)), database_(std::move(database)) {
  enterMemoryDatabase(database_->file().path, database_);
}

EmbeddedStore::EmbeddedStore(StoreContents contents) : EmbeddedStore(Templates::instance().make(contents)) {}

EmbeddedStore::EmbeddedStore(StoreContents contents, const std::string& name)
    : EmbeddedStore(Templates::instance().make(contents, name)) {}

EmbeddedStore::EmbeddedStore(EmbeddedStore&&) noexcept = default;

EmbeddedStore::~EmbeddedStore() {
  if (!database_) return;
  removeMemoryDatabase(database_->file().path);
  Templates::instance().recycle(std::move(database_));
}

std::unique_ptr<Connection> EmbeddedStore::connect(std::shared_ptr<Clock> clock) const {
  auto connection = connectEmbedded({connectionString_, "", "", std::move(clock)});
  connection->open();
  return connection;
}

EmbeddedStore EmbeddedStore::clone() const {
  return EmbeddedStore(
      Templates::instance().make(memory_files::contents(database_->file().path), database_->schema()));
}

void EmbeddedStore::replaceProcedure(std::string_view name, int least, int most, ProcedureBody body) {
  database_->replaceProcedure({std::string(name), least, most, std::move(body)});
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
    database.setSchema(std::make_shared<Schema>());
    markDatabase(*database.borrow());
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

// ---- scripts

void runScript(Connection& connection, std::string_view script) {
  for (const std::string_view statement : splitScript(script)) connection.execute(statement);
}

void createSchema(Connection& connection) {
  connection.begin();
  runScript(connection, schemaText());
  connection.execute(fmt::format("insert into SchemaVersion (version, changedDate) values ({}, getdate())",
                                 schemaVersion()));
  connection.commit();
}

void loadSampleStore(Connection& connection) {
  connection.begin();
  for (const std::string_view text : sampleTexts()) runScript(connection, text);
  connection.commit();
}

}  // namespace ondrel
