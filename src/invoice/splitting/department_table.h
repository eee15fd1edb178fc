#pragma once

#include "invoice/invoice.h"

namespace ondrel {

// The departments of an invoice in ticket order, its invoiceDeptIds.

// Makes the table anew, one row a run of a department in the order of the lines. Leaves the lines sorted by
// number, at the end. Error 91 before the store's departments are loaded, 3021 for one that the store does not have.
void listDepartments(Invoice& invoice);
// The table; error 91 while there is none.
Recordset& listedDepartments(const Invoice& invoice);

}  // namespace ondrel
