#include "support/odbc_double/odbc_double.h"
#include "support/folders.h"

#include <fmt/format.h>
#include <sql.h>
#include <sqlext.h>

#include <atomic>

#include "data/dialect/schema_statement.h"
#include "data/dialect/server_errors.h"

namespace ondrel {

using namespace sql;

namespace {

int sqlTypeOf(FieldType type) {
  switch (type) {
    case FieldType::Long:
      return SQL_INTEGER;
    case FieldType::Double:
      return SQL_DECIMAL;
    case FieldType::Boolean:
      return SQL_BIT;
    case FieldType::Date:
      return SQL_TYPE_TIMESTAMP;
    default:
      return SQL_VARCHAR;
  }
}

ServerCell cellOf(const Variant& value) {
  switch (value.kind()) {
    case Variant::Kind::Null:
      return {};
    case Variant::Kind::Long:
      return std::int64_t{value.toLong()};
    case Variant::Kind::Boolean:
      return std::int64_t{value.toBoolean()};
    case Variant::Kind::Double:
      return value.toDouble();
    case Variant::Kind::Date: {
      const DateParts parts = value.toDate().parts();
      return Moment{parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second};
    }
    default:
      return value.toText();
  }
}

ServerResult resultOf(const RecordsetRef& table) {
  ServerResult result;
  if (!table || !table->isOpen()) return result;
  for (int k = 0; k < table->fieldCount(); ++k)
    result.columns.push_back({std::string(table->fieldName(Column(k))),
                              sqlTypeOf(table->fieldType(Column(k))),
                              static_cast<size_t>(table->fieldSize(Column(k)))});
  for (; !table->eof(); table->moveNext()) {
    std::vector<ServerCell>& row = result.rows.emplace_back();
    for (int k = 0; k < table->fieldCount(); ++k) row.push_back(cellOf(table->value(Column(k))));
  }
  return result;
}

ServerMessage messageOf(const Error& error) {
  const bool timeout = error.number() == static_cast<int>(ServerError::Timeout);
  return {timeout ? "HYT00" : "42000", error.number(), "[double][store]" + error.description()};
}

template <class Action>
Failure failureOf(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return messageOf(error);
  }
  return std::nullopt;
}

class StoreSession : public ServerSession {
 public:
  explicit StoreSession(std::unique_ptr<Connection> connection) : connection_(std::move(connection)) {}

  std::vector<ServerResult> run(std::string_view sql) override {
    ServerResult result;
    if (const Failure failure = failureOf([&] {
          openNext();
          if (isSchemaStatement(sql))
            connection_->execute(sql);
          else
            result = resultOf(connection_->query(sql));
        }))
      result.error = failure;
    return {std::move(result)};
  }
  Failure setAutocommit(bool on) override {
    autocommit_ = on;
    return failureOf([&] { on ? rollback() : openNext(); });
  }
  Failure endTransaction(bool commit) override {
    return failureOf([&] {
      if (!inTransaction_) return;
      commit ? connection_->commit() : rollback();
      inTransaction_ = false;
    });
  }
  void setTimeout(int seconds) override { connection_->setCommandTimeout(seconds); }
  void reset() override {}
  bool isDead() override { return false; }

 private:
  // The next transaction; it would hold up others if it opened before it is needed.
  void openNext() {
    if (autocommit_ || inTransaction_) return;
    connection_->begin();
    inTransaction_ = true;
  }
  void rollback() {
    if (!inTransaction_) return;
    connection_->close();
    connection_->open();
    inTransaction_ = false;
  }

  std::unique_ptr<Connection> connection_;
  bool autocommit_ = true;
  bool inTransaction_ = false;
};

}  // namespace

std::string connectionStringOf(ServerDouble& server) {
  static std::atomic<int> counter{0};
  return fmt::format("Driver={};Backend={:x};Id={}", buildPath("tests/libondrel_odbc_double.so"),
                     reinterpret_cast<std::uintptr_t>(&server), ++counter);
}

StoreServer::StoreServer(const EmbeddedStore& store, std::shared_ptr<Clock> clock)
    : store_(store), clock_(std::move(clock)) {}

std::unique_ptr<ServerSession> StoreServer::connect(std::string_view, ServerMessage&) {
  return std::make_unique<StoreSession>(store_.connect(clock_));
}

}  // namespace ondrel
