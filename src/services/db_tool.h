#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/settings.h"
#include "services/db_option.h"

namespace ondrel {

// The database settings of the machine: which databases there are for the counter, and how they are reached.
class DbTool : public Object {
 public:
  DbTool() = default;
  explicit DbTool(Settings settings) : settings_(std::move(settings)) {}
  std::string_view className() const override { return "DbTool"; }

  // The settings under a name, in any case. What is not set is an empty text, a name that nobody knows included.
  DbOptionRef GetDbOption(const std::string& name) const;
  // "default", then "training".
  std::vector<DbOptionRef> GetDbOptions() const;
  std::string GetDefaultConnectionString() const;
  std::string GetDefaultCommandLine() const;

 private:
  Settings settings_;
};

}  // namespace ondrel
