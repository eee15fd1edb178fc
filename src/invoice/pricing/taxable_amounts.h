#pragma once

#include "invoice/lines.h"

namespace ondrel {

// How a discount lowers what taxes and surcharges are taken of.

// Takes the amount off the current line, to cents.
void reduceTaxable(Recordset& line, double amount);
// Takes the children's parts of a garment's share off theirs, by their part in the price of the line. A price of
// 0 or less has no parts.
void reduceChildTaxable(Lines& lines, const Variant& parentLineNumber, double share, double linePrice);

}  // namespace ondrel
