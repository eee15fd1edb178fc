#include "data/embedded/session.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "data/dialect/server_errors.h"
#include "data/embedded/sqlite_emitter.h"
#include "data/embedded/sqlite_schema.h"
#include "data/embedded/stored_schema.h"

namespace ondrel::sql {
namespace {

constexpr int kNoLimitSeconds = 14 * 86'400;  // what a time limit of 0 comes to: two weeks
constexpr size_t kKeptShapes = 1000;
constexpr size_t kRowsExpected = 1000;       // at most, of a statement that gave as many the last time
constexpr int kStepsBetweenChecks = 50'000;  // of the engine, before the clock is looked at

// Leaves a statement ready for its next run, whatever happens.
class RunningStatement {
 public:
  explicit RunningStatement(sqlite3_stmt* statement) : statement_(statement) {}
  ~RunningStatement() { sqlite3_reset(statement_); }
  RunningStatement(const RunningStatement&) = delete;
  RunningStatement& operator=(const RunningStatement&) = delete;

 private:
  sqlite3_stmt* statement_;
};

constexpr const char* kFilePragmas = "pragma synchronous = full; pragma temp_store = memory";
constexpr const char* kMemoryPragmas =
    "pragma journal_mode = memory; pragma cache_spill = off; pragma temp_store = memory";

// Whole numbers of unknown size: the column takes Long when all of its values fit.
bool isUnsettled(const ResolvedType& type) {
  return type.category == Category::Numeral || type.declared.type == SqlType::BigInt;
}

FieldType resultType(const ResolvedType& type) {
  if (type.category == Category::Null) return FieldType::Long;
  return isUnsettled(type) ? FieldType::Double : fieldTypeOf(type.declared);
}

// Puts a column of the row that the statement stands on into a new cell. Gives whether a column that takes its
// type from its values must hold Doubles for this one.
bool takeValue(sqlite3_stmt* statement, int column, Category category, ColumnStore& cells, size_t row) {
  const int stored = sqlite3_column_type(statement, column);
  const auto text = [&] {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return std::string_view(bytes, static_cast<size_t>(sqlite3_column_bytes(statement, column)));
  };
  if (stored == SQLITE_NULL) return false;  // as a new cell is
  if (category == Category::Text) {
    cells.write(row, text());
  } else if (category == Category::Bit) {
    cells.write(row, sqlite3_column_int(statement, column) != 0);
  } else if (category == Category::Date) {
    cells.write(row, dateOfText(text()));
  } else if (category == Category::Number || stored == SQLITE_FLOAT) {
    cells.write(row, sqlite3_column_double(statement, column));
    return true;
  } else if (stored == SQLITE_INTEGER) {
    const std::int64_t whole = sqlite3_column_int64(statement, column);
    cells.write(row, whole);
    return !std::in_range<std::int32_t>(whole);
  } else {
    cells.write(row, text());
  }
  return false;
}

void bindText(sqlite3_stmt* statement, int index, std::string_view text) {
  sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

// A text is bound where it stands.
void bindValue(sqlite3_stmt* statement, int index, const SqlValue& value) {
  switch (value.kind) {
    case SqlValue::Kind::Null:
      sqlite3_bind_null(statement, index);
      return;
    case SqlValue::Kind::Integer:
      sqlite3_bind_int64(statement, index, value.integer);
      return;
    case SqlValue::Kind::Real:
      sqlite3_bind_double(statement, index, value.real);
      return;
    case SqlValue::Kind::Text:
      bindText(statement, index, value.text);
  }
}

void finalize(sqlite3_stmt* statement) {
  sqlite3_finalize(statement);
}

}  // namespace

// What a parameter holds from the last run: the literal as it stood, and what a conversion made of it.
struct Session::Parameter {
  std::string literal, made;
  bool isBound = false;
};

struct Session::Prepared {
  Translation translation;
  std::unique_ptr<sqlite3_stmt, void (*)(sqlite3_stmt*)> statement{nullptr, finalize};
  std::vector<ColumnSpec> layout;  // of the result
  size_t rows = 0;                 // of the last one
  std::uint64_t lastUse = 0;
  std::vector<Parameter> parameters;
  StatementPattern pattern;
  std::array<Prepared*, 2> followers{};  // what came after it, the latest first

  explicit Prepared(StatementPattern itsPattern) : pattern(std::move(itsPattern)) {}
  void follow(Prepared* next) {
    if (followers[0] == next) return;
    followers[1] = std::exchange(followers[0], next);
  }
};

// ---- opening and closing

Session::Session(Catalogue& catalogue, const DatabaseFile& file) : catalogue_(catalogue), path_(file.path) {
  const int opened = sqlite3_open_v2(file.path.c_str(), &handle_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                                     file.fileSystem);
  if (opened != SQLITE_OK) {
    const std::string reason = handle_ ? sqlite3_errmsg(handle_) : "out of memory";
    sqlite3_close_v2(handle_);
    throw Error(ErrorNumber::ConnectionFailed, kStoreSource,
                fmt::format("Cannot open the database \"{}\": {}", file.path, reason));
  }
  try {
    sqlite3_extended_result_codes(handle_, 1);
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    context_.handle = handle_;
    registerFunctions(handle_, context_);
    sqlite3_progress_handler(
        handle_, kStepsBetweenChecks,
        [](void* session) { return int{static_cast<Session*>(session)->isLate()}; }, this);
    setTimeout(kDefaultTimeoutSeconds);
    runPlain(file.fileSystem ? kMemoryPragmas : kFilePragmas);
  } catch (...) {
    context_.releaseStatements();
    sqlite3_close_v2(handle_);
    throw;
  }
}

Session::~Session() {
  forgetStatements();
  sqlite3_close_v2(handle_);
}

void Session::lend(std::shared_ptr<Clock> clock, int timeoutSeconds) {
  context_.clock = std::move(clock);
  context_.identity.reset();
  context_.rowCount = 0;
  setTimeout(timeoutSeconds);
}

void Session::setTimeout(int seconds) {
  if (seconds == timeoutSeconds_) return;
  constexpr int kMillisecondsPerSecond = 1000;
  timeoutSeconds_ = seconds > 0 ? seconds : kNoLimitSeconds;
  sqlite3_busy_timeout(handle_, timeoutSeconds_ * kMillisecondsPerSecond);
}

void Session::useSchema(const std::shared_ptr<const Schema>& schema) {
  if (schema_ != schema) forgetStatements();
  schema_ = schema;
}

void Session::forgetStatements() {
  last_ = nullptr;
  prepared_.clear();
  context_.releaseStatements();
}

// ---- running

RecordsetRef Session::run(std::string_view sql, bool fetch) {
  context_.statementTime.reset();
  context_.failure.reset();
  deadline_.reset();
  Prepared& prepared = prepare(sql);
  switch (prepared.translation.kind) {
    case StatementKind::Call:
      return call(prepared.translation, fetch);
    case StatementKind::Setting:
      return fetch ? Recordset::create() : nullptr;
    default:
      break;
  }
  const RunningStatement running(prepared.statement.get());
  bind(prepared);
  return step(prepared, fetch);
}

// The clock is looked at for the first time when a statement has been at work for a moment.
bool Session::isLate() {
  const auto now = std::chrono::steady_clock::now();
  if (!deadline_) deadline_ = now + std::chrono::seconds(timeoutSeconds_);
  return now > *deadline_;
}

// Statements come in runs and in rounds: the one that followed the statement before when that was last sent is
// tried first, and only what is of another pattern is taken apart.
Session::Prepared& Session::prepare(std::string_view sql) {
  Prepared* prepared = nullptr;
  if (last_)
    for (Prepared* follower : last_->followers)
      if (!prepared && follower && shape_.assign(sql, follower->pattern)) prepared = follower;
  if (!prepared) prepared = &find(sql);
  if (last_) last_->follow(prepared);
  last_ = prepared;
  prepared->lastUse = ++uses_;
  return *prepared;
}

Session::Prepared& Session::find(std::string_view sql) {
  shape_.assign(sql);
  const auto found = prepared_.find(shape_.key());
  Prepared* prepared = found == prepared_.end() ? &enter(shape_.key(), sql) : found->second.get();
  if (!prepared->translation.fixedLiterals.empty()) {
    fixedKey_ = shape_.key();
    for (const int literal : prepared->translation.fixedLiterals)
      fixedKey_.append(shape_.literals()[static_cast<size_t>(literal)].text)
          .append(1, StatementShape::kTextMark);
    const auto fixed = prepared_.find(fixedKey_);
    prepared = fixed == prepared_.end() ? &enter(fixedKey_, sql) : fixed->second.get();
  }
  return *prepared;
}

Session::Prepared& Session::enter(std::string_view key, std::string_view sql) {
  Translation made = translateForSqlite(sql, *catalogue_.schema());
  auto prepared = std::make_unique<Prepared>(StatementPattern(sql, made.fixedLiterals));
  prepared->translation = std::move(made);
  const Translation& translation = prepared->translation;
  if (!translation.sql.empty()) {
    sqlite3_stmt* statement = nullptr;
    const int code =
        sqlite3_prepare_v3(handle_, translation.sql.c_str(), static_cast<int>(translation.sql.size()) + 1,
                           SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (code != SQLITE_OK) fail(code);
    prepared->statement.reset(statement);
  }
  prepared->parameters.resize(translation.parameters.size());
  for (const OutputColumn& column : translation.columns) {
    const int size = column.type.category == Category::Text ? column.type.declared.size : 0;
    prepared->layout.push_back({column.name, resultType(column.type), size, true});
  }
  trim();
  prepared->lastUse = ++uses_;
  auto& place = prepared_[std::string(key)];
  place = std::move(prepared);
  return *place;
}

// Drops the older half of the shapes when there are too many.
void Session::trim() {
  if (prepared_.size() < kKeptShapes) return;
  std::vector<std::uint64_t> used;
  for (const auto& [key, prepared] : prepared_) used.push_back(prepared->lastUse);
  const auto middle = used.begin() + static_cast<std::ptrdiff_t>(used.size() / 2);
  std::nth_element(used.begin(), middle, used.end());
  std::erase_if(prepared_, [&](const auto& entry) { return entry.second->lastUse < *middle; });
  last_ = nullptr;
  for (const auto& [key, prepared] : prepared_) prepared->followers = {};
}

// A parameter that is to hold what it holds from the last run is left alone: of the lines of a ticket most
// values are those of the line before.
void Session::bind(Prepared& prepared) {
  const std::vector<BoundLiteral>& places = prepared.translation.parameters;
  for (size_t k = 0; k < places.size(); ++k) {
    const Token& literal = shape_.literals()[static_cast<size_t>(places[k].literal)];
    Parameter& parameter = prepared.parameters[k];
    if (parameter.isBound && parameter.literal.size() == literal.text.size() &&
        isSame(parameter.literal.data(), literal.text.data(), literal.text.size()))
      continue;
    parameter.isBound = false;
    parameter.literal = literal.text;
    Token kept = literal;
    kept.text = parameter.literal;
    bindValue(prepared.statement.get(), static_cast<int>(k) + 1,
              literalValue(kept, places[k].conversion, parameter.made));
    parameter.isBound = true;
  }
}

// The value of a literal; a text views the literal or `made`, where a conversion puts what it makes.
SqlValue Session::literalValue(const Token& literal, const ValueConversion& conversion, std::string& made) {
  const Conversion kind = conversion.kind;
  if (literal.kind == TokenKind::Number && kind != Conversion::ToText && kind != Conversion::CutText) {
    const SqlValue number = numberValue(literal.text);
    return kind == Conversion::None ? number : converted(number, conversion, made);
  }
  if (literal.doubled) return doubledValue(literal, conversion, made);
  if (kind == Conversion::None) return SqlValue::of(literal.text);
  return converted(SqlValue::of(literal.text), conversion, made);
}

SqlValue Session::doubledValue(const Token& literal, const ValueConversion& conversion, std::string& made) {
  const std::string plain = unquoted(literal);
  SqlValue value = converted(SqlValue::of(std::string_view(plain)), conversion, made);
  // What still views the plain text must outlive it.
  if (value.kind == SqlValue::Kind::Text && value.text.data() != made.data())
    value = SqlValue::of(std::string_view(made = value.text));
  return value;
}

RecordsetRef Session::step(Prepared& prepared, bool fetch) {
  if (prepared.translation.kind == StatementKind::Select && fetch) return fetchRows(prepared);
  int code = SQLITE_ROW;
  while (code == SQLITE_ROW) code = sqlite3_step(prepared.statement.get());
  if (code != SQLITE_DONE) fail(code);
  if (prepared.translation.kind != StatementKind::Select) {
    context_.rowCount = sqlite3_changes64(handle_);
    if (prepared.translation.movesIdentity && context_.rowCount > 0)
      context_.identity = sqlite3_last_insert_rowid(handle_);
  }
  return fetch ? Recordset::create() : nullptr;
}

RecordsetRef Session::fetchRows(Prepared& prepared) {
  sqlite3_stmt* statement = prepared.statement.get();
  const std::vector<OutputColumn>& columns = prepared.translation.columns;
  RecordsetRef table = Recordset::create(prepared.layout);
  table->reserveRows(prepared.rows);
  std::vector<bool> isReal(columns.size());
  size_t rows = 0;
  int code = 0;
  for (; (code = sqlite3_step(statement)) == SQLITE_ROW; ++rows)
    table->appendRowBy([&](Table& cells, size_t row) {
      for (int k = 0; k < cells.columnCount(); ++k)
        if (takeValue(statement, k, columns[static_cast<size_t>(k)].type.category, cells.column(k), row))
          isReal[static_cast<size_t>(k)] = true;
    });
  if (code != SQLITE_DONE) fail(code);
  context_.rowCount = static_cast<std::int64_t>(rows);
  prepared.rows = std::min(rows, kRowsExpected);
  for (size_t k = 0; k < columns.size(); ++k)
    if (isUnsettled(columns[k].type) && !isReal[k]) table->makeLong(Column(static_cast<int>(k)));
  table->moveFirst();
  return table;
}

// ---- definitions

void Session::runKept(std::string_view sql) {
  deadline_.reset();
  sqlite3_stmt* statement = context_.prepared(sql);
  const int code = sqlite3_step(statement);
  sqlite3_reset(statement);
  if (code != SQLITE_DONE) fail(code);
}

void Session::runPlain(const char* sql) {
  const int code = sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) fail(code);
}

void Session::execute(std::string_view sql) {
  isSchemaStatement(sql) ? define(sql) : void(run(sql, false));
}

void Session::define(std::string_view statement) {
  SchemaStatement change = readSchemaStatement(statement);
  const bool drops = change.kind == SchemaStatement::Kind::Drop;
  forgetStatements();
  runPlain(sqliteStatement(change).c_str());
  sqlite3_stmt* record = context_.prepared(drops ? "delete from ondrel_schema where name = ?1"
                                                 : "insert into ondrel_schema (name, text) values (?1, ?2)");
  bindText(record, 1, change.tableName);
  if (!drops) bindText(record, 2, change.text);
  const int code = sqlite3_step(record);
  sqlite3_reset(record);
  if (code != SQLITE_DONE) fail(code);
  if (change.kind == SchemaStatement::Kind::Table) catalogue_.addTable(std::move(change.table));
  if (drops) catalogue_.removeTable(change.tableName);
  definedInTransaction_ = inTransaction();
}

void Session::redefine(std::string_view table, std::string_view statement) {
  SchemaStatement change = readSchemaStatement(statement);
  forgetStatements();
  sqlite3_stmt* record =
      context_.prepared("update ondrel_schema set text = ?2 where name = ?1 and text like 'create%table%'");
  bindText(record, 1, table);
  bindText(record, 2, statement);
  const int code = sqlite3_step(record);
  sqlite3_reset(record);
  if (code != SQLITE_DONE) fail(code);
  catalogue_.addTable(std::move(change.table));
  definedInTransaction_ = inTransaction();
}

void Session::rollback() {
  if (!inTransaction()) return;
  sqlite3_exec(handle_, "rollback", nullptr, nullptr, nullptr);
  if (std::exchange(definedInTransaction_, false)) {
    forgetStatements();
    try {
      catalogue_.setSchema(readSchema(handle_, path_));
    } catch (const Error&) {
      catalogue_.forgetSchema();  // whoever opens the database next is told
    }
  }
}

// ---- failures

void Session::fail(int code) {
  if (context_.failure) throw *std::exchange(context_.failure, std::nullopt);
  const std::string reason = sqlite3_errmsg(handle_);
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_INTERRUPT:
      throw serverError(ServerError::Timeout, "Timeout expired");
    case SQLITE_CONSTRAINT:
      break;
    case SQLITE_NOTADB:
      throw Error(ErrorNumber::ConnectionFailed, kStoreSource,
                  "The file is not a database of this program: " + reason);
    default:
      throw Error(ErrorNumber::StatementFailed, kStoreSource, reason);
  }
  const bool missing = code == SQLITE_CONSTRAINT_NOTNULL;
  throw serverError(
      missing ? ServerError::CannotInsertNull : ServerError::DuplicateKey,
      (missing ? "Cannot insert the value NULL: " : "Violation of a key, cannot insert a duplicate: ") +
          reason);
}

}  // namespace ondrel::sql
