#include "data/query_database.h"

#include "base/text.h"
#include "data/card_masking.h"

namespace ondrel {
namespace {

constexpr int kReadTimeoutSeconds = 240;

std::shared_ptr<Connection> newConnection(Apartment& apartment) {
  if (!apartment.connect)
    throw Error(ErrorNumber::ProviderFailure, "QueryDatabase",
                "No database driver is available to this program");
  return apartment.connect({apartment.DBConnectionString, "", "", apartment.clock});
}

// A store's description may quote the statement, and a statement may hold a card number.
template <class Action>
auto withMaskedErrors(Action action) {
  try {
    return action();
  } catch (const Error& error) {
    throw Error(error.code(), error.source(), maskCardData(error.description()));
  }
}

void requireText(std::string_view sql) {
  if (!isWholeText(sql))
    throw Error(ErrorNumber::StatementFailed, "QueryDatabase",
                "The statement holds a NUL or bytes that are no text");
}

// One-shot reads use the transaction's slot on purpose: a transaction open in it is replaced, and so lost.
// When the read fails, the slot keeps the connection that failed.
RecordsetRef readOnce(Apartment& apartment, std::string_view sql, bool withTimeout) {
  requireText(sql);
  apartment.sharedConnection = newConnection(apartment);
  Connection& connection = *apartment.sharedConnection;
  if (withTimeout) connection.setCommandTimeout(kReadTimeoutSeconds);
  withMaskedErrors([&] { connection.open(); });
  apartment.trace.add(sql);
  RecordsetRef table = withMaskedErrors([&] { return connection.query(sql); });
  connection.close();
  apartment.sharedConnection = nullptr;
  return table;
}

}  // namespace

RecordsetRef queryDatabase(Apartment& apartment, std::string_view sql) {
  return readOnce(apartment, sql, true);
}

RecordsetRef queryDatabaseBatch(Apartment& apartment, std::string_view sql) {
  return readOnce(apartment, sql, false);
}

void openTransaction(Apartment& apartment) {
  apartment.sharedConnection = newConnection(apartment);
  withMaskedErrors([&] { apartment.sharedConnection->open(); });
  apartment.trace.add("<begin>");
  withMaskedErrors([&] { apartment.sharedConnection->begin(); });
}

void executeInTransaction(Apartment& apartment, std::string_view sql) {
  requireText(sql);
  const bool ownsTransaction = !apartment.sharedConnection;
  if (ownsTransaction) openTransaction(apartment);
  apartment.sharedCommand = sql;
  apartment.trace.add(sql);
  withMaskedErrors([&] { apartment.sharedConnection->execute(sql); });
  if (ownsTransaction) commitTransaction(apartment);
}

RecordsetRef queryInTransaction(Apartment& apartment, std::string_view sql) {
  if (!apartment.sharedConnection)
    throw Error(ErrorNumber::ObjectClosed, "QueryDatabase",
                "Operation is not allowed when no transaction is open");
  requireText(sql);
  apartment.trace.add(sql);
  return withMaskedErrors([&] { return apartment.sharedConnection->query(sql); });
}

void commitTransaction(Apartment& apartment) {
  if (!apartment.sharedConnection) return;
  apartment.trace.add("<commit>");
  withMaskedErrors([&] { apartment.sharedConnection->commit(); });
  closeTransaction(apartment);
}

void closeTransaction(Apartment& apartment) {
  apartment.sharedCommand.clear();
  if (!apartment.sharedConnection) return;
  apartment.trace.add("<close>");
  apartment.sharedConnection->close();
  apartment.sharedConnection = nullptr;
}

}  // namespace ondrel
