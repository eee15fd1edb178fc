#pragma once

#include <chrono>
#include <functional>
#include <memory>
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

using HttpHandler = std::function<PageAnswer(const HttpRequest&)>;

// The HTTP side of a host: connections, their limits, and one handler for all requests. What goes past a limit is
// answered and the connection closed: 413, 414, 431, 400 for what is no request, and 503 at once for a
// connection too many. So is what could get past the limits or be taken for two requests: bodies without a length,
// in another coding, of a GET, and parts of an answer.
class HttpServer {
 public:
  HttpServer(HttpHandler handler, HttpLimits limits);
  // Stops.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  // Begins to listen; port 0 takes a free one. Returns the port. Error 75 when the address cannot be taken.
  int start(const std::string& address, int port);
  // Takes no more requests and returns when those in progress are answered.
  void stop();

  size_t connections() const;

 private:
  class Listener;
  std::unique_ptr<Listener> listener_;
};

}  // namespace ondrel
