#pragma once

#include <memory>
#include <string>

#include "base/object.h"

namespace ondrel {

// Who collected without the receipt, and how he showed who he is.
class ClaimReceiptFields : public Object {
 public:
  std::string_view className() const override { return "claimReceiptFields"; }

  std::string name, relationship, identificationType, identification, phoneNumber, note;
};

using ClaimReceiptFieldsRef = std::shared_ptr<ClaimReceiptFields>;

}  // namespace ondrel
