#include "data/embedded/database_upgrade.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>

#include "base/text.h"
#include "data/dialect/server_errors.h"
#include "data/dialect/store_scripts.h"
#include "data/dialect/store_texts.h"
#include "data/embedded/database_files.h"
#include "data/embedded/embedded_connection.h"
#include "data/embedded/sqlite_schema.h"

namespace ondrel {

using namespace sql;

namespace {

// One thing that the schema says and the database has not.
struct Step {
  std::string sentence;
  std::function<void(Session&)> take;
};

struct StoredIndex {
  std::string name;
  std::string sql;
};

// What stands in the file: declarations by lower-cased table, and indices by lower-cased name.
struct Stored {
  std::map<std::string, std::string> tables;
  std::map<std::string, StoredIndex> indices;
};

// The rows of a query of the table engine, two columns each.
template <class Take>
void readPairs(sqlite3* handle, const char* sql, Take take) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(handle, sql, -1, &statement, nullptr) != SQLITE_OK)
    throw Error(ErrorNumber::StatementFailed, kStoreSource, sqlite3_errmsg(handle));
  const auto text = [&](int column) {
    const auto* value = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return std::string(value ? value : "");
  };
  while (sqlite3_step(statement) == SQLITE_ROW) take(text(0), text(1));
  sqlite3_finalize(statement);
}

Stored readStored(sqlite3* handle) {
  Stored stored;
  readPairs(handle, "select name, text from ondrel_schema order by position",
            [&](const std::string& name, const std::string& text) {
              if (readSchemaStatement(text).kind == SchemaStatement::Kind::Table)
                stored.tables[toLower(name)] = text;
            });
  readPairs(handle, "select name, sql from sqlite_master where type = 'index' and sql is not null",
            [&](const std::string& name, const std::string& sql) {
              stored.indices[toLower(name)] = {name, sql};
            });
  return stored;
}

// The declaration with more columns at its end, where the table engine adds them. A comment may end the last line.
std::string withColumn(const std::string& declaration, const std::string& column) {
  const size_t end = declaration.rfind(')');
  return fmt::format("{}\n  , {}\n)", declaration.substr(0, end), column);
}

void addColumns(const SchemaStatement& declared, Stored& stored, std::vector<Step>& steps) {
  std::string& text = stored.tables[toLower(declared.tableName)];
  const TableDefinition known = readSchemaStatement(text).table;
  for (size_t k = 0; k < declared.table.columns.size(); ++k) {
    if (known.find(declared.table.columns[k].name) >= 0) continue;
    text = withColumn(text, declared.columns[k].text);
    const std::string sql =
        fmt::format("alter table \"{}\" add column {}", known.name, sqliteColumn(declared, k));
    steps.push_back({fmt::format("column {}.{}", known.name, declared.table.columns[k].name),
                     [sql, text, table = known.name](Session& session) {
                       session.runPlain(sql.c_str());
                       session.redefine(table, text);
                     }});
  }
}

void addIndex(const SchemaStatement& declared, const Stored& stored, std::vector<Step>& steps) {
  const auto found = stored.indices.find(toLower(declared.indexName));
  if (found == stored.indices.end()) {
    steps.push_back(
        {"index " + declared.indexName, [text = declared.text](Session& session) { session.define(text); }});
    return;
  }
  if (equalsIgnoringCase(found->second.sql, sqliteStatement(declared))) return;
  const std::string drop = fmt::format(
      "drop index \"{0}\"; delete from ondrel_schema where lower(text) like 'create%index {0} on %'",
      toLower(found->second.name));
  steps.push_back(
      {"index " + declared.indexName + " with other columns", [drop, text = declared.text](Session& session) {
         session.runPlain(drop.c_str());
         session.define(text);
       }});
}

std::vector<Step> stepsFor(sqlite3* handle) {
  Stored stored = readStored(handle);
  std::vector<Step> steps;
  for (const std::string_view statement : splitScript(schemaText())) {
    const SchemaStatement declared = readSchemaStatement(statement);
    if (declared.kind == SchemaStatement::Kind::Index)
      addIndex(declared, stored, steps);
    else if (stored.tables.contains(toLower(declared.tableName)))
      addColumns(declared, stored, steps);
    else
      steps.push_back({"table " + declared.tableName,
                       [text = declared.text](Session& session) { session.define(text); }});
  }
  return steps;
}

std::vector<std::string> sentencesOf(const std::vector<Step>& steps) {
  std::vector<std::string> sentences;
  for (const Step& step : steps) sentences.push_back(step.sentence);
  return sentences;
}

int storedVersion(sqlite3* handle) {
  int version = 0;
  bool isThere = false;
  readPairs(handle,
            "select name, 0 from sqlite_master where type = 'table' and lower(name) = 'schemaversion'",
            [&](const std::string&, const std::string&) { isThere = true; });
  if (isThere)
    readPairs(handle, "select ifnull(max(version), 0), 0 from SchemaVersion",
              [&](const std::string& text, const std::string&) { version = std::stoi(text); });
  return version;
}

std::string freeName(const std::string& name) {
  std::string result = name;
  for (int k = 2; std::filesystem::exists(result); ++k) result = fmt::format("{}-{}", name, k);
  return result;
}

// The session of a database that this process may have open already.
class Borrowed {
 public:
  explicit Borrowed(const std::string& path) : database_(findDatabase(path)), session_(database_->borrow()) {
    session_->lend(std::make_shared<SystemClock>(), 0);
  }
  ~Borrowed() { database_->giveBack(std::move(session_)); }
  Borrowed(const Borrowed&) = delete;
  Borrowed& operator=(const Borrowed&) = delete;

  Session* operator->() { return session_.get(); }
  Session& operator*() { return *session_; }

 private:
  DatabaseRef database_;
  std::unique_ptr<Session> session_;
};

// On the disk, name and all, before anything is done to what it copies.
void makeSafe(const std::string& path) {
  for (const std::string& name : {path, std::filesystem::absolute(path).parent_path().string()}) {
    const int file = ::open(name.c_str(), O_RDONLY);
    const bool isSafe = file >= 0 && ::fsync(file) == 0;
    if (file >= 0) ::close(file);
    if (!isSafe)
      throw Error(ErrorNumber::ConnectionFailed, kStoreSource,
                  fmt::format("Cannot save the copy \"{}\"", path));
  }
}

// A copy is made without the log of changes that a store's file keeps beside it.
void keepLog(const std::string& path) {
  sqlite3* handle = nullptr;
  const bool isDone =
      sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK &&
      sqlite3_exec(handle, "pragma journal_mode = wal", nullptr, nullptr, nullptr) == SQLITE_OK;
  const std::string reason = handle ? sqlite3_errmsg(handle) : "out of memory";
  sqlite3_close_v2(handle);
  if (!isDone)
    throw Error(ErrorNumber::ConnectionFailed, kStoreSource,
                fmt::format("Cannot finish the copy \"{}\": {}", path, reason));
}

void copyTo(Session& session, const std::string& target) {
  session.runPlain(fmt::format("vacuum into '{}'", replaceAll(target, "'", "''")).c_str());
  keepLog(target);
  makeSafe(target);
}

}  // namespace

std::vector<std::string> missingFromDatabase(const std::string& path) {
  Borrowed session(path);
  return sentencesOf(stepsFor(session->handle()));
}

DatabaseUpgrade upgradeDatabase(const std::string& path) {
  Borrowed session(path);
  DatabaseUpgrade upgrade;
  upgrade.from = storedVersion(session->handle());
  upgrade.to = schemaVersion();
  if (upgrade.from == upgrade.to && stepsFor(session->handle()).empty()) return upgrade;
  upgrade.copy = freeName(fmt::format("{}.before-{}", path, upgrade.to));
  copyTo(*session, upgrade.copy);
  session->begin();
  try {
    const std::vector<Step> steps = stepsFor(session->handle());
    for (const Step& step : steps) step.take(*session);
    session->runPlain("delete from SchemaVersion");
    session->runPlain(
        fmt::format("insert into SchemaVersion (version, changedDate) values ({}, getdate())", upgrade.to)
            .c_str());
    session->commit();
    upgrade.added = sentencesOf(steps);
  } catch (const Error&) {
    session->rollback();
    throw;
  }
  return upgrade;
}

void backUpDatabase(const std::string& path, const std::string& target) {
  constexpr int kFileAlreadyExists = 58;
  if (std::filesystem::exists(target))
    throw Error(static_cast<ErrorNumber>(kFileAlreadyExists), kStoreSource,
                fmt::format("The file \"{}\" exists already", target));
  Borrowed session(path);
  copyTo(*session, target);
}

}  // namespace ondrel
