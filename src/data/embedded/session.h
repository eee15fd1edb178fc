#pragma once

#include <sqlite3.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/variant.h"
#include "data/dialect/catalogue.h"
#include "data/dialect/shape.h"
#include "data/dialect/translation.h"
#include "data/embedded/functions.h"
#include "data/recordset/recordset.h"

namespace ondrel::sql {

struct PreparedStatement;

// Seconds that a statement may take unless the connection is told another time.
inline constexpr int kDefaultTimeoutSeconds = 30;

// How a handle to a database is opened.
struct DatabaseFile {
  std::string path;
  const char* fileSystem = nullptr;  // the host's unless told
};

// One handle to a database with the statements that it has prepared, by shape: what a server process
// keeps for a client. A connection borrows one while it is open.
class Session {
 public:
  Session(Catalogue& catalogue, const DatabaseFile& file);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Readies the session for a new borrower.
  void lend(std::shared_ptr<Clock> clock, int timeoutSeconds);
  // 0 is no limit.
  void setTimeout(int seconds);

  // Runs one T-SQL statement. With `fetch` the result is its table, or one that is not open when it has
  // none; without, nothing.
  RecordsetRef run(std::string_view sql, bool fetch);
  // Runs one T-SQL statement, also one that changes the tables.
  void execute(std::string_view sql);
  // Runs a create or drop statement and enters it in the schema.
  void define(std::string_view statement);
  // Puts another declaration in place of a table's; what it says is done to the table already.
  void redefine(std::string_view table, std::string_view statement);
  // Runs a statement of the table engine itself, which is kept prepared. `sql` is a text of the program.
  void runKept(std::string_view sql);
  // Runs statements of the table engine itself.
  void runPlain(const char* sql);

  void begin() { runKept("begin immediate"); }
  void commit() {
    runKept("commit");
    definedInTransaction_ = false;
  }
  // Discards a transaction that is open. Never fails: it runs when a connection goes.
  void rollback();
  bool inTransaction() const { return sqlite3_get_autocommit(handle_) == 0; }
  // Drops what is prepared when the schema is not the one of the last time.
  void useSchema(const std::shared_ptr<const Schema>& schema);
  // Drops what is prepared: the schema has changed.
  void forgetStatements();

  sqlite3* handle() const { return handle_; }

 private:
  using Prepared = PreparedStatement;
  struct KeyHash {
    using is_transparent = void;
    size_t operator()(std::string_view key) const { return std::hash<std::string_view>()(key); }
  };
  class Call;

  bool isLate();
  Prepared& prepare(std::string_view sql);
  Prepared& find(std::string_view sql);
  Prepared& enter(std::string_view key, std::string_view sql);
  void trim();
  void bind(Prepared& prepared);
  static SqlValue literalValue(const Token& literal, const ValueConversion& conversion, std::string& made);
  static SqlValue doubledValue(const Token& literal, const ValueConversion& conversion, std::string& made);
  RecordsetRef step(Prepared& prepared, bool fetch);
  RecordsetRef fetchRows(Prepared& prepared);
  RecordsetRef call(const Translation& translation, bool fetch);
  RecordsetRef runWhole(const std::function<RecordsetRef()>& body);
  std::vector<Variant> callArguments(const Translation& translation) const;
  [[noreturn]] void fail(int code);

  Catalogue& catalogue_;
  std::string path_;
  sqlite3* handle_ = nullptr;
  FunctionContext context_;
  StatementShape shape_;
  std::string fixedKey_;
  std::unordered_map<std::string, std::unique_ptr<Prepared>, KeyHash, std::equal_to<>> prepared_;
  Prepared* last_ = nullptr;
  std::uint64_t uses_ = 0;
  std::shared_ptr<const Schema> schema_;
  bool definedInTransaction_ = false;
  int timeoutSeconds_ = 0;
  std::optional<std::chrono::steady_clock::time_point> deadline_;  // of a statement that runs long
};

}  // namespace ondrel::sql
