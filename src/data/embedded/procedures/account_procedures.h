#pragma once

#include "data/embedded/procedures/procedure.h"

namespace ondrel {

RecordsetRef insertMiscCharge(ProcedureCall& call);
RecordsetRef insertPayment(ProcedureCall& call);

}  // namespace ondrel
