#pragma once

#include <string>
#include <string_view>

#include "data/apartment.h"
#include "data/recordset/recordset.h"
#include "data/values.h"

namespace ondrel {

// The one door through which all SQL leaves the library. Statements are finished texts; reads come back
// as tables that no longer need the server. Errors of the store pass to the caller,
// with card data in their descriptions masked. A statement with a NUL or broken UTF-8 is refused before anything is
// sent: stores differ in what they make of it, and one that ends at the NUL runs half of it.
//
// | operation            | with no transaction open          | with one open                             |
// |----------------------|-----------------------------------|-------------------------------------------|
// | queryDatabase        | opens, reads, closes              | the same; the open transaction is dropped |
// | executeInTransaction | a transaction of its own          | joins it                                  |
// | queryInTransaction   | an error                          | reads its uncommitted rows                |
// | commitTransaction    | nothing                           | commits and closes                        |
// | closeTransaction     | nothing                           | closes, which discards it                 |

// Reads with a time limit of 240 seconds. While a transaction is open this takes its place: the
// transaction is lost, and the commit that follows does nothing.
RecordsetRef queryDatabase(Apartment& apartment, std::string_view sql);
// As queryDatabase with the connection's own time limit, for a table that the caller will change.
RecordsetRef queryDatabaseBatch(Apartment& apartment, std::string_view sql);

void openTransaction(Apartment& apartment);
// Sends a statement that returns no rows. After an error the transaction stays open as it was.
void executeInTransaction(Apartment& apartment, std::string_view sql);
RecordsetRef queryInTransaction(Apartment& apartment, std::string_view sql);
void commitTransaction(Apartment& apartment);
void closeTransaction(Apartment& apartment);

}  // namespace ondrel
