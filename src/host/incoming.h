#pragma once

#include <string>
#include <string_view>

#include "host/http_request.h"
#include "host/page_files.h"
#include "host/page_request.h"

namespace ondrel {

inline constexpr std::string_view kSessionCookie = "ondrel_session";

// A browser's request with what the host needs of it taken out.
struct Incoming {
  PageRequest page;
  std::string sessionId;
  std::string token;
};

Incoming incomingOf(const HttpRequest& request, const PageFile& page);

// A proxy on this machine says who asks it, last in the list.
HttpRequest asProxied(HttpRequest request);

// Whether the text can be the number of a request: up to 64 letters, digits and dashes.
bool isRequestNumber(std::string_view text);

}  // namespace ondrel
