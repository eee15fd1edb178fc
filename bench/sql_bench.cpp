// The embedded store beside the bare table engine on the same file: what opening, taking apart, translating
// and handing over a result add to a statement that is prepared once and bound.

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>

#include "data/dialect/schema_statement.h"
#include "data/dialect/shape.h"
#include "data/dialect/store_texts.h"
#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"
#include "data/embedded/functions.h"
#include "data/embedded/sqlite_emitter.h"
#include "data/query_database.h"

namespace {

using namespace ondrel;
using namespace ondrel::sql;

constexpr const char* kInsertColumns =
    "INSERT INTO TicketLineItem(ticketNumber, lineItemNumber,  createdByEmployeeID, lastModifiedByEmployeeID,  "
    "parentLineNumber, displaySequence, departmentID,  departmentName, ticketLineType, lineItemID, saleOnly,  "
    "lineItemName, originalUnitPrice, unitPrice, quantity,  lineItemTotal, totalTaxPercent, totalSurchargePercent,  "
    "lineItemTaxableAmount, itemNotes,  outsideService, totalUpchargeAmount, chargeTaxCode, packagedQuantity, "
    "daysToProcess, dueDate, priceLater, promptResponse, redo, prepaydiscount, invoicenumber, pickedup, heatseal) VALUES(";

std::string insertText(int line) {
  return fmt::format(
      "{}{},{},5,5,-1,{},1,'Dry Cleaning','IT',12,0,'Men''s Suit',12.50,12.50,1,12.50,8.25,0.00,12.50, "
      "'No crease',1,2.00, NULL,2,3,'11/27/2026 5:00:00 PM', 0, 'Yes', 0, 0.5,'A1001',0, NULL)",
      kInsertColumns, 900000 + line / 100, line, line);
}

std::string readText(int ticket) {
  return fmt::format(
      "select ticketnumber, invoicenumber, amountPaid, nettotal from ticket where ticketnumber = '{}'",
      ticket);
}

// A file with a thousand tickets, a page on it, and a handle of the bare engine beside it.
struct Store {
  Store() : path(std::filesystem::temp_directory_path() / fmt::format("ondrel-bench-{}.db", getpid())) {
    std::filesystem::remove(path);
    createDatabaseFile(path, StoreContents::Sample);
    page.connect = connectEmbedded;
    page.DBConnectionString = embeddedConnectionString(path.string());
    openTransaction(page);
    for (int k = 0; k < 1000; ++k)
      executeInTransaction(
          page,
          fmt::format("insert into Ticket (ticketNumber, invoiceNumber, amountPaid, netTotal, createdDate) "
                      "values ({}, 'A{}', 1.5, 20.25, getdate())",
                      500000 + k, k));
    commitTransaction(page);
    sqlite3_open(path.c_str(), &handle);
    registerFunctions(handle, context);
  }
  ~Store() {
    context.releaseStatements();
    sqlite3_close_v2(handle);
    for (const char* end : {"", "-wal", "-shm"}) std::filesystem::remove(path.string() + end);
  }
  sqlite3_stmt* prepare(const std::string& sql) const {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(handle, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
      throw std::runtime_error(sqlite3_errmsg(handle));
    return statement;
  }
  static Store& instance() {
    static Store store;
    return store;
  }

  std::filesystem::path path;
  Apartment page;
  FunctionContext context;
  sqlite3* handle = nullptr;
};

const Schema& storeSchema() {
  static const Schema schema = [] {
    Schema result;
    for (const std::string_view text : splitScript(schemaText())) {
      SchemaStatement statement = readSchemaStatement(text);
      if (statement.kind == SchemaStatement::Kind::Table) result.add(std::move(statement.table));
    }
    return result;
  }();
  return schema;
}

void readOneRowBare(benchmark::State& state) {
  const Store& store = Store::instance();
  sqlite3_stmt* statement = store.prepare(translateForSqlite(readText(1), storeSchema()).sql);
  int ticket = 0;
  for (auto _ : state) {
    sqlite3_bind_int64(statement, 1, 500000 + ++ticket % 1000);
    if (sqlite3_step(statement) != SQLITE_ROW) state.SkipWithError("no row");
    benchmark::DoNotOptimize(sqlite3_column_int64(statement, 0));
    benchmark::DoNotOptimize(sqlite3_column_text(statement, 1));
    benchmark::DoNotOptimize(sqlite3_column_double(statement, 2));
    benchmark::DoNotOptimize(sqlite3_column_double(statement, 3));
    sqlite3_step(statement);
    sqlite3_reset(statement);
  }
  sqlite3_finalize(statement);
}
BENCHMARK(readOneRowBare);

void readOneRow(benchmark::State& state) {
  Store& store = Store::instance();
  std::vector<std::string> texts;
  for (int k = 0; k < 1000; ++k) texts.push_back(readText(500000 + k));
  size_t next = 0;
  for (auto _ : state) benchmark::DoNotOptimize(queryDatabase(store.page, texts[++next % texts.size()]));
}
BENCHMARK(readOneRow);

void readThousandRowsBare(benchmark::State& state) {
  sqlite3_stmt* statement = Store::instance().prepare(
      "select ticketNumber, invoiceNumber, createdDate from Ticket where ticketNumber >= ?");
  for (auto _ : state) {
    sqlite3_bind_int64(statement, 1, 500000);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      benchmark::DoNotOptimize(sqlite3_column_int64(statement, 0));
      benchmark::DoNotOptimize(sqlite3_column_text(statement, 1));
      benchmark::DoNotOptimize(sqlite3_column_text(statement, 2));
    }
    sqlite3_reset(statement);
  }
  sqlite3_finalize(statement);
}
BENCHMARK(readThousandRowsBare);

void readThousandRows(benchmark::State& state) {
  Store& store = Store::instance();
  for (auto _ : state)
    benchmark::DoNotOptimize(queryDatabase(
        store.page,
        "select ticketNumber, invoiceNumber, createdDate from Ticket where ticketNumber >= 500000"));
}
BENCHMARK(readThousandRows);

constexpr int kLines = 100;  // of one transaction

void insertLinesBare(benchmark::State& state) {
  const Store& store = Store::instance();
  const Translation translation = translateForSqlite(insertText(1), storeSchema());
  sqlite3_stmt* statement = store.prepare(translation.sql);
  StatementShape shape;
  std::string buffer;
  int line = 0;
  for (auto _ : state) {
    sqlite3_exec(store.handle, "begin immediate", nullptr, nullptr, nullptr);
    for (int k = 0; k < kLines; ++k) {
      for (int column = 1; column <= static_cast<int>(translation.parameters.size()); ++column) {
        switch (column) {
          case 8:
            sqlite3_bind_text(statement, column, "Dry Cleaning", -1, SQLITE_STATIC);
            break;
          case 9:
            sqlite3_bind_text(statement, column, "IT", -1, SQLITE_STATIC);
            break;
          case 12:
            sqlite3_bind_text(statement, column, "Men's Suit", -1, SQLITE_STATIC);
            break;
          case 20:
            sqlite3_bind_text(statement, column, "No crease", -1, SQLITE_STATIC);
            break;
          case 25:
            sqlite3_bind_text(statement, column, "2026-11-27 17:00:00", -1, SQLITE_STATIC);
            break;
          case 13:
          case 14:
          case 16:
          case 17:
          case 18:
          case 19:
          case 22:
          case 29:
            sqlite3_bind_double(statement, column, 12.5);
            break;
          default:
            sqlite3_bind_int64(statement, column, line + k);
        }
      }
      if (sqlite3_step(statement) != SQLITE_DONE) state.SkipWithError(sqlite3_errmsg(store.handle));
      sqlite3_reset(statement);
    }
    sqlite3_exec(store.handle, "rollback", nullptr, nullptr, nullptr);
    line += kLines;
  }
  sqlite3_finalize(statement);
  state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(insertLinesBare);

void insertLines(benchmark::State& state) {
  Store& store = Store::instance();
  std::vector<std::string> texts;
  for (int k = 0; k < kLines; ++k) texts.push_back(insertText(k));
  for (auto _ : state) {
    openTransaction(store.page);
    for (const std::string& text : texts) executeInTransaction(store.page, text);
    closeTransaction(store.page);
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(insertLines);

// The first sight of a shape, beside the engine's own preparing of the same statement.
const char* const kFirstShapes[] = {
    "select ticketnumber, invoicenumber, amountPaid, nettotal from ticket where ticketnumber = '1001'",
    " select ticket.invoicenumber, ticket.ticketnumber, employee.employeename, ticket.createddate, "
    "isnull(convert(varchar, ticket.dateout, 101), '-') as dateout, customer.customername from ticket  inner join customer on "
    "ticket.customersequencenumber = customer.customersequencenumber  inner join employee on ticket.createdbyemployeeid = "
    "employee.employeeid  where ticket.ticketnumber in  ( 1, 2, 3 )  order by ticket.createddate desc ",
};

std::string firstShape(const benchmark::State& state) {
  return state.range(0) < 2 ? kFirstShapes[state.range(0)] : insertText(1);
}

void prepareBare(benchmark::State& state) {
  const Store& store = Store::instance();
  const std::string sql = translateForSqlite(firstShape(state), storeSchema()).sql;
  for (auto _ : state) sqlite3_finalize(store.prepare(sql));
}
BENCHMARK(prepareBare)->DenseRange(0, 2);

void prepareFirstShape(benchmark::State& state) {
  const Store& store = Store::instance();
  const std::string text = firstShape(state);
  for (auto _ : state) sqlite3_finalize(store.prepare(translateForSqlite(text, storeSchema()).sql));
}
BENCHMARK(prepareFirstShape)->DenseRange(0, 2);

void takeApart(benchmark::State& state) {
  StatementShape shape;
  const std::string text = firstShape(state);
  for (auto _ : state) {
    shape.assign(text);
    benchmark::DoNotOptimize(shape.key().data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(takeApart)->DenseRange(0, 2);

void newStore(benchmark::State& state) {
  const auto contents = static_cast<StoreContents>(state.range(0));
  for (auto _ : state) {
    const EmbeddedStore store(contents);
    benchmark::DoNotOptimize(store.connect()->query("select name from Store where storeId = 1"));
  }
}
BENCHMARK(newStore)->Arg(0)->Arg(1);

}  // namespace

BENCHMARK_MAIN();
