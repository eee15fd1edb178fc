#pragma once

#include "data/embedded/procedures/procedure.h"

namespace ondrel {

RecordsetRef insertMiscCharge(ProcedureCall& call);

}  // namespace ondrel
