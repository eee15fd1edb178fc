#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/dictionary.h"
#include "base/error.h"
#include "base/variant.h"

namespace ondrel {

// The tickets of a split, for every class whose objects are divided into others of their kind.

// The children in their order, none without a dictionary. Error 424 for an entry of another kind.
template <class Ticket>
std::vector<std::shared_ptr<Ticket>> childTickets(const DictionaryRef& invoicesDictionary,
                                                  std::string_view askedBy) {
  std::vector<std::shared_ptr<Ticket>> children;
  if (!invoicesDictionary) return children;
  for (const Variant& item : invoicesDictionary->items()) {
    children.push_back(std::dynamic_pointer_cast<Ticket>(item.toObject()));
    if (!children.back())
      throw Error(ErrorNumber::ObjectRequired, askedBy,
                  "invoicesDictionary holds something that is no " + std::string(askedBy));
  }
  return children;
}

// What a child of any kind has from its parent: the same customer, store and wishes.
template <class Ticket>
void handDownTicket(const Ticket& parent, Ticket& child) {
  child.custSeqNumber = parent.custSeqNumber;
  child.finishPref = parent.finishPref;
  child.starchPref = parent.starchPref;
  child.priceListId = parent.priceListId;
  child.storeNumber = parent.storeNumber;
  child.routeNumber = parent.routeNumber;
  child.preferences = parent.preferences;  // the same object
}

}  // namespace ondrel
