#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <thread>

#include "base/text.h"
#include "data/odbc/odbc_connection.h"
#include "data/query_database.h"
#include "support/error_of.h"

namespace ondrel {
namespace {

using testing::ElementsAre;

// ---- numbers and texts of the wire: little-endian, two bytes a character

template <class Number>
std::string raw(Number number) {
  std::string bytes(sizeof number, '\0');
  std::memcpy(bytes.data(), &number, sizeof number);
  return bytes;
}
std::string byte(int value) {
  return std::string(1, static_cast<char>(value));
}
std::string wide(std::string_view text) {
  std::string result;
  for (size_t at = 0; at < text.size();) result += raw(static_cast<std::uint16_t>(nextCharacter(text, at)));
  return result;
}
std::string narrow(std::string_view bytes) {
  std::string text;
  for (size_t at = 0; at + 1 < bytes.size(); at += 2)
    appendCharacter(text,
                    static_cast<unsigned char>(bytes[at]) + 256U * static_cast<unsigned char>(bytes[at + 1]));
  return text;
}
template <class Number>
Number numberAt(std::string_view bytes, size_t at) {
  Number number{};
  std::memcpy(&number, bytes.data() + at, sizeof number);
  return number;
}

// ---- messages: packets of a type, a length and a mark on the last

constexpr int kBatch = 1, kLogin = 16, kPrelogin = 18, kReply = 4;

bool receive(int connection, size_t length, std::string& bytes) {
  const size_t before = bytes.size();
  bytes.resize(before + length);
  return length == 0 ||
         recv(connection, bytes.data() + before, length, MSG_WAITALL) == static_cast<ssize_t>(length);
}

int message(int connection, std::string& body) {
  body.clear();
  for (;;) {
    std::string head;
    if (!receive(connection, 8, head)) return 0;
    const size_t length =
        static_cast<size_t>(static_cast<unsigned char>(head[2])) * 256 + static_cast<unsigned char>(head[3]);
    if (!receive(connection, length - 8, body)) return 0;
    if (head[1] & 1) return head[0];
  }
}

void reply(int connection, std::string_view body) {
  const size_t length = body.size() + 8;
  std::string packet = byte(kReply) + byte(1) + byte(static_cast<int>(length >> 8)) +
                       byte(static_cast<int>(length & 255)) + std::string(4, '\0');
  packet += body;
  send(connection, packet.data(), packet.size(), MSG_NOSIGNAL);
}

// ---- tokens of a reply

std::string withLength(int token, const std::string& content) {
  return byte(token) + raw(static_cast<std::uint16_t>(content.size())) + content;
}
std::string done(std::int64_t rows = 0) {
  return byte(0xFD) + raw(std::uint16_t{0x10}) + raw(std::uint16_t{0xC1}) + raw(rows);
}

std::string loginAnswer() {
  const std::string version = std::string("\x74\x00\x00\x04", 4);
  return withLength(0xAD, byte(1) + version + byte(4) + wide("Wire") + std::string("\x0E\x00\x00\x00", 4)) +
         done();
}

const std::string kPreloginAnswer("\x00\x00\x0B\x00\x06\x01\x00\x11\x00\x01\xFF\x0E\x00\x00\x00\x00\x00\x02",
                                  18);

int encryptionAsked(std::string_view prelogin) {
  for (size_t at = 0; static_cast<unsigned char>(prelogin[at]) != 0xFF; at += 5)
    if (prelogin[at] == 1) return prelogin[static_cast<unsigned char>(prelogin[at + 2])];
  return -1;
}

std::string loginText(std::string_view login, size_t field) {
  return std::string(
      login.substr(numberAt<std::uint16_t>(login, field), 2U * numberAt<std::uint16_t>(login, field + 2)));
}

std::string loginNote(std::string_view login) {
  std::string password = loginText(login, 44);
  for (char& c : password) {
    const auto mixed = static_cast<std::uint8_t>(static_cast<std::uint8_t>(c) ^ 0xA5U);
    c = static_cast<char>(std::rotl(mixed, 4));
  }
  return "login " + narrow(loginText(login, 40)) + " " + narrow(password) + " " +
         narrow(loginText(login, 68));
}

// A stand-in for a server on the loopback, as far as a client of its wire sees it: login and batches,
// and no encryption. It records "login USER PASSWORD DATABASE", "encryption N", the batches, "<begin>",
// "<commit>" and "<rollback>".
// Each batch is answered with a row count, but "drop" closes the connection, "last" does so behind its answer, and the
// step `silentAt` is never answered.
class WireServer {
 public:
  WireServer() : listener_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* any = reinterpret_cast<sockaddr*>(&address);
    bind(listener_, any, size);
    listen(listener_, 8);
    getsockname(listener_, any, &size);
    port = ntohs(address.sin_port);
    acceptor_ = std::thread([this] {
      for (int connection = 0; (connection = accept(listener_, nullptr, nullptr)) >= 0;)
        connections_.push_back(connection), threads_.emplace_back([this, connection] { serve(connection); });
    });
  }
  ~WireServer() {
    shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    close(listener_);
    for (const int connection : connections_) shutdown(connection, SHUT_RDWR);
    for (std::thread& each : threads_) each.join();
    for (const int connection : connections_) close(connection);
  }
  std::vector<std::string> take() {
    const std::scoped_lock guard(mutex_);
    return std::exchange(log_, {});
  }

  int port = 0;
  std::string silentAt;

 private:
  static std::string stepOf(const std::string& sql) {
    if (sql.ends_with("begin transaction")) return "<begin>";
    if (sql.starts_with("commit")) return "<commit>";
    return sql.ends_with("rollback transaction") ? "<rollback>" : sql;
  }
  void note(std::string what) {
    const std::scoped_lock guard(mutex_);
    log_.push_back(std::move(what));
  }

  void serve(int connection) {
    std::string body;
    for (int type = 0; (type = message(connection, body)) != 0;) {
      if (type == kPrelogin) {
        note("encryption " + std::to_string(encryptionAsked(body)));
        reply(connection, kPreloginAnswer);
      } else if (type == kLogin) {
        note(loginNote(body));
        if (silentAt != "login") reply(connection, loginAnswer());
      } else if (type == kBatch) {
        const std::string sql = narrow(std::string_view(body).substr(numberAt<std::uint32_t>(body, 0)));
        const std::string step = stepOf(sql);
        note(step);
        if (sql == "drop") break;
        if (step == silentAt) continue;
        reply(connection, done(1));
        if (sql == "last") break;
      }
    }
    shutdown(connection, SHUT_RDWR);
  }

  int listener_ = -1;
  std::thread acceptor_;
  std::vector<std::thread> threads_;
  std::vector<int> connections_;
  std::mutex mutex_;
  std::vector<std::string> log_;
};

// FreeTDS itself, as the driver manager loads it.
class FreeTdsOnTheWire : public testing::Test {
 protected:
  FreeTdsOnTheWire() {
    page.connect = [this](const ConnectionSettings& settings) { return connectOdbc(settings, pool); };
    page.DBConnectionString = connectionString();
  }
  ~FreeTdsOnTheWire() override {
    page = {};
    pool = nullptr;
  }
  std::string connectionString(const std::string& more = "") {
    return "Provider=SQLOLEDB;Data Source=127.0.0.1," + std::to_string(server.port) +
           ";Initial Catalog=Shop;User ID=till;Password=\"p;w}é\"" + more;
  }

  WireServer server;
  std::shared_ptr<OdbcPool> pool = std::make_shared<OdbcPool>();
  Apartment page;
};

TEST_F(FreeTdsOnTheWire, SendsBatchesWithinATransaction) {
  executeInTransaction(page, "insert 'Zoë € ? {d x}'");
  EXPECT_THAT(server.take(), ElementsAre("encryption 0", "login till p;w}é Shop", "<begin>",
                                         "insert 'Zoë € ? {d x}'", "<commit>"));
  openTransaction(page);
  executeInTransaction(page, "insert a");
  closeTransaction(page);
  EXPECT_FALSE(queryDatabase(page, "delete t")->isOpen());
  EXPECT_THAT(server.take(), ElementsAre("<begin>", "insert a", "<rollback>", "delete t"));
}

TEST_F(FreeTdsOnTheWire, TellsALoss) {
  EXPECT_EQ(errorOf([&] { queryDatabase(page, "drop"); }), static_cast<int>(ErrorNumber::ConnectionFailed));
  queryDatabase(page, "last");
  server.take();
  executeInTransaction(page, "insert a");
  EXPECT_THAT(server.take(),
              ElementsAre("encryption 0", "login till p;w}é Shop", "<begin>", "insert a", "<commit>"))
      << "the connection died in the pool";
}

// A server that falls silent holds up nobody for longer than the limit, here two seconds with the grace, and nobody
// who asks for something else.
TEST_F(FreeTdsOnTheWire, WaitsNoLongerThanTheLimit) {
  const auto begun = std::chrono::steady_clock::now();
  auto other = connectOdbc({connectionString(), "", "", nullptr}, pool);
  other->open();
  for (const char* step : {"<begin>", "<commit>", "select 1", "login"}) {
    server.silentAt = step;
    auto connection = connectOdbc({connectionString(";Connect Timeout=1;Pooling=no"), "", "", nullptr}, pool);
    connection->setCommandTimeout(1);
    EXPECT_EQ(errorOf([&] {
                connection->open();
                connection->begin();
                connection->query("select 1");
                connection->commit();
              }),
              -2147217871)
        << step;
    EXPECT_FALSE(other->query("select 2")->isOpen());
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(12));
}

TEST_F(FreeTdsOnTheWire, SendsNoLoginInTheClearWhenEncryptionIsAsked) {
  page.DBConnectionString = connectionString(";Use Encryption for Data=True");
  EXPECT_THROW(queryDatabase(page, "select 1"), Error);
  EXPECT_THAT(server.take(), ElementsAre("encryption 1"));
}

}  // namespace
}  // namespace ondrel
