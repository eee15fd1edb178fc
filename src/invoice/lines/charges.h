#pragma once

#include <string_view>

#include "invoice/invoice.h"

namespace ondrel {

// A charge that a rule of the shop adds: logged, of one uncounted amount, and no piece of a quick drop-off's bag.
void addInternalCharge(Invoice& invoice, double amount, std::string_view description, const Variant& deptId);

}  // namespace ondrel
