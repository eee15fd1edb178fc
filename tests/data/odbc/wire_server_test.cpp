#include "wire_server.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <bit>
#include <cstdint>
#include <cstring>

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

constexpr int kBatch = 1, kTransaction = 14, kLogin = 16, kPrelogin = 18, kReply = 4;

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
  constexpr size_t kPacket = 4000;
  for (bool last = false; !last;) {
    const std::string_view part = body.substr(0, kPacket);
    body.remove_prefix(part.size());
    last = body.empty();
    const size_t length = part.size() + 8;
    std::string packet = byte(kReply) + byte(last) + byte(static_cast<int>(length >> 8)) +
                         byte(static_cast<int>(length & 255)) + std::string(4, '\0');
    packet += part;
    send(connection, packet.data(), packet.size(), MSG_NOSIGNAL);
  }
}

// ---- tokens of a reply

std::string withLength(int token, const std::string& content) {
  return byte(token) + raw(static_cast<std::uint16_t>(content.size())) + content;
}
std::string done(bool more = false, std::int64_t rows = 0) {
  return byte(0xFD) + raw(static_cast<std::uint16_t>((more ? 1 : 0) | 0x10)) + raw(std::uint16_t{0xC1}) +
         raw(rows);
}
std::string said(int token, std::int32_t number, std::string_view text, int severity) {
  return withLength(token, raw(number) + byte(1) + byte(severity) +
                               raw(static_cast<std::uint16_t>(text.size())) + wide(text) + byte(0) + byte(0) +
                               raw(std::int32_t{1}));
}
std::string error(std::int32_t number, std::string_view text) {
  return said(0xAA, number, text, 16);
}

struct WireColumn {
  std::string name, type, value, null;
};

const std::string kCollation = "\x09\x04" + std::string("\xD0\x00\x34", 3);

std::string head(const std::vector<WireColumn>& columns) {
  std::string bytes = byte(0x81) + raw(static_cast<std::uint16_t>(columns.size()));
  for (const WireColumn& column : columns)
    bytes += raw(std::uint32_t{0}) + raw(std::uint16_t{1}) + column.type +
             byte(static_cast<int>(column.name.size())) + wide(column.name);
  return bytes;
}

std::string inPieces(const std::string& bytes) {
  std::string result = raw(std::uint64_t{bytes.size()});
  for (size_t at = 0; at < bytes.size(); at += 3000) {
    const std::string piece = bytes.substr(at, 3000);
    result += raw(static_cast<std::uint32_t>(piece.size())) + piece;
  }
  return result + raw(std::uint32_t{0});
}

std::string oneRow() {
  return head({{"one", "\x26\x04", "", ""}}) + byte(0xD1) + "\x04" + raw(std::int32_t{1}) + done(true, 1);
}

std::string typesAnswer() {
  const std::string day = raw(std::int32_t{46348}) + raw(std::uint32_t{(10 * 3600 + 30 * 60 + 5) * 300});
  const std::string null = byte(0), longNull = "\xFF\xFF", pieceNull(8, '\xFF');
  // clang-format off
  const std::vector<WireColumn> columns = {
      {"int",      "\x26\x04",                         "\x04" + raw(std::int32_t{-7}),                  null},
      {"tinyint",  "\x26\x01",                         "\x01\xFF",                                      null},
      {"bigint",   "\x26\x08",                         "\x08" + raw(std::int64_t{3'000'000'000}),       null},
      {"bit",      "\x68\x01",                         "\x01\x01",                                      null},
      {"float",    "\x6D\x08",                         "\x08" + raw(0.1),                               null},
      {"money",    "\x6E\x08",                         "\x08" + raw(std::int32_t{0}) + raw(123456),     null},
      {"decimal",  "\x6A\x11\x09\x04",                 "\x05\x01" + raw(82500),                         null},
      {"datetime", "\x6F\x08",                         "\x08" + day,                                    null},
      {"guid",     "\x24\x10",                         "\x10" + std::string(16, 'A'),                   null},
      {"varchar",  "\xA7" + raw(std::uint16_t{64}) + kCollation,     raw(std::uint16_t{3}) + "Zo\xEB",       longNull},
      {"nvarchar", "\xE7" + raw(std::uint16_t{128}) + kCollation,    raw(std::uint16_t{10}) + wide("Zoë €"), longNull},
      {"long",     "\xE7" + raw(std::uint16_t{0xFFFF}) + kCollation, inPieces(wide(wireLongText())),         pieceNull},
  };
  // clang-format on
  std::string bytes = head(columns) + byte(0xD1);
  for (const WireColumn& column : columns) bytes += column.value;
  bytes += byte(0xD1);
  for (const WireColumn& column : columns) bytes += column.null;
  return bytes + done(false, 2);
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

}  // namespace

std::string wireLongText() {
  std::string text;
  for (int k = 0; k < 6000; ++k) text += "né€ ";
  return text;
}

WireServer::WireServer() : listener_(socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* any = reinterpret_cast<sockaddr*>(&address);
  bind(listener_, any, size);
  listen(listener_, 8);
  getsockname(listener_, any, &size);
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] {
    for (int connection = 0; (connection = accept(listener_, nullptr, nullptr)) >= 0;)
      threads_.emplace_back([this, connection] { serve(connection); });
  });
}

WireServer::~WireServer() {
  shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  close(listener_);
  for (std::thread& each : threads_) each.join();
}

void WireServer::serve(int connection) {
  std::string body;
  for (int type = 0; (type = message(connection, body)) != 0;) {
    if (type == kPrelogin) {
      note("encryption " + std::to_string(encryptionAsked(body)));
      reply(connection, kPreloginAnswer);
    } else if (type == kLogin) {
      note(loginNote(body));
      reply(connection, loginAnswer());
    } else if (type == kTransaction) {
      const int request = body[numberAt<std::uint32_t>(body, 0)];
      note(request == 5 ? "<begin>" : request == 7 ? "<commit>" : "<rollback>");
      const std::string begun = byte(8) + byte(8) + raw(std::int64_t{1}) + byte(0);
      reply(connection, (request == 5 ? withLength(0xE3, begun) : "") + done());
    } else if (type == kBatch) {
      const std::string sql = narrow(std::string_view(body).substr(numberAt<std::uint32_t>(body, 0)));
      note(sql);
      if (!answerBatch(connection, sql)) break;
    }
  }
  close(connection);
}

bool WireServer::answerBatch(int connection, std::string_view sql) {
  const auto has = [&](std::string_view word) { return sql.find(word) != std::string_view::npos; };
  if (has("drop")) return false;
  std::string answer = done(false, 1);
  if (has("types")) answer = typesAnswer();
  if (has("missing")) answer = error(208, "Invalid object name 'missing'.") + done();
  if (has("procedure"))
    answer = done(true, 3) + said(0xAB, 0, "a message", 0) + done(true, 1) + oneRow() + done();
  if (has("late"))
    answer = oneRow() + error(2627, "Violation of a key") + said(0xAB, 3621, "Terminated.", 0) + done();
  if (has("one") || has("last")) answer = oneRow() + done();
  reply(connection, answer);
  return !has("last");
}

namespace {

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
    return "Provider=SQLOLEDB;Data Source=127.0.0.1," + std::to_string(server.port()) +
           ";Initial Catalog=Shop;User ID=till;Password=\"p;w}é\"" + more;
  }
  std::vector<std::string> take() { return server.take(); }

  WireServer server;
  std::shared_ptr<OdbcPool> pool = std::make_shared<OdbcPool>();
  Apartment page;
};

TEST_F(FreeTdsOnTheWire, SendsBatchesWithinATransaction) {
  executeInTransaction(page, "insert 'Zoë € ? {d x}'");
  EXPECT_THAT(take(), ElementsAre("encryption 0", "login till p;w}é Shop", "<begin>",
                                  "insert 'Zoë € ? {d x}'", "<commit>", "<rollback>"))
      << "the last closes the transaction that the driver opens behind a commit";
  openTransaction(page);
  executeInTransaction(page, "insert a");
  closeTransaction(page);
  EXPECT_EQ(queryDatabase(page, "select one")->integer("one"), 1);
  EXPECT_THAT(take(), ElementsAre("<begin>", "insert a", "<rollback>", "<rollback>", "select one"));
}

TEST_F(FreeTdsOnTheWire, GivesTypedRows) {
  const RecordsetRef table = queryDatabase(page, "select types");
  EXPECT_TRUE(table->value("int").identicalTo(-7));
  EXPECT_TRUE(table->value("tinyint").identicalTo(255));
  EXPECT_TRUE(table->value("bigint").identicalTo(3e9));
  EXPECT_TRUE(table->value("bit").identicalTo(true));
  EXPECT_TRUE(table->value("float").identicalTo(0.1));
  EXPECT_TRUE(table->value("money").identicalTo(12.3456));
  EXPECT_TRUE(table->value("decimal").identicalTo(8.25));
  EXPECT_TRUE(table->value("datetime").identicalTo(Date::of(2026, 11, 24, 10, 30, 5)));
  EXPECT_EQ(table->text("guid"), "41414141-4141-4141-4141-414141414141");
  EXPECT_EQ(table->text("varchar"), "Zoë");
  EXPECT_EQ(table->text("nvarchar"), "Zoë €");
  EXPECT_EQ(table->text("long"), wireLongText());
  table->moveNext();
  for (int column = 0; column < table->fieldCount(); ++column)
    EXPECT_TRUE(table->isNull(Column(column))) << column;
}

TEST_F(FreeTdsOnTheWire, TellsResultsErrorsAndLossesApart) {
  EXPECT_EQ(queryDatabase(page, "execute procedure")->integer("one"), 1);
  EXPECT_FALSE(queryDatabase(page, "delete t")->isOpen());
  EXPECT_EQ(errorOf([&] { queryDatabase(page, "select missing"); }), 208);
  EXPECT_EQ(errorOf([&] { queryDatabase(page, "insert late"); }), 2627);
  EXPECT_EQ(errorOf([&] { queryDatabase(page, "drop"); }), static_cast<int>(ErrorNumber::ConnectionFailed));
  EXPECT_EQ(queryDatabase(page, "select last one")->integer("one"), 1);
  take();
  executeInTransaction(page, "insert a");
  EXPECT_THAT(take(), ElementsAre("encryption 0", "login till p;w}é Shop", "<begin>", "insert a", "<commit>",
                                  "<rollback>"))
      << "the connection died in the pool";
}

TEST_F(FreeTdsOnTheWire, SendsNoLoginInTheClearWhenEncryptionIsAsked) {
  page.DBConnectionString = connectionString(";Use Encryption for Data=True");
  EXPECT_THROW(queryDatabase(page, "select one"), Error);
  EXPECT_THAT(take(), ElementsAre("encryption 1"));
}

}  // namespace
}  // namespace ondrel
