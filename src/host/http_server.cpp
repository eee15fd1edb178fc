#include "host/http_server.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <optional>
#include <thread>

#include "base/error.h"
#include "base/text.h"
#include "host/connections.h"
#include "host/http_head.h"

namespace ondrel {
namespace {

using Moment = std::chrono::steady_clock::time_point;

constexpr size_t kMostRequests = 10'000;  // on one connection
constexpr std::chrono::milliseconds kDrainTime{500};
constexpr size_t kDrainBytes = 4 << 20;

constexpr const char* kAnything = R"([\s\S]*)";

// Answers to what never becomes a request.
constexpr std::string_view kFullAnswer =
    "HTTP/1.1 503 Service Unavailable\r\nRetry-After: 5\r\nConnection: close\r\n"
    "Content-Type: text/plain; charset=utf-8\r\nContent-Length: 18\r\n\r\nThe host is full.\n";

// ---- one connection

// A socket with a buffer, limits and a time by which a request must have come.
class LimitedStream : public httplib::Stream {
 public:
  LimitedStream(socket_t socket, const HttpLimits& limits) : socket_(socket), limits_(limits) {}

  // Waits for the head of the next request, all of it, which stays to be read; the time of its body begins then.
  // Nothing where nothing came.
  std::optional<HttpRequest> awaitHead() {
    deadline_ = std::chrono::steady_clock::now() + limits_.headTime;
    HttpRequest request;
    size_t searched = 0;
    std::optional<size_t> end;
    while (!(end = headEnd(waiting(), searched))) {
      searched = waiting().size();
      if (searched > limits_.headerBytes) break;
      if (fill()) continue;
      if (waiting().empty()) return std::nullopt;
      request.refusal = 408;
      return request;
    }
    deadline_ = std::chrono::steady_clock::now() + limits_.headTime;
    const bool isTooLarge = !end || *end > limits_.headerBytes;
    if (!isTooLarge) request = readHead(waiting().substr(0, *end), limits_);
    if (isTooLarge) request.refusal = 431;
    return request;
  }

  // True once more bytes are there; false after the time, at the end, or when `stop` becomes readable.
  bool waitForBytes(std::chrono::milliseconds time, int stop) const {
    if (!waiting().empty()) return true;
    std::array<pollfd, 2> waiting{{{socket_, POLLIN, 0}, {stop, POLLIN, 0}}};
    return ::poll(waiting.data(), waiting.size(), static_cast<int>(time.count())) > 0 &&
           waiting[1].revents == 0;
  }

  void close() { mustClose_ = true; }
  // Takes for a moment what is still on its way: an answer is lost to a sender that is cut off.
  void drain() {
    ::shutdown(socket_, SHUT_WR);
    deadline_ = std::chrono::steady_clock::now() + kDrainTime;
    buffer_.clear();
    for (size_t taken = 0; taken < kDrainBytes && fill(); taken += buffer_.size()) buffer_.clear();
  }
  bool mustClose() const { return mustClose_; }

  bool is_readable() const override { return !waiting().empty() || waitFor(POLLIN, deadline_); }
  bool is_writable() const override { return waitFor(POLLOUT, writeDeadline()); }

  ssize_t read(char* data, size_t size) override {
    if (waiting().empty() && !fill()) return -1;
    const size_t count = waiting().copy(data, size);
    begin_ += count;
    return static_cast<ssize_t>(count);
  }

  ssize_t write(const char* data, size_t size) override {
    if (!is_writable()) return -1;
    return ::send(socket_, data, size, MSG_NOSIGNAL);
  }

  void get_remote_ip_and_port(std::string& ip, int& port) const override {
    addressOf(::getpeername, ip, port);
  }
  void get_local_ip_and_port(std::string& ip, int& port) const override {
    addressOf(::getsockname, ip, port);
  }
  socket_t socket() const override { return socket_; }

 private:
  std::string_view waiting() const { return std::string_view(buffer_).substr(begin_); }

  // More behind what waits to be read.
  bool fill() {
    if (!waitFor(POLLIN, deadline_)) return false;
    std::array<char, 8192> bytes;
    const ssize_t count = ::recv(socket_, bytes.data(), bytes.size(), 0);
    if (count <= 0) return false;
    buffer_.erase(0, std::exchange(begin_, 0));
    buffer_.append(bytes.data(), static_cast<size_t>(count));
    return true;
  }

  Moment writeDeadline() const { return std::chrono::steady_clock::now() + limits_.headTime; }

  bool waitFor(short events, Moment deadline) const {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
    pollfd waiting{socket_, events, 0};
    return ::poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(left, 0))) > 0;
  }

  template <class Asker>
  void addressOf(Asker ask, std::string& ip, int& port) const {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (ask(socket_, reinterpret_cast<sockaddr*>(&address), &length) != 0) return;
    const void* bytes = nullptr;
    if (address.ss_family == AF_INET) {
      const auto& four = reinterpret_cast<const sockaddr_in&>(address);
      bytes = &four.sin_addr;
      port = ntohs(four.sin_port);
    } else if (address.ss_family == AF_INET6) {
      const auto& six = reinterpret_cast<const sockaddr_in6&>(address);
      bytes = &six.sin6_addr;
      port = ntohs(six.sin6_port);
    }
    if (bytes && ::inet_ntop(address.ss_family, bytes, text.data(), text.size())) ip = text.data();
  }

  socket_t socket_;
  const HttpLimits& limits_;
  std::string buffer_;
  size_t begin_ = 0;  // of what was not read yet
  bool mustClose_ = false;
  Moment deadline_;
};

// The connection that the thread serves; the server's callbacks do not get it otherwise.
thread_local LimitedStream* currentStream = nullptr;
void sendFullAnswer(socket_t socket) {
  [[maybe_unused]] const ssize_t sent =
      ::send(socket, kFullAnswer.data(), kFullAnswer.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

HttpRequest requestOf(const httplib::Request& source) {
  HttpRequest request;
  request.method = source.method;
  request.path = source.path;
  const size_t question = source.target.find('?');
  if (question != std::string::npos) request.query = source.target.substr(question + 1);
  for (const auto& [name, value] : source.headers) request.headers.emplace_back(toLower(name), value);
  request.body = source.body;
  request.address = source.remote_addr;
  return request;
}

void setAnswer(httplib::Response& target, PageAnswer answer) {
  target.status = answer.status;
  for (auto& [name, value] : answer.headers) target.headers.emplace(std::move(name), std::move(value));
  const bool hasBody = answer.status != 204 && answer.status != 304;
  if (hasBody) target.set_content(std::move(answer.body), answer.contentType);
}

}  // namespace

class HttpServer::Listener : public httplib::Server {
 public:
  Listener(HttpHandler handler, HttpLimits limits) : handler_(std::move(handler)), limits_(limits) {
    new_task_queue = [this] { return new ConnectionThreads(limits_.connections, connections_); };
    set_payload_max_length(limits_.bodyBytes);
    set_tcp_nodelay(true);
    set_keep_alive_max_count(kMostRequests);
    set_keep_alive_timeout(std::chrono::ceil<std::chrono::seconds>(limits_.keepAlive).count());
    set_socket_options([](socket_t socket) {
      const int on = 1;
      ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    });
    const auto serve = [this](const httplib::Request& request, httplib::Response& response) {
      setAnswer(response, handled(currentStream->socket(), requestOf(request)));
    };
    Get(kAnything, serve);
    Post(kAnything, serve);
    set_error_handler([](const httplib::Request&, httplib::Response& response) {
      if (!response.body.empty()) return;
      currentStream->close();
      response.set_content("This request cannot be served.\n", "text/plain; charset=utf-8");
    });
  }

  ~Listener() override {
    end();
    ::close(stopEvent_);
  }

  int begin(const std::string& address, int port) {
    const int bound = port == 0 ? bind_to_any_port(address) : bind_to_port(address, port) ? port : -1;
    if (bound <= 0)
      throw Error(ErrorNumber::PathAccess, "Host",
                  "Cannot listen at " + address + ":" + std::to_string(port) + ": " + std::strerror(errno));
    thread_ = std::thread([this] {
      listen_after_bind();
      hasEnded_ = true;
    });
    return bound;
  }

  void end() {
    if (!thread_.joinable()) return;
    isStopping_ = true;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(stopEvent_, &one, sizeof one);
    while (!is_running() && !hasEnded_) std::this_thread::yield();
    stop();
    thread_.join();
  }

  size_t connections() const { return connections_.size(); }

 private:
  bool process_and_close_socket(socket_t socket) override {
    if (ConnectionThreads::isTooMany()) {
      sendFullAnswer(socket);
    } else {
      serveConnection(socket);
      connections_.leave(socket);
    }
    ::shutdown(socket, SHUT_RDWR);
    ::close(socket);
    return true;
  }

  static std::string addressOf(const LimitedStream& stream) {
    std::string address;
    int port = 0;
    stream.get_remote_ip_and_port(address, port);
    return address;
  }

  PageAnswer handled(socket_t socket, const HttpRequest& request) {
    connections_.setWorking(socket, true);
    PageAnswer answer = handler_(request);
    connections_.setWorking(socket, false);
    return answer;
  }

  // What comes behind the head stays unread, so the connection ends.
  void refuse(LimitedStream& stream, HttpRequest request) {
    request.address = addressOf(stream);
    const PageAnswer answer = handled(stream.socket(), request);
    std::string text = fmt::format("HTTP/1.1 {} Refused\r\nConnection: close\r\n", answer.status);
    for (const auto& [name, value] : answer.headers) text += fmt::format("{}: {}\r\n", name, value);
    text +=
        fmt::format("Content-Type: {}\r\nContent-Length: {}\r\n\r\n", answer.contentType, answer.body.size());
    if (request.method != "HEAD") text += answer.body;
    stream.write(text.data(), text.size());
    stream.close();
  }

  void serveConnection(socket_t socket) {
    LimitedStream stream(socket, limits_);
    connections_.enter(socket, addressOf(stream));
    currentStream = &stream;
    for (size_t left = kMostRequests; left > 0 && stream.waitForBytes(limits_.keepAlive, stopEvent_);
         --left) {
      const auto head = stream.awaitHead();
      if (!head) break;
      if (head->refusal != 0) {
        refuse(stream, *head);
        break;
      }
      const bool isLast = left == 1 || isStopping_;
      bool isClosed = false;
      if (!process_request(stream, isLast, isClosed, nullptr) || isClosed || stream.mustClose()) break;
    }
    currentStream = nullptr;
    if (stream.mustClose()) stream.drain();
  }

  HttpHandler handler_;
  HttpLimits limits_;
  std::atomic<bool> isStopping_ = false;
  std::atomic<bool> hasEnded_ = false;
  ConnectionTable connections_;
  int stopEvent_ = ::eventfd(0, EFD_CLOEXEC);  // readable once the connections are to end
  std::thread thread_;
};

HttpServer::HttpServer(HttpHandler handler, HttpLimits limits)
    : listener_(std::make_unique<Listener>(std::move(handler), limits)) {}

HttpServer::~HttpServer() = default;

int HttpServer::start(const std::string& address, int port) {
  return listener_->begin(address, port);
}

void HttpServer::stop() {
  listener_->end();
}

size_t HttpServer::connections() const {
  return listener_->connections();
}

}  // namespace ondrel
