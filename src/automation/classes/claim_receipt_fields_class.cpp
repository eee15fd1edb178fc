#include "automation/classes/class_tables.h"
#include "pickup/claim_receipt_fields.h"

namespace ondrel {

const ClassTable& claimReceiptFieldsClass() {
  // clang-format off
  static const ClassTable table("claimReceiptFields", {
      property("name", &ClaimReceiptFields::name),
      property("relationship", &ClaimReceiptFields::relationship),
      property("identificationType", &ClaimReceiptFields::identificationType),
      property("identification", &ClaimReceiptFields::identification),
      property("phoneNumber", &ClaimReceiptFields::phoneNumber),
      property("note", &ClaimReceiptFields::note),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
