#pragma once

#include <functional>
#include <memory>
#include <string>

#include "host/http_request.h"
#include "host/page_request.h"

namespace ondrel {

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
