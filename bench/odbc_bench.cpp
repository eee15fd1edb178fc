// Statements through ODBC beside a bare loop over the driver manager: the same statements on the same file,
// with the driver of SQLite, since it needs no server. What the difference holds is the pool, the table that
// comes back, the further results that are asked for, and the time limit.

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <sql.h>
#include <sqlext.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <stdexcept>

#include "data/odbc/odbc_connection.h"
#include "data/query_database.h"

namespace {

using namespace ondrel;

constexpr int kTickets = 1000;

std::string readText(int ticket) {
  return fmt::format(
      "select ticketnumber, invoicenumber, amountPaid, nettotal from ticket where ticketnumber = '{}'",
      ticket);
}

std::string insertText(int line) {
  return fmt::format(
      "insert into line (ticketNumber, lineNumber, itemName, price) values ({}, {}, "
      "'Men''s Suit', 12.50)",
      line / 100, line);
}

constexpr const char* kReadAll = "select ticketNumber, invoiceNumber, amountPaid, netTotal from ticket";

void require(SQLRETURN code) {
  if (!SQL_SUCCEEDED(code) && code != SQL_NO_DATA) throw std::runtime_error("the driver fails");
}

// A file with a thousand tickets, a page on it, and a connection of the bare driver manager beside it.
struct Store {
  Store() {
    std::filesystem::remove(path);
    page.connect = [](const ConnectionSettings& settings) { return connectOdbc(settings); };
    page.DBConnectionString = text;
    executeInTransaction(page,
                         "create table ticket (ticketNumber integer primary key, invoiceNumber varchar(20), "
                         "amountPaid double, netTotal double)");
    executeInTransaction(
        page,
        "create table line (ticketNumber integer, lineNumber integer, itemName varchar(64), price double)");
    openTransaction(page);
    for (int k = 0; k < kTickets; ++k)
      executeInTransaction(page, fmt::format("insert into ticket values ({}, 'A{}', 1.5, 20.25)", k, k));
    commitTransaction(page);
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment);
    SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, environment, &bare);
    require(SQLDriverConnect(bare, nullptr, reinterpret_cast<SQLCHAR*>(text.data()), SQL_NTS, nullptr, 0,
                             nullptr, SQL_DRIVER_NOPROMPT));
    SQLAllocHandle(SQL_HANDLE_STMT, bare, &statement);
  }
  ~Store() {
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
    SQLDisconnect(bare);
    SQLFreeHandle(SQL_HANDLE_DBC, bare);
    SQLFreeHandle(SQL_HANDLE_ENV, environment);
    std::filesystem::remove(path);
  }
  static Store& instance() {
    static Store store;
    return store;
  }

  // Runs a statement and takes every cell in its own type.
  void run(const std::string& sql) const {
    require(SQLExecDirect(statement, reinterpret_cast<SQLCHAR*>(const_cast<char*>(sql.data())),
                          static_cast<SQLINTEGER>(sql.size())));
    SQLSMALLINT columns = 0;
    require(SQLNumResultCols(statement, &columns));
    while (columns > 0 && SQLFetch(statement) == SQL_SUCCESS) fetchRow();
    SQLFreeStmt(statement, SQL_CLOSE);
  }
  void fetchRow() const {
    SQLINTEGER number = 0;
    std::array<char, 64> name{};
    SQLDOUBLE paid = 0, total = 0;
    SQLLEN length = 0;
    require(SQLGetData(statement, 1, SQL_C_SLONG, &number, sizeof number, &length));
    require(SQLGetData(statement, 2, SQL_C_CHAR, name.data(), name.size(), &length));
    require(SQLGetData(statement, 3, SQL_C_DOUBLE, &paid, sizeof paid, &length));
    require(SQLGetData(statement, 4, SQL_C_DOUBLE, &total, sizeof total, &length));
    benchmark::DoNotOptimize(number);
    benchmark::DoNotOptimize(name);
    benchmark::DoNotOptimize(total + paid);
  }

  std::filesystem::path path =
      std::filesystem::temp_directory_path() / fmt::format("ondrel-odbc-bench-{}.db", getpid());
  std::string text = "Driver=SQLite3;Database=" + path.string() + ";SyncPragma=off;";
  Apartment page;
  SQLHENV environment = nullptr;
  SQLHDBC bare = nullptr;
  SQLHSTMT statement = nullptr;
};

void readOneRowBare(benchmark::State& state) {
  const Store& store = Store::instance();
  int next = 0;
  for (auto _ : state) store.run(readText(++next % kTickets));
}
BENCHMARK(readOneRowBare);

void readOneRow(benchmark::State& state) {
  Store& store = Store::instance();
  int next = 0;
  for (auto _ : state) benchmark::DoNotOptimize(queryDatabase(store.page, readText(++next % kTickets)));
}
BENCHMARK(readOneRow);

void readThousandRowsBare(benchmark::State& state) {
  const Store& store = Store::instance();
  for (auto _ : state) store.run(kReadAll);
}
BENCHMARK(readThousandRowsBare);

void readThousandRows(benchmark::State& state) {
  Store& store = Store::instance();
  for (auto _ : state) benchmark::DoNotOptimize(queryDatabase(store.page, kReadAll));
}
BENCHMARK(readThousandRows);

constexpr int kLines = 100;  // of one transaction

void insertLinesBare(benchmark::State& state) {
  const Store& store = Store::instance();
  for (auto _ : state) {
    SQLSetConnectAttr(store.bare, SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF), 0);
    for (int line = 0; line < kLines; ++line) store.run(insertText(line));
    SQLEndTran(SQL_HANDLE_DBC, store.bare, SQL_COMMIT);
    SQLSetConnectAttr(store.bare, SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_ON), 0);
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(insertLinesBare);

void insertLines(benchmark::State& state) {
  Store& store = Store::instance();
  for (auto _ : state) {
    openTransaction(store.page);
    for (int line = 0; line < kLines; ++line) executeInTransaction(store.page, insertText(line));
    commitTransaction(store.page);
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(insertLines);

}  // namespace

BENCHMARK_MAIN();
