#include "support/store_fixture.h"

#include <cstdlib>

#include "data/embedded/embedded_connection.h"
#include "data/odbc/odbc_connection.h"
#include "support/odbc_double/odbc_double.h"

namespace ondrel {

namespace {

void reachByOdbc(Apartment& apartment, const EmbeddedStore& store, const std::shared_ptr<Clock>& clock) {
  const auto server = std::make_shared<StoreServer>(store, clock);
  apartment.connect = [server, pool = std::make_shared<OdbcPool>()](const ConnectionSettings& settings) {
    return connectOdbc(settings, pool);
  };
  apartment.DBConnectionString = connectionStringOf(*server);
}

}  // namespace

bool testsRunOverOdbc() {
  const char* road = std::getenv("ONDREL_TEST_STORE");
  return road && std::string_view(road) == "odbc";
}

ApartmentRef apartmentOn(const EmbeddedStore& store, std::shared_ptr<Clock> clock) {
  auto apartment = std::make_shared<Apartment>();
  apartment->connect = connectEmbedded;
  apartment->DBConnectionString = store.connectionString();
  if (testsRunOverOdbc()) reachByOdbc(*apartment, store, clock);
  apartment->clock = std::move(clock);
  apartment->trace.start();
  return apartment;
}

StoreTest::StoreTest(StoreContents contents)
    : store(contents), apartment(apartmentOn(store, clock)), scope_(apartment) {}

std::vector<std::string> StoreTest::reads() {
  std::vector<std::string> result = statements();
  std::erase_if(result, [](const std::string& statement) { return statement.starts_with('<'); });
  return result;
}

Variant StoreTest::scalar(const std::string& sql) {
  const RecordsetRef table = store.connect(clock)->query(sql);
  return table->eof() ? Variant() : table->value(Column(0));
}

std::vector<std::string> StoreTest::rows(const std::string& sql) {
  std::vector<std::string> result;
  const RecordsetRef table = store.connect(clock)->query(sql);
  for (; !table->eof(); table->moveNext()) {
    std::string row;
    for (int column = 0; column < table->fieldCount(); ++column) {
      const Variant value = table->value(Column(column));
      row += (column > 0 ? " | " : "") + (value.isNull() ? "NULL" : value.toText());
    }
    result.push_back(std::move(row));
  }
  return result;
}

void StoreTest::execute(const std::string& sql) {
  store.connect(clock)->execute(sql);
}

}  // namespace ondrel
