#pragma once

#include <string>

#include "invoice/invoice.h"

namespace ondrel {

// What the counter tells with a save, the same for a ticket and all that were split off it.
struct Invoice::SaveRequest {
  std::int32_t employee = 0;
  std::int32_t terminal = 0;
  Variant onHold;  // "1" or "0", passed on as it stands
  std::string employeeName, storeName;
};

}  // namespace ondrel
