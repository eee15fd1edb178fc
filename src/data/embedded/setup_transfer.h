#pragma once

#include <string>
#include <string_view>

#include "data/connection.h"

namespace ondrel {

// A shop's own set-up (departments, items, prices, offers, taxes, hours, clerks ...) as a text of insert statements,
// one row each, the tables in the order of the schema. With `everything` the customers, tickets and books as well.
std::string exportedStore(Connection& connection, bool everything);

// Enters such a text, all of it or nothing. Only inserts into tables of the schema are taken: anything else is error 5
// with the number of the statement. A table of the text that has rows already is error 58, unless `replaces`, which
// removes them first. The result is the number of rows.
int importStore(Connection& connection, std::string_view text, bool replaces);

}  // namespace ondrel
