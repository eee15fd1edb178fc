#include "invoice/invoice.h"

namespace ondrel {

// Seals that were scanned and are not on a garment yet, in the order of scanning.

void Invoice::pushNewHeatSeal(const Variant& heatSeal) {
  if (!newHeatSeals_->exists(heatSeal)) newHeatSeals_->add(heatSeal, heatSeal);
}

void Invoice::removeNewHeatSeal(const Variant& heatSeal) {
  if (newHeatSeals_->exists(heatSeal)) newHeatSeals_->remove(heatSeal);
}

Variant Invoice::getNewHeatSealCount() {
  return newHeatSeals_->count();
}

Variant Invoice::getSelectedHeatSeal() {
  return newHeatSeals_->count() == 0 ? Variant() : newHeatSeals_->keys().front();
}

}  // namespace ondrel
