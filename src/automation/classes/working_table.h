#pragma once

#include "automation/dispatch/member.h"
#include "base/text.h"
#include "data/recordset/recordset.h"

namespace ondrel {

template <class>
struct TableOwner;
template <class Class>
struct TableOwner<RecordsetRef Class::*> {
  using Type = Class;
};

// A property that holds a table on which the operations of its class work: a page can put another one of the
// same layout in its place, but not take it away.
template <auto table, const auto& layout>
Member workingTable(std::string_view name) {
  using Class = typename TableOwner<decltype(table)>::Type;
  return property(
      name, [](Class& owner) { return owner.*table; },
      [](Class& owner, const RecordsetRef& value) {
        if (!value) throw Error(ErrorNumber::ObjectNotSet, owner.className(), "Object variable not set");
        bool fits = value->isOpen() && value->fieldCount() == static_cast<int>(layout.size());
        for (size_t k = 0; fits && k < layout.size(); ++k)
          fits = equalsIgnoringCase(value->fieldName(Column(static_cast<int>(k))), layout[k].name);
        if (!fits)
          throw Error(ErrorNumber::InvalidArgument, owner.className(),
                      "The table has other columns than the object's own");
        owner.*table = value;
      });
}

}  // namespace ondrel
