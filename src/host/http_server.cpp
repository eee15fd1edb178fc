#include "host/http_server.h"

// A morning's worth of browsers may knock at once.
#define CPPHTTPLIB_LISTEN_BACKLOG 256

#include <arpa/inet.h>
#include <httplib.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "base/error.h"
#include "base/text.h"

namespace ondrel {
namespace {

using Moment = std::chrono::steady_clock::time_point;

constexpr size_t kLongestPath = 1024;
constexpr size_t kMostRequests = 10'000;  // on one connection
constexpr std::chrono::milliseconds kDrainTime{500};
constexpr size_t kDrainBytes = 4 << 20;

constexpr const char* kAnything = R"([\s\S]*)";

// Answers to what never becomes a request.
constexpr std::string_view kFullAnswer =
    "HTTP/1.1 503 Service Unavailable\r\nRetry-After: 5\r\nConnection: close\r\n"
    "Content-Type: text/plain; charset=utf-8\r\nContent-Length: 18\r\n\r\nThe host is full.\n";
constexpr std::string_view kTooLargeAnswer =
    "HTTP/1.1 431 Request Header Fields Too Large\r\nConnection: close\r\nContent-Length: 0\r\n\r\n";
constexpr std::string_view kTooLateAnswer =
    "HTTP/1.1 408 Request Timeout\r\nConnection: close\r\nContent-Length: 0\r\n\r\n";

// ---- one connection

// A socket with a buffer, limits and a time by which a request must have come.
class LimitedStream : public httplib::Stream {
 public:
  LimitedStream(socket_t socket, const HttpLimits& limits) : socket_(socket), limits_(limits) {}

  // Between two requests.
  void beginRequest() {
    headerBytes_ = 0;
    isHead_ = true;
    isAnswered_ = false;
    lineEnds_ = 0;
    deadline_ = std::chrono::steady_clock::now() + limits_.headTime;
  }

  // True once more bytes are there; false after the time, at the end, or when `stop` becomes readable.
  bool waitForBytes(std::chrono::milliseconds time, int stop) const {
    if (begin_ < end_) return true;
    std::array<pollfd, 2> waiting{{{socket_, POLLIN, 0}, {stop, POLLIN, 0}}};
    return ::poll(waiting.data(), waiting.size(), static_cast<int>(time.count())) > 0 &&
           waiting[1].revents == 0;
  }

  bool isHeadTooLarge() const { return isHead_ && headerBytes_ > limits_.headerBytes; }
  void close() { mustClose_ = true; }
  // The server gives up without a word where not even the first line comes to its end.
  void answerBrokenHead() {
    mustClose_ = true;
    if (isAnswered_ || headerBytes_ == 0) return;
    const std::string_view answer = isHeadTooLarge() ? kTooLargeAnswer : kTooLateAnswer;
    write(answer.data(), answer.size());
  }
  // Takes for a moment what is still on its way: an answer is lost to a sender that is cut off.
  void drain() {
    ::shutdown(socket_, SHUT_WR);
    deadline_ = std::chrono::steady_clock::now() + kDrainTime;
    for (size_t taken = 0; taken < kDrainBytes && fill(); taken += end_) {
    }
  }
  bool mustClose() const { return mustClose_; }

  bool is_readable() const override { return begin_ < end_ || waitFor(POLLIN, deadline_); }
  bool is_writable() const override { return waitFor(POLLOUT, writeDeadline()); }

  ssize_t read(char* data, size_t size) override {
    if (isHeadTooLarge()) return -1;
    if (begin_ == end_ && !fill()) return -1;
    const size_t count = std::min(size, end_ - begin_);
    std::copy_n(buffer_.data() + begin_, count, data);
    begin_ += count;
    if (isHead_) countHead({data, count});
    return static_cast<ssize_t>(count);
  }

  ssize_t write(const char* data, size_t size) override {
    if (!is_writable()) return -1;
    isAnswered_ = true;
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
  bool fill() {
    if (!waitFor(POLLIN, deadline_)) return false;
    const ssize_t count = ::recv(socket_, buffer_.data(), buffer_.size(), 0);
    begin_ = 0;
    end_ = count > 0 ? static_cast<size_t>(count) : 0;
    return count > 0;
  }

  // The head ends with an empty line; then the time of the body begins.
  void countHead(std::string_view bytes) {
    headerBytes_ += bytes.size();
    for (const char c : bytes) {
      if (c == '\n')
        ++lineEnds_;
      else if (c != '\r')
        lineEnds_ = 0;
    }
    if (lineEnds_ < 2) return;
    isHead_ = false;
    deadline_ = std::chrono::steady_clock::now() + limits_.headTime;
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
  std::array<char, 8192> buffer_{};
  size_t begin_ = 0, end_ = 0;
  size_t headerBytes_ = 0;
  int lineEnds_ = 0;
  bool isHead_ = true;
  bool isAnswered_ = false;
  bool mustClose_ = false;
  Moment deadline_;
};

// The connection that the thread serves; the server's callbacks do not get it otherwise.
thread_local LimitedStream* currentStream = nullptr;
// Set where the connection that comes next is one too many.
thread_local bool isTooMany = false;

// ---- threads for connections

// A thread for each connection, made when it is needed and kept for the next.
class ConnectionThreads : public httplib::TaskQueue {
 public:
  explicit ConnectionThreads(size_t most) : most_(most) {}

  void enqueue(std::function<void()> task) override {
    {
      const std::lock_guard lock(mutex_);
      if (tasks_.size() < idle_ || threads_.size() < most_) {
        tasks_.push_back(std::move(task));
        if (tasks_.size() > idle_) threads_.emplace_back([this] { serve(); });
        changed_.notify_one();
        return;
      }
    }
    isTooMany = true;
    task();
    isTooMany = false;
  }

  void shutdown() override {
    {
      const std::lock_guard lock(mutex_);
      isStopping_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

 private:
  void serve() {
    std::unique_lock lock(mutex_);
    while (true) {
      ++idle_;
      changed_.wait(lock, [this] { return isStopping_ || !tasks_.empty(); });
      --idle_;
      if (tasks_.empty()) return;
      const std::function<void()> task = std::move(tasks_.front());
      tasks_.pop_front();
      lock.unlock();
      task();
      lock.lock();
    }
  }

  size_t most_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> tasks_;
  std::vector<std::thread> threads_;
  size_t idle_ = 0;
  bool isStopping_ = false;
};

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

// What is not served whatever it asks for, or 0.
//
// | what                                        | status | since                                            |
// |---------------------------------------------|--------|--------------------------------------------------|
// | a length or a host that is told twice       | 400    | a proxy may believe the other one                |
// | a body of anything but a POST               | 400    | it stays unread and would be the next request    |
// | a body without a length                     | 411    | its limit is known only when it is all there     |
// | a path that is too long                     | 414    |                                                  |
// | a body in another coding                    | 415    | it may be a thousand times as long               |
// | parts of an answer                          | 416    | many parts are more than the whole               |
int refusalOf(const httplib::Request& request) {
  const size_t lengths = request.get_header_value_count("Content-Length");
  if (lengths > 1 || request.get_header_value_count("Host") > 1) return 400;
  if (request.has_header("Transfer-Encoding") || (lengths == 0 && request.method == "POST")) return 411;
  const bool hasBody = lengths == 1 && request.get_header_value("Content-Length") != "0";
  if (hasBody && request.method != "POST") return 400;
  if (request.path.size() > kLongestPath) return 414;
  if (request.has_header("Content-Encoding")) return 415;
  return request.has_header("Range") ? 416 : 0;
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
    new_task_queue = [this] { return new ConnectionThreads(limits_.connections); };
    set_payload_max_length(limits_.bodyBytes);
    set_tcp_nodelay(true);
    set_keep_alive_max_count(kMostRequests);
    set_keep_alive_timeout(std::chrono::ceil<std::chrono::seconds>(limits_.keepAlive).count());
    set_socket_options([](socket_t socket) {
      const int on = 1;
      ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    });
    // Before the body is read: what will not be served leaves it unread, so the connection ends.
    set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
      const bool isUsual = request.method == "GET" || request.method == "HEAD" || request.method == "POST";
      const int refusal = refusalOf(request);
      if (isUsual && refusal == 0) return HandlerResponse::Unhandled;
      currentStream->close();
      HttpRequest refused = requestOf(request);
      refused.refusal = refusal;
      setAnswer(response, handler_(refused));
      return HandlerResponse::Handled;
    });
    const auto serve = [this](const httplib::Request& request, httplib::Response& response) {
      setAnswer(response, handler_(requestOf(request)));
    };
    Get(kAnything, serve);
    Post(kAnything, serve);
    set_error_handler([](const httplib::Request&, httplib::Response& response) {
      if (!response.body.empty()) return;
      currentStream->close();
      if (currentStream->isHeadTooLarge()) response.status = 431;
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
                  "Cannot listen at " + address + ":" + std::to_string(port));
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

  size_t connections() const { return connections_; }

 private:
  bool process_and_close_socket(socket_t socket) override {
    if (isTooMany) {
      sendFullAnswer(socket);
    } else {
      ++connections_;
      serveConnection(socket);
      --connections_;
    }
    ::shutdown(socket, SHUT_RDWR);
    ::close(socket);
    return true;
  }

  void serveConnection(socket_t socket) {
    LimitedStream stream(socket, limits_);
    currentStream = &stream;
    for (size_t left = kMostRequests; left > 0 && stream.waitForBytes(limits_.keepAlive, stopEvent_);
         --left) {
      stream.beginRequest();
      const bool isLast = left == 1 || isStopping_;
      bool isClosed = false;
      if (!process_request(stream, isLast, isClosed, nullptr)) stream.answerBrokenHead();
      if (isClosed || stream.mustClose()) break;
    }
    currentStream = nullptr;
    if (stream.mustClose()) stream.drain();
  }

  HttpHandler handler_;
  HttpLimits limits_;
  std::atomic<bool> isStopping_ = false;
  std::atomic<bool> hasEnded_ = false;
  std::atomic<size_t> connections_ = 0;
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
