#pragma once

#include "data/dialect/procedures/procedure.h"

namespace ondrel::sql {

RecordsetRef insertMiscCharge(ProcedureCall& call);
RecordsetRef insertPayment(ProcedureCall& call);

}  // namespace ondrel::sql
