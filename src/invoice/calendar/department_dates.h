#pragma once

#include "invoice/invoice.h"

namespace ondrel {

// What a garment is promised.
struct Promise {
  Variant days, due;
};

// The promise to a garment that joins a department; days chosen before the department's first line are used up.
Promise promiseTo(Invoice& invoice, const Variant& deptId, const Variant& deptName, const Variant& itemDays);

}  // namespace ondrel
