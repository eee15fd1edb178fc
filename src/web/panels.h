#pragma once

#include "invoice/invoice.h"

namespace ondrel {

// ---------------------------------------------------------------- panels of the entry screen
// Fragments of mark-up, whose classes and attributes the page's scripts know. A `lineNumber` of "" is none; one
// that matches no line gives what none gives. Nothing is written to the database.
Variant htmlDepartments(Invoice& invoice, const Variant& departmentID);
// The coupons that may be chosen; where the store allows one discount and has it, that one to take away.
Variant htmlCoupons(Invoice& invoice);
// Buttons of the line's item, descriptors and properties. A `currentIdGroup` of two letters or less marks all.
Variant htmlIdGroups(Invoice& invoice, const Variant& lineNumber, const Variant& currentIdGroup);
// Items of a department, of the line's own when it has one; the common items for "".
Variant htmlItems(Invoice& invoice, const Variant& departmentID, const Variant& lineNumber = "");
// Descriptors of all groups, or of one type; `filter` is how their names begin, and a name that no descriptor
// has stands alone.
Variant htmlDescriptors(Invoice& invoice, const Variant& departmentID, const Variant& lineNumber = "");
Variant htmlDescriptor(Invoice& invoice, const Variant& group, const Variant& lineNumber = "",
                       const Variant& filter = "");
Variant htmlDescriptorGroup(Invoice& invoice, const Variant& descriptorGroupID,
                            const Variant& lineNumber = "");
Variant htmlUpcharges(Invoice& invoice, const Variant& priceListItemId, const Variant& lineNumber = "");
Variant htmlPreferenceList(Invoice& invoice);

// ---------------------------------------------------------------- lines, totals and due dates
// The lines by department, newest first; filter and sort stay.
Variant htmlLineItems(Invoice& invoice, const Variant& lineNumber = "");
// The same of a stored ticket, in its own order. Loads the store's calendar as setStoreDays does.
Variant htmlPreviewLineItems(Invoice& invoice, const Variant& ticketNumber);
Variant htmlInvoiceTotals(Invoice& invoice);
Variant htmlInvoicePreferences(Invoice& invoice);
Variant htmlDueDates(Invoice& invoice);
// Day pickers of all departments, and of the whole invoice.
Variant htmlDeptsDueDate(Invoice& invoice);
Variant htmlInvoiceDueDate(Invoice& invoice);
// Twelve days to choose from, a page eleven days on; "" is the page with the due day. `page` takes the page
// shown. Error 5 when the department's days are no whole number from 0 on and a page has to be found.
Variant htmlDeptDueDate(Invoice& invoice, const Variant& departmentID, Variant& page);
Variant htmlNewHeatSeals(Invoice& invoice);
// Price and notes of a line, as buttons. The filter stays on the line.
Variant htmlLineFunctions(Invoice& invoice, const Variant& lineNumber);
// The edit form of a line; the filter stays on its upcharges.
Variant htmlLineProperties(Invoice& invoice, const Variant& departmentID, const Variant& lineNumber = "");
// The form of a charge line; a quantity above 10 selects nothing. The filter stays on the line.
Variant htmlAddChargeDetail(Invoice& invoice, const Variant& lineNumber = "");

// ---------------------------------------------------------------- the invoice as a whole
// A stored ticket in three lines, Empty for an unknown one.
Variant htmlSummary(Invoice& invoice, const Variant& ticketNumber);
// Tickets of the last half year with the same garments and descriptors, in case this is a double entry.
// The filter stays on the garments.
Variant htmlSimilarInvoices(Invoice& invoice);

}  // namespace ondrel
