#pragma once

#include "data/dialect/procedures/procedure.h"

namespace ondrel::sql {

// The offers of a price list that an invoice may qualify for: those in force today that are not used up and
// whose own limits of pieces and price the invoice keeps. A row for each department, or item of one, that the
// discount names, or a single one for the whole invoice; ordered by discount, department and item. Columns:
// those of Discount, departmentID, departmentName, departmentMinPieceCount, departmentMinQualAmount,
// priceListItemID.
//
// | procedure                   | arguments                                      | more                      |
// |-----------------------------|------------------------------------------------|---------------------------|
// | getProbableCoupons          | price list, pieces, price, customer            |                           |
// | getProbableLoyaltyDiscounts | customer, price list, pieces, price            | only those that the       |
// |                             |                                                | customer has earned       |
// | getProbablePromotions       | price list, pieces, price, customer [, date of | in force on that date     |
// |                             | the ticket]                                    | instead of today          |
RecordsetRef getProbableCoupons(ProcedureCall& call);
RecordsetRef getProbableLoyaltyDiscounts(ProcedureCall& call);
RecordsetRef getProbablePromotions(ProcedureCall& call);

}  // namespace ondrel::sql
