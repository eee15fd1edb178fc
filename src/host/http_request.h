#pragma once

#include <chrono>
#include <string>

#include "host/page_request.h"

namespace ondrel {

struct HttpLimits {
  size_t connections = 256;
  size_t headerBytes = 32 << 10;
  size_t bodyBytes = 1 << 20;
  std::chrono::milliseconds headTime{10'000};  // to send the head, and again the body
  std::chrono::milliseconds keepAlive{15'000};
};

// A request as it arrived, and what goes back.
struct HttpRequest {
  std::string method;
  std::string path;    // decoded
  std::string query;   // as sent
  NamedTexts headers;  // names in lower case
  std::string body;
  std::string address;
  int refusal = 0;  // the status of what is refused for its form, before its body is read
};

}  // namespace ondrel
