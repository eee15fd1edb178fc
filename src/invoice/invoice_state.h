#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/dictionary.h"
#include "base/variant.h"
#include "data/recordset/recordset.h"

namespace ondrel {

// What an invoice remembers from call to call and no page sees, by the folder whose rules it belongs to.
struct InvoiceState {
  // lines/
  Variant itemSortMethod;  // 1: by use

  // pricing/
  RecordsetRef offers;             // candidate discounts, see pricing/offers.h
  RecordsetRef priceListSettings;  // VIP and referral rules of the price list
  bool prepayEnabled = false;      // whether the customer pays ahead
  Variant oneDiscount;             // of the last invoiceDone

  // calendar/
  DictionaryRef pendingDeptDays;  // department id -> days, chosen before its first line
  bool isDateByHand = false;      // setInvoiceDueDate has changed the day

  // tickets/
  std::vector<std::int32_t> departments = {0};  // of the loaded ticket; the last slot is empty
  std::int32_t lotId = 0;                       // of the loaded ticket, 0 for none
  std::int32_t tagCount = 0;                    // paper tags of the loaded ticket

  // seals/
  DictionaryRef newHeatSeals;  // scanned and not on a garment yet
};

}  // namespace ondrel
