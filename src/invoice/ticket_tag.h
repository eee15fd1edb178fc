#pragma once

#include <string>

#include "base/object.h"

namespace ondrel {

// A paper tag whose number the page supplies itself.
class TicketTag : public Object {
 public:
  std::string_view className() const override { return "TicketTag"; }

  std::string TagNumber, TagColor, LotNumber;
};

}  // namespace ondrel
