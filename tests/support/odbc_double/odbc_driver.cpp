// A driver for the driver manager whose server is an object of the same process. It has what the library
// calls and what the driver manager asks for on its own.

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "support/odbc_double/server_double.h"

namespace {

using namespace ondrel;

constexpr SQLINTEGER kResetConnection = 116;

struct Handle {
  std::vector<ServerMessage> messages;
};

struct ConnectionHandle : Handle {
  std::unique_ptr<ServerSession> session;
};

struct StatementHandle : Handle {
  ConnectionHandle* connection = nullptr;
  std::vector<ServerResult> results;
  size_t result = 0;
  size_t row = 0;         // behind the current one
  int readColumn = 0;     // of which a piece was handed out
  size_t readLength = 0;  // of it so far

  const ServerResult* current() const { return result < results.size() ? &results[result] : nullptr; }
};

Handle& handleAt(SQLHANDLE handle) {
  return *static_cast<Handle*>(handle);
}
StatementHandle& statementAt(SQLHSTMT handle) {
  return *static_cast<StatementHandle*>(handle);
}
ConnectionHandle& connectionAt(SQLHDBC handle) {
  return *static_cast<ConnectionHandle*>(handle);
}

SQLRETURN failed(Handle& handle, const ServerMessage& message) {
  handle.messages.push_back(message);
  return SQL_ERROR;
}

SQLRETURN outcome(Handle& handle, const Failure& failure) {
  handle.messages.clear();
  return failure ? failed(handle, *failure) : SQL_SUCCESS;
}

SQLRETURN enter(StatementHandle& statement) {
  statement.row = 0;
  const ServerResult* result = statement.current();
  if (!result) return SQL_NO_DATA;
  statement.messages = result->notes;
  if (result->error) return failed(statement, *result->error);
  return result->notes.empty() ? SQL_SUCCESS : SQL_SUCCESS_WITH_INFO;
}

SQLLEN number(const ServerCell& cell, double& value) {
  value = std::holds_alternative<double>(cell) ? std::get<double>(cell)
                                               : static_cast<double>(std::get<std::int64_t>(cell));
  return sizeof(double);
}

template <class Value>
SQLRETURN give(SQLPOINTER target, SQLLEN* length, Value value) {
  std::memcpy(target, &value, sizeof value);
  *length = sizeof value;
  return SQL_SUCCESS;
}

// A piece ends before a character that does not fit whole, the rest of the buffer filled with zeros.
SQLRETURN giveText(StatementHandle& statement, int column, const std::string& text, char* target, size_t room,
                   SQLLEN* length) {
  if (statement.readColumn != column) statement.readColumn = column, statement.readLength = 0;
  if (statement.readLength > 0 && statement.readLength == text.size()) return SQL_NO_DATA;
  const size_t left = text.size() - statement.readLength;
  size_t taken = std::min(left, room - 1);
  if (taken < left)
    while (taken > 0 && (static_cast<unsigned char>(text[statement.readLength + taken]) & 0xC0) == 0x80)
      --taken;
  std::memset(target, 0, room);
  std::memcpy(target, text.data() + statement.readLength, taken);
  *length = static_cast<SQLLEN>(left);
  statement.readLength += taken;
  if (taken == left) return SQL_SUCCESS;
  statement.messages = {{"01004", 0, "[double]cut off"}};
  return SQL_SUCCESS_WITH_INFO;
}

void copy(std::string_view text, SQLCHAR* target, SQLSMALLINT room, SQLSMALLINT* length) {
  if (length) *length = static_cast<SQLSMALLINT>(text.size());
  if (!target || room <= 0) return;
  const size_t taken = std::min(text.size(), static_cast<size_t>(room) - 1);
  std::memcpy(target, text.data(), taken);
  target[taken] = 0;
}

}  // namespace

extern "C" {

SQLRETURN SQLAllocHandle(SQLSMALLINT kind, SQLHANDLE parent, SQLHANDLE* handle) {
  if (kind == SQL_HANDLE_STMT) {
    auto* statement = new StatementHandle;
    statement->connection = &connectionAt(parent);
    *handle = static_cast<Handle*>(statement);
  } else {
    *handle = kind == SQL_HANDLE_DBC ? static_cast<Handle*>(new ConnectionHandle) : new Handle;
  }
  return SQL_SUCCESS;
}

SQLRETURN SQLFreeHandle(SQLSMALLINT kind, SQLHANDLE handle) {
  if (kind == SQL_HANDLE_STMT)
    delete &statementAt(handle);
  else if (kind == SQL_HANDLE_DBC)
    delete &connectionAt(handle);
  else
    delete &handleAt(handle);
  return SQL_SUCCESS;
}

SQLRETURN SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) {
  return SQL_SUCCESS;
}

SQLRETURN SQLDriverConnect(SQLHDBC handle, SQLHWND, SQLCHAR* text, SQLSMALLINT, SQLCHAR*, SQLSMALLINT,
                           SQLSMALLINT*, SQLUSMALLINT) {
  ConnectionHandle& connection = connectionAt(handle);
  const std::string_view given(reinterpret_cast<const char*>(text));
  const char* address = std::strstr(given.data(), "Backend=");
  if (!address) return failed(connection, {"08001", 0, "[double]no Backend"});
  auto* server = reinterpret_cast<ServerDouble*>(std::strtoull(address + 8, nullptr, 16));
  ServerMessage reason;
  connection.session = server->connect(given, reason);
  connection.messages.clear();
  return connection.session ? SQL_SUCCESS : failed(connection, reason);
}

SQLRETURN SQLDisconnect(SQLHDBC handle) {
  connectionAt(handle).session = nullptr;
  return SQL_SUCCESS;
}

SQLRETURN SQLSetConnectAttr(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
  ConnectionHandle& connection = connectionAt(handle);
  if (!connection.session) return SQL_SUCCESS;
  if (attribute == SQL_ATTR_AUTOCOMMIT)
    return outcome(connection, connection.session->setAutocommit(reinterpret_cast<std::uintptr_t>(value) ==
                                                                 SQL_AUTOCOMMIT_ON));
  if (attribute == kResetConnection) connection.session->reset();
  return SQL_SUCCESS;
}

SQLRETURN SQLGetConnectAttr(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER, SQLINTEGER*) {
  ConnectionHandle& connection = connectionAt(handle);
  const bool dead = attribute == SQL_ATTR_CONNECTION_DEAD && connection.session->isDead();
  *static_cast<SQLUINTEGER*>(value) = dead ? SQL_CD_TRUE : SQL_CD_FALSE;
  return SQL_SUCCESS;
}

SQLRETURN SQLEndTran(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT how) {
  ConnectionHandle& connection = connectionAt(handle);
  return outcome(connection, connection.session->endTransaction(how == SQL_COMMIT));
}

SQLRETURN SQLSetStmtAttr(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
  if (attribute == SQL_ATTR_QUERY_TIMEOUT)
    statementAt(handle).connection->session->setTimeout(
        static_cast<int>(reinterpret_cast<std::intptr_t>(value)));
  return SQL_SUCCESS;
}

// The driver manager asks for the four descriptors.
SQLRETURN SQLGetStmtAttr(SQLHSTMT handle, SQLINTEGER, SQLPOINTER value, SQLINTEGER, SQLINTEGER*) {
  *static_cast<SQLPOINTER*>(value) = handle;
  return SQL_SUCCESS;
}

SQLRETURN SQLExecDirect(SQLHSTMT handle, SQLCHAR* text, SQLINTEGER length) {
  StatementHandle& statement = statementAt(handle);
  const auto* sql = reinterpret_cast<const char*>(text);
  statement.results = statement.connection->session->run(
      {sql, length == SQL_NTS ? std::strlen(sql) : static_cast<size_t>(length)});
  statement.result = 0;
  const SQLRETURN code = enter(statement);
  return code == SQL_NO_DATA ? SQL_SUCCESS : code;
}

SQLRETURN SQLMoreResults(SQLHSTMT handle) {
  StatementHandle& statement = statementAt(handle);
  if (statement.result < statement.results.size()) ++statement.result;
  return enter(statement);
}

SQLRETURN SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT* columns) {
  const ServerResult* result = statementAt(handle).current();
  *columns = result ? static_cast<SQLSMALLINT>(result->columns.size()) : SQLSMALLINT{0};
  return SQL_SUCCESS;
}

SQLRETURN SQLDescribeCol(SQLHSTMT handle, SQLUSMALLINT position, SQLCHAR* name, SQLSMALLINT room,
                         SQLSMALLINT* length, SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* digits,
                         SQLSMALLINT* nullable) {
  const ServerColumn& column = statementAt(handle).current()->columns[position - 1U];
  copy(column.name, name, room, length);
  *type = static_cast<SQLSMALLINT>(column.sqlType);
  *size = column.size;
  *digits = 0;
  *nullable = SQL_NULLABLE;
  return SQL_SUCCESS;
}

SQLRETURN SQLFetch(SQLHSTMT handle) {
  StatementHandle& statement = statementAt(handle);
  const ServerResult& result = *statement.current();
  statement.messages.clear();
  statement.readColumn = 0;
  if (statement.row < result.rows.size()) return ++statement.row, SQL_SUCCESS;
  return result.fetchError ? failed(statement, *result.fetchError) : SQL_NO_DATA;
}

SQLRETURN SQLGetData(SQLHSTMT handle, SQLUSMALLINT position, SQLSMALLINT form, SQLPOINTER target, SQLLEN room,
                     SQLLEN* length) {
  StatementHandle& statement = statementAt(handle);
  const ServerCell& cell = statement.current()->rows[statement.row - 1][position - 1U];
  if (std::holds_alternative<std::monostate>(cell)) return *length = SQL_NULL_DATA, SQL_SUCCESS;
  if (form == SQL_C_CHAR)
    return giveText(statement, position, std::get<std::string>(cell), static_cast<char*>(target),
                    static_cast<size_t>(room), length);
  if (form == SQL_C_TYPE_TIMESTAMP) {
    const Moment& at = std::get<Moment>(cell);
    SQL_TIMESTAMP_STRUCT moment{};
    moment.year = static_cast<SQLSMALLINT>(at[0]);
    moment.month = static_cast<SQLUSMALLINT>(at[1]);
    moment.day = static_cast<SQLUSMALLINT>(at[2]);
    moment.hour = static_cast<SQLUSMALLINT>(at[3]);
    moment.minute = static_cast<SQLUSMALLINT>(at[4]);
    moment.second = static_cast<SQLUSMALLINT>(at[5]);
    return give(target, length, moment);
  }
  double value = 0;
  number(cell, value);
  switch (form) {
    case SQL_C_SLONG:
      return give(target, length, static_cast<SQLINTEGER>(value));
    case SQL_C_SBIGINT:
      return give(target, length, SQLBIGINT{std::get<std::int64_t>(cell)});
    case SQL_C_BIT:
      return give(target, length, static_cast<SQLCHAR>(value));
    default:
      return give(target, length, value);
  }
}

SQLRETURN SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT) {
  statementAt(handle).results.clear();
  return SQL_SUCCESS;
}

SQLRETURN SQLCloseCursor(SQLHSTMT handle) {
  return SQLFreeStmt(handle, SQL_CLOSE);
}

SQLRETURN SQLGetDiagRec(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT record, SQLCHAR* state, SQLINTEGER* number,
                        SQLCHAR* text, SQLSMALLINT room, SQLSMALLINT* length) {
  const std::vector<ServerMessage>& messages = handleAt(handle).messages;
  if (record < 1 || static_cast<size_t>(record) > messages.size()) return SQL_NO_DATA;
  const ServerMessage& message = messages[static_cast<size_t>(record) - 1];
  std::memcpy(state, message.state.c_str(), message.state.size() + 1);
  if (number) *number = message.number;
  copy(message.text, text, room, length);
  return SQL_SUCCESS;
}

SQLRETURN SQLGetDiagField(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER, SQLSMALLINT,
                          SQLSMALLINT*) {
  return SQL_NO_DATA;
}

SQLRETURN SQLGetInfo(SQLHDBC, SQLUSMALLINT what, SQLPOINTER value, SQLSMALLINT room, SQLSMALLINT* length) {
  if (what == SQL_DRIVER_ODBC_VER)
    copy("03.00", static_cast<SQLCHAR*>(value), room, length);
  else
    std::memset(value, 0, sizeof(SQLUSMALLINT));
  return SQL_SUCCESS;
}

}  // extern "C"
