#pragma once

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "host/page_host.h"
#include "host/url_text.h"
#include "support/store_fixture.h"

namespace ondrel {

// A browser: keeps the session's cookie and the token that the pages of these tests end with.
class Browser {
 public:
  explicit Browser(int port) { moveTo(port); }

  httplib::Response get(const std::string& path) { return kept(client->Get(path, headers())); }
  // Sends the token; `number` when it is not empty.
  httplib::Response post(const std::string& path, const std::string& form, const std::string& number = "") {
    httplib::Headers sent = headers();
    sent.emplace("X-Request-Token", token);
    if (!number.empty()) sent.emplace("X-Request-Number", number);
    return kept(client->Post(path, sent, form, "application/x-www-form-urlencoded"));
  }

  // To another host, or to the same one begun anew.
  void moveTo(int port) {
    client = std::make_unique<httplib::Client>("127.0.0.1", port);
    client->set_keep_alive(true);
    client->set_tcp_nodelay(true);
    client->set_read_timeout(20);
  }

  std::unique_ptr<httplib::Client> client;
  std::string cookie;
  std::string token;

 private:
  httplib::Headers headers() const {
    return cookie.empty() ? httplib::Headers() : httplib::Headers{{"Cookie", "ondrel_session=" + cookie}};
  }
  httplib::Response kept(const httplib::Result& result) {
    if (!result) {
      ADD_FAILURE() << "no answer: " << httplib::to_string(result.error());
      return {};
    }
    const std::string set = result->get_header_value("Set-Cookie");
    if (!set.empty()) cookie = cookieValue(set, "ondrel_session");
    return *result;
  }
};

// A host on the sample store of a test, with pages of the test's own in a folder that goes with it.
class HostTest : public StoreTest {
 protected:
  HostTest()
      : folder(std::filesystem::temp_directory_path() / ("ondrel_host_" + std::to_string(::getpid()))) {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder / "pages/assets");
    std::filesystem::create_directories(folder / "pages/shared");
    options.connectionString = store.connectionString();
    options.pages = folder / "pages";
    options.port = 0;
    options.log = folder / "log";
    options.now = clock->now();
    page("token.js", "Response.write(Request.token);");
    options.limits.http.keepAlive = std::chrono::milliseconds(2000);
  }
  ~HostTest() override {
    host.reset();
    std::filesystem::remove_all(folder);
  }

  void page(const std::string& name, std::string_view text) {
    std::ofstream(options.pages / name, std::ios::trunc) << text;
  }
  void start() {
    host = std::make_unique<PageHost>(options);
    port = host->start();
  }
  void restart() {
    host.reset();
    start();
  }
  // A browser that has been to the page that gives it its token.
  Browser visitor() const {
    Browser browser(port);
    browser.token = browser.get("/token").body;
    return browser;
  }
  // Waits until so many pages are at work.
  void awaitBusy(int runners) const {
    const std::string figure = "ondrel_runners_busy " + std::to_string(runners) + "\n";
    while (Browser(port).client->Get("/metrics")->body.find(figure) == std::string::npos)
      std::this_thread::yield();
  }
  std::string log() const {
    std::ifstream stream(folder / "log");
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  // What a raw text gets as answer.
  std::string sent(std::string_view text) const {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    while (!text.empty()) {
      const ssize_t count = ::send(socket, text.data(), text.size(), MSG_NOSIGNAL);
      if (count <= 0) break;
      text.remove_prefix(static_cast<size_t>(count));
    }
    std::string answer;
    char buffer[4096];
    for (ssize_t count; (count = ::recv(socket, buffer, sizeof buffer, 0)) > 0;)
      answer.append(buffer, static_cast<size_t>(count));
    ::close(socket);
    return answer;
  }

  std::filesystem::path folder;
  HostOptions options;
  std::unique_ptr<PageHost> host;
  int port = 0;
};

}  // namespace ondrel
