#include "invoice/invoice.h"

namespace ondrel {

// Seals that were scanned and are not on a garment yet, in the order of scanning.

void Invoice::pushNewHeatSeal(const Variant& heatSeal) {
  if (!state_.newHeatSeals->exists(heatSeal)) state_.newHeatSeals->add(heatSeal, heatSeal);
}

void Invoice::removeNewHeatSeal(const Variant& heatSeal) {
  if (state_.newHeatSeals->exists(heatSeal)) state_.newHeatSeals->remove(heatSeal);
}

Variant Invoice::getNewHeatSealCount() {
  return state_.newHeatSeals->count();
}

Variant Invoice::getSelectedHeatSeal() {
  return state_.newHeatSeals->count() == 0 ? Variant() : state_.newHeatSeals->keys().front();
}

}  // namespace ondrel
