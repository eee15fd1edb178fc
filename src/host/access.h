#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/http_server.h"

namespace ondrel {

bool isLoopback(std::string_view address);

// Who may call the host by which name, before any session is looked at:
//
// | refused                                                 | status | why                                   |
// |---------------------------------------------------------|--------|---------------------------------------|
// | a Host header with a name that is not the host's        | 421    | a foreign site that resolves to here  |
// |   (without names, beyond this machine: with any name)   |        |                                       |
// | POST with an Origin that is not the host's              | 403    | a foreign site that sends a form here |
class Access {
 public:
  Access(std::string_view address, std::vector<std::string> names);

  // Nothing when the request may pass.
  std::optional<PageAnswer> refusal(const HttpRequest& request) const;

 private:
  bool isOurs(std::string_view host) const;

  bool anyAddress_;
  std::vector<std::string> names_;
};

// The headers that every answer carries: nothing but the host's own scripts, styles and pictures, in no frame.
void addSecurityHeaders(PageAnswer& answer);

}  // namespace ondrel
