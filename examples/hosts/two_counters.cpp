// Two counters in one program: each thread has an apartment of its own, so that neither waits for the other nor sees
// its state. They write tickets into one store, one of them looks at what went to the database, and an error shows its
// number, source and description.
//
//   find_package(OndrelCorpComponents REQUIRED COMPONENTS static)
//   target_link_libraries(two_counters PRIVATE OndrelCorpComponents::automation)
#include <cstdio>
#include <memory>
#include <thread>

#include "automation/class_factory.h"
#include "automation/dispatch/call.h"
#include "automation/drivers.h"
#include "base/error.h"
#include "data/apartment.h"
#include "data/embedded/embedded_store.h"

using namespace ondrel;

namespace {

// A ticket of some pieces of one item; its number.
int writeTicket(const std::string& connectionString, int customer, int item, int pieces) {
  const ObjectRef invoice = createObject("OndrelCorpComponents.invoice");
  putMember(invoice, "DBConnectionString", connectionString);
  for (const auto& [name, value] : {std::pair<const char*, Variant>{"isAdd", true}, {"addOrEdit", "add"}, {"storeNumber", 1},
                                    {"priceListId", 1}, {"custSeqNumber", customer}})
    putMember(invoice, name, value);
  Variant store[] = {1};
  callMember(invoice, "setStoreDays", store);
  Variant garments[] = {item, 1, pieces};
  callMember(invoice, "addItem", garments);
  callMember(invoice, "invoiceDone2");
  Variant save[] = {"add", 4, 3, "0", "Ann", "Fernhill", true};
  callMember(invoice, "saveInvoice", save);
  return callMember(invoice, "ticketNo").toLong();
}

void counter(const char* name, const std::string& connectionString, int customer, int item, int pieces) {
  const auto apartment = std::make_shared<Apartment>();
  apartment->connect = connectToDatabase;
  apartment->trace.start();
  const ApartmentScope scope(apartment);
  const int ticket = writeTicket(connectionString, customer, item, pieces);
  std::printf("%s wrote ticket %d with %zu statements\n", name, ticket, apartment->trace.take().size());
}

}  // namespace

int main() {
  const EmbeddedStore store(StoreContents::Sample);
  std::thread shirts(counter, "Counter 1", store.connectionString(), 1, 201, 4);
  std::thread pants(counter, "Counter 2", store.connectionString(), 2, 101, 2);
  shirts.join();
  pants.join();
  try {
    callMember(createObject("OndrelCorpComponents.invoice"), "addItems");
  } catch (const Error& error) {
    std::printf("error %d from %s: %s\n", error.number(), error.source().c_str(), error.description().c_str());
  }
}
