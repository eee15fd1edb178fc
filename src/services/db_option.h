#pragma once

#include <memory>
#include <string>

#include "base/object.h"

namespace ondrel {

// A named database setting of the machine.
class DbOption : public Object {
 public:
  std::string_view className() const override { return "DbOption"; }

  std::string DbName, ConnectionString, CommandLine;
};

using DbOptionRef = std::shared_ptr<DbOption>;

}  // namespace ondrel
