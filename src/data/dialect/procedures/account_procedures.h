#pragma once

#include "data/dialect/procedures/procedure.h"

namespace ondrel {

RecordsetRef insertMiscCharge(ProcedureCall& call);
RecordsetRef insertPayment(ProcedureCall& call);

}  // namespace ondrel
