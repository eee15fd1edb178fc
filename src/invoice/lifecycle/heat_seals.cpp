#include "invoice/invoice.h"

namespace ondrel {

void Invoice::addHeatSeal(const Variant& line, Variant& heatSeal) {
  if (findLine(line)) {
    removeNewHeatSeal(heatSeal);
    lineItems->setValue(LineColumn::heatSeal, heatSeal);
  }
  lineItems->clearFilter();
}

}  // namespace ondrel
