#include "data/dialect/procedures/account_procedures.h"

namespace ondrel::sql {

// (store, employee, customer, type, amount, date, description, status, terminal, active): books a charge (D)
// or credit (C) on a customer's account. The arguments stand in the order of the columns.
RecordsetRef insertMiscCharge(ProcedureCall& call) {
  std::string values;
  for (int position = 0; position < call.argumentCount(); ++position)
    values += (position > 0 ? ", " : "") + call.sql(position);
  call.execute(
      "insert into MiscCharge (storeId, employeeId, customerSequenceNumber, chargeType, amount, chargeDate, "
      "description, chargeStatus, terminalId, active) values (" +
      values + ")");
  return nullptr;
}

}  // namespace ondrel::sql
