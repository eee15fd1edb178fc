#include "data/embedded/embedded_connection.h"

#include "base/text.h"
#include "data/dialect/server_errors.h"
#include "data/embedded/database_files.h"

namespace ondrel {

using namespace sql;

namespace {

class EmbeddedConnection : public Connection {
 public:
  explicit EmbeddedConnection(const ConnectionSettings& settings)
      : name_(connectionStringValue(settings.connectionString, "Database").value_or("")),
        clock_(settings.clock) {}
  ~EmbeddedConnection() override { close(); }

  void setCommandTimeout(int seconds) override {
    timeout_ = seconds;
    if (session_) session_->setTimeout(seconds);
  }

  void open() override {
    if (session_) throw Error(ErrorNumber::ObjectOpen, kStoreSource, "The connection is open already");
    if (name_.empty())
      throw Error(ErrorNumber::ConnectionFailed, kStoreSource, "The connection string names no Database");
    database_ = findDatabase(name_);
    session_ = database_->borrow();
    session_->lend(clock_, timeout_);
  }

  void begin() override {
    if (session().inTransaction())
      throw Error(ErrorNumber::StatementFailed, kStoreSource,
                  "Only one transaction can be active on this connection");
    session().begin();
  }

  void commit() override {
    if (!session().inTransaction())
      throw Error(ErrorNumber::StatementFailed, kStoreSource, "No transaction is active");
    session().commit();
  }

  void execute(std::string_view sql) override { session().execute(sql); }

  RecordsetRef query(std::string_view sql) override { return session().run(sql, true); }

  void close() override {
    if (session_) database_->giveBack(std::move(session_));
    session_ = nullptr;
    database_ = nullptr;
  }

 private:
  Session& session() {
    if (!session_)
      throw Error(ErrorNumber::ObjectClosed, kStoreSource,
                  "Operation is not allowed when the connection is closed");
    return *session_;
  }

  std::string name_;
  std::shared_ptr<Clock> clock_;
  int timeout_ = kDefaultTimeoutSeconds;
  DatabaseRef database_;
  std::unique_ptr<Session> session_;
};

}  // namespace

std::optional<std::string> connectionStringValue(std::string_view connectionString, std::string_view key) {
  while (!connectionString.empty()) {
    const size_t end = std::min(connectionString.find(';'), connectionString.size());
    const std::string_view part = connectionString.substr(0, end);
    connectionString.remove_prefix(std::min(end + 1, connectionString.size()));
    const size_t sign = part.find('=');
    if (sign == std::string_view::npos || !equalsIgnoringCase(trim(part.substr(0, sign)), key)) continue;
    std::string_view value = trim(part.substr(sign + 1));
    if (value.size() > 1 && value.front() == '{' && value.back() == '}')
      value = value.substr(1, value.size() - 2);
    return std::string(value);
  }
  return std::nullopt;
}

bool isEmbeddedConnectionString(std::string_view connectionString) {
  const auto driver = connectionStringValue(connectionString, "Driver");
  return driver && equalsIgnoringCase(*driver, "Embedded");
}

std::string embeddedConnectionString(std::string_view path) {
  return "Driver=Embedded;Database=" + std::string(path);
}

std::unique_ptr<Connection> connectEmbedded(const ConnectionSettings& settings) {
  return std::make_unique<EmbeddedConnection>(settings);
}

}  // namespace ondrel
