#pragma once

#include "invoice/lines.h"

namespace ondrel {

// The bag of a quick drop-off: a department's line of pieces that wait to be itemised.

bool hasBag(Lines& lines, const Variant& deptId);
// Empty without a bag.
Variant bagNote(Lines& lines, const Variant& deptId);
// Adds to the pieces of the bag, if there is one.
void changeBag(Lines& lines, const Variant& deptId, const Variant& change);
// Takes itemised pieces out; what is no number counts as 1.
void takeFromBag(Lines& lines, const Variant& deptId, const Variant& quantity, const Variant& pkgQuantity);

}  // namespace ondrel
