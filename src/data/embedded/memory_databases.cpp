#include "data/embedded/memory_databases.h"

#include <fmt/format.h>

#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

#include "data/dialect/store_scripts.h"
#include "data/embedded/memory_files.h"
#include "data/embedded/stored_schema.h"

namespace ondrel::sql {
namespace {

constexpr std::string_view kUnnamed = ":memory:store-";

DatabaseRef databaseOf(const std::string& name, std::string_view image,
                       std::shared_ptr<const Schema> schema) {
  memory_files::install();
  memory_files::create(name, image);
  auto database = std::make_shared<Database>(DatabaseFile{name, memory_files::kFileSystem});
  database->catalogue().setSchema(std::move(schema));
  return database;
}

std::string unusedName() {
  static std::atomic<int> counter{0};
  return fmt::format("{}{}", kUnnamed, ++counter);
}

// The images that new stores are copies of, and the databases of stores that are gone: their sessions have
// the statements of a store prepared, which hold for the next store too as long as its tables are the same.
class Templates {
 public:
  static Templates& instance() {
    static Templates templates;
    return templates;
  }

  const std::string& image(StoreContents contents) {
    return contents == StoreContents::Empty ? empty_ : sample();
  }
  const std::shared_ptr<const Schema>& schema() const { return schema_; }

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
    return databaseOf(unusedName(), image, schema);
  }

  void recycle(DatabaseRef database) {
    const bool unchanged = database->catalogue().schema() == schema_ && database.use_count() == 1;
    const std::scoped_lock guard(mutex_);
    if (unchanged && spare_.size() < kSpares && database->file().path.starts_with(kUnnamed)) {
      database->catalogue().restoreProcedures();
      spare_.push_back(std::move(database));
    } else {
      database->closeSessions();
      memory_files::remove(database->file().path);
    }
  }

 private:
  static constexpr size_t kSpares = 8;

  Templates() {
    const DatabaseRef database = databaseOf(unusedName(), "", std::make_shared<Schema>());
    empty_ = build(*database, [](Session& session, const StatementRunner& run) {
      session.runPlain(markStatements().c_str());
      createSchema(run);
    });
    schema_ = database->catalogue().schema();
  }

  const std::string& sample() {
    std::call_once(sampleOnce_, [&] {
      const DatabaseRef database = databaseOf(unusedName(), empty_, schema_);
      sample_ = build(*database, [](Session&, const StatementRunner& run) { loadSampleStore(run); });
    });
    return sample_;
  }

  // The image of a database that `fill` has filled, which is gone then.
  template <class Fill>
  static std::string build(Database& database, Fill fill) {
    {
      const std::unique_ptr<Session> session = database.borrow();
      session->lend(nullptr, kDefaultTimeoutSeconds);
      session->begin();
      fill(*session, [&](std::string_view statement) { session->execute(statement); });
      session->commit();
    }
    std::string image = memory_files::contents(database.file().path);
    memory_files::remove(database.file().path);
    return image;
  }

  std::mutex mutex_;
  std::shared_ptr<const Schema> schema_;
  std::string empty_;
  std::string sample_;
  std::once_flag sampleOnce_;
  std::vector<DatabaseRef> spare_;
};

}  // namespace

DatabaseRef newMemoryDatabase(StoreContents contents) {
  Templates& templates = Templates::instance();
  return templates.make(templates.image(contents), templates.schema());
}

DatabaseRef newMemoryDatabase(StoreContents contents, const std::string& name) {
  Templates& templates = Templates::instance();
  return databaseOf(name, templates.image(contents), templates.schema());
}

DatabaseRef copyMemoryDatabase(Database& database) {
  return Templates::instance().make(memory_files::contents(database.file().path),
                                    database.catalogue().schema());
}

void recycleMemoryDatabase(DatabaseRef database) {
  Templates::instance().recycle(std::move(database));
}

}  // namespace ondrel::sql
