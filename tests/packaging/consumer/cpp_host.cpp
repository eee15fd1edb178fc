// A host in C++ that links the rooms: four shirts in the sample store.
#include <cstdio>

#include "automation/class_factory.h"
#include "automation/dispatch/call.h"
#include "automation/drivers.h"
#include "data/apartment.h"
#include "data/embedded/embedded_store.h"

int main() {
  using namespace ondrel;
  const EmbeddedStore store(StoreContents::Sample);
  Apartment::current()->connect = connectToDatabase;
  const ObjectRef invoice = createObject("OndrelCorpComponents.invoice");
  putMember(invoice, "DBConnectionString", store.connectionString());
  callMember(invoice, "initInvoice");
  putMember(invoice, "storeNumber", 1);
  putMember(invoice, "priceListId", 1);
  Variant storeId[] = {1};
  callMember(invoice, "setStoreDays", storeId);
  Variant shirts[] = {201, 1, 4};
  callMember(invoice, "addItem", shirts);
  std::printf("%s shirts\n", callMember(invoice, "getTotalItemCount").toText().c_str());
}
