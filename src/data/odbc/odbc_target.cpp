#include "data/odbc/odbc_target.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "base/text.h"
#include "base/whole_number.h"
#include "data/odbc/connection_keywords.h"

namespace ondrel {
namespace {

constexpr std::string_view kSource = "ODBC";

// FreeTDS, the driver of the server's maker, or one of another store, which may be a file.
enum class Family { FreeTds, Maker, Other, File };

bool isServers(Family family) {
  return family == Family::FreeTds || family == Family::Maker;
}

bool contains(std::string_view text, std::string_view part) {
  return toLower(text).find(part) != std::string::npos;
}

std::string withoutBraces(std::string_view name) {
  const bool braced = name.size() > 1 && name.front() == '{' && name.back() == '}';
  return std::string(braced ? name.substr(1, name.size() - 2) : name);
}

// Anybody may give a driver any name, so its library counts first. A driver may be named by its library, too.
Family familyOf(std::string_view driver, const OdbcMachine& machine) {
  const std::string name = withoutBraces(driver);
  const bool isLibrary = name.empty() || name.find('/') != std::string::npos;
  const std::string library = isLibrary ? name : machine.driverLibrary(name);
  if (contains(library, "tdsodbc")) return Family::FreeTds;
  if (contains(library, "sqlite")) return Family::File;
  if (contains(library, "msodbcsql") || contains(library, "sqlncli")) return Family::Maker;
  if (contains(name, "freetds") || contains(name, "tdsodbc")) return Family::FreeTds;
  return contains(name, "sql server") ? Family::Maker : Family::Other;
}

[[noreturn]] void fail(ErrorNumber number, std::string_view description) {
  throw Error(number, kSource, description);
}

// ---- values

// A value that is neither is refused: taken for a no, it would send a password in the clear.
bool isYes(std::string_view name, std::string_view value) {
  const auto isOneOf = [&](std::initializer_list<std::string_view> words) {
    return std::any_of(words.begin(), words.end(),
                       [&](std::string_view word) { return equalsIgnoringCase(value, word); });
  };
  if (isOneOf({"yes", "true", "on", "1", "sspi", "mandatory", "require", "required"})) return true;
  if (isOneOf({"", "no", "false", "off", "0", "optional"})) return false;
  fail(ErrorNumber::InvalidArgument, fmt::format("{} in the connection string is neither yes nor no", name));
}

int countOf(const ConnectionPart& part, int least) {
  const auto number = parseNumber(part.value);
  const auto whole = number ? wholeNumber<int>(*number) : std::nullopt;
  if (!whole || *whole != *number || *whole < least)
    fail(ErrorNumber::InvalidArgument,
         fmt::format("{} in the connection string is not a whole number from {} on", part.name, least));
  return *whole;
}

// The parts of "tcp:host\instance,port".
struct ServerName {
  std::string host, instance, port;
};

ServerName serverName(std::string_view text) {
  for (const std::string_view prefix : {"np:", "lpc:", "admin:"})
    if (toLower(text).starts_with(prefix))
      fail(ErrorNumber::ProviderFailure,
           fmt::format("A server is reached by TCP only, not by \"{}\"", prefix));
  if (toLower(text).starts_with("tcp:")) text.remove_prefix(4);
  ServerName name;
  const size_t comma = text.find(',');
  if (comma != std::string_view::npos) name.port = trim(text.substr(comma + 1));
  text = trim(text.substr(0, comma));
  const size_t slash = text.find('\\');
  if (slash != std::string_view::npos) name.instance = trim(text.substr(slash + 1));
  name.host = trim(text.substr(0, slash));
  if (name.host == "." || equalsIgnoringCase(name.host, "(local)")) name.host = "localhost";
  return name;
}

// FreeTDS reads connection strings byte by byte, a byte a character.
std::string latin(const std::string& text) {
  std::string result;
  for (size_t at = 0; at < text.size();) {
    const char32_t character = nextCharacter(text, at);
    if (character > 0xFF)
      fail(ErrorNumber::InvalidArgument,
           "The connection string holds a character that FreeTDS does not take");
    result += static_cast<char>(character);
  }
  return result;
}

// ---- the parts of a string

class Parts {
 public:
  explicit Parts(std::vector<ConnectionPart> parts) : parts_(std::move(parts)) {}

  const ConnectionPart* find(Keyword keyword) const {
    const auto found = std::find_if(parts_.begin(), parts_.end(),
                                    [&](const ConnectionPart& part) { return part.keyword == keyword; });
    return found == parts_.end() ? nullptr : &*found;
  }
  std::string value(Keyword keyword) const {
    const ConnectionPart* part = find(keyword);
    return part ? part->value : "";
  }
  void put(Keyword keyword, std::string_view name, const std::string& value) {
    std::erase_if(parts_, [&](const ConnectionPart& part) { return part.keyword == keyword; });
    parts_.push_back({keyword, std::string(name), value});
  }
  const std::vector<ConnectionPart>& all() const { return parts_; }

 private:
  std::vector<ConnectionPart> parts_;
};

// ---- which driver

// Drivers that old strings name and that exist on another platform only.
constexpr std::string_view kForeignDrivers[] = {
    "SQL Server", "SQL Native Client", "SQL Server Native Client 10.0", "SQL Server Native Client 11.0"};

std::string installed(const OdbcMachine& machine, std::string_view name) {
  for (const std::string& driver : machine.drivers)
    if (equalsIgnoringCase(driver, name)) return driver;
  return "";
}

// FreeTDS when it is installed, else the newest of the maker's.
std::string serverDriver(const OdbcMachine& machine) {
  if (std::string name = installed(machine, "FreeTDS"); !name.empty()) return name;
  for (const int version : {18, 17, 13, 11})
    if (std::string name = installed(machine, fmt::format("ODBC Driver {} for SQL Server", version));
        !name.empty())
      return name;
  fail(ErrorNumber::ProviderFailure,
       "Provider cannot be found: no ODBC driver for a SQL Server is installed");
}

void checkProvider(std::string_view provider) {
  for (const std::string_view known : {"sqloledb", "sqlncli", "msoledbsql", "msdasql"})
    if (provider.empty() || toLower(provider).starts_with(known)) return;
  fail(ErrorNumber::ProviderFailure,
       "Provider cannot be found: only those for a SQL Server and for ODBC are known");
}

struct ChosenDriver {
  std::string driver;  // or
  std::string source;
  Family family = Family::Other;
};

ChosenDriver chosenDriver(const Parts& parts, const OdbcMachine& machine) {
  const std::string provider = parts.value(Keyword::Provider);
  checkProvider(provider);
  std::string driver = withoutBraces(parts.value(Keyword::Driver));
  std::string source = parts.value(Keyword::DataSource);
  const std::string server = parts.value(Keyword::OleServer);
  const bool isSource = contains(provider, "msdasql") || (provider.empty() && !server.empty() &&
                                                          !machine.sourceValue(server, "Driver").empty());
  if (isSource && driver.empty() && source.empty()) source = server;
  if (driver.empty() && !source.empty())
    return {"", source, familyOf(machine.sourceValue(source, "Driver"), machine)};
  const bool isForeign = std::any_of(std::begin(kForeignDrivers), std::end(kForeignDrivers),
                                     [&](std::string_view name) { return equalsIgnoringCase(name, driver); });
  const bool namesServer = parts.find(Keyword::OleServer) || parts.find(Keyword::Server);
  if (driver.empty() && !namesServer)
    fail(ErrorNumber::ProviderFailure,
         "The connection string names neither a driver, nor a data source, nor a server");
  if (driver.empty() || (isForeign && installed(machine, driver).empty())) driver = serverDriver(machine);
  return {driver, "", familyOf(driver, machine)};
}

// ---- the string for the driver manager

class Writer {
 public:
  explicit Writer(Family family) : family_(family) {}

  // FreeTDS ends a value in braces at "};" and takes a doubled brace for two.
  void add(std::string_view name, std::string_view value) {
    std::string written = bracedValue(value);
    if (family_ == Family::FreeTds && written.front() == '{') {
      if (value.find("};") != std::string_view::npos)
        fail(ErrorNumber::InvalidArgument,
             fmt::format("FreeTDS takes no \"}};\" in the value of {} in the connection string", name));
      written = fmt::format("{{{}}}", value);
    }
    text_ += fmt::format("{}={};", name, written);
  }
  void addUnlessEmpty(std::string_view name, std::string_view value) {
    if (!value.empty()) add(name, value);
  }
  const std::string& text() const { return text_; }

 private:
  Family family_;
  std::string text_;
};

void writeServer(Writer& out, const Parts& parts, const ChosenDriver& chosen) {
  std::string text = parts.value(Keyword::Server);
  if (text.empty() && chosen.source.empty()) text = parts.value(Keyword::OleServer);
  if (text.empty()) return;
  const ServerName name = serverName(text);
  const std::string port = name.port.empty() ? parts.value(Keyword::Port) : name.port;
  const std::string instance = name.instance.empty() || !port.empty() ? "" : "\\" + name.instance;
  if (chosen.family == Family::Maker)
    return out.add("Server", name.host + instance + (port.empty() ? "" : "," + port));
  out.add("Server", name.host + instance);
  constexpr std::string_view kServerPort = "1433";
  if (instance.empty()) out.add("Port", port.empty() ? kServerPort : port);
}

// FreeTDS knows no keyword Encrypt, in the string or in a data source, and would send in the clear.
void writeEncryption(Writer& out, const Parts& parts, const ChosenDriver& chosen,
                     const OdbcMachine& machine) {
  std::string encrypt = parts.value(Keyword::Encrypt);
  if (chosen.family == Family::Maker) {
    if (!equalsIgnoringCase(encrypt, "strict")) isYes("Encrypt", encrypt);
    isYes("TrustServerCertificate", parts.value(Keyword::TrustCertificate));
    out.addUnlessEmpty("Encrypt", encrypt);
    out.addUnlessEmpty("TrustServerCertificate", parts.value(Keyword::TrustCertificate));
    return;
  }
  if (!parts.find(Keyword::Encrypt) && !chosen.source.empty())
    encrypt = machine.sourceValue(chosen.source, "Encrypt");
  if (equalsIgnoringCase(encrypt, "strict"))
    fail(ErrorNumber::ProviderFailure, "FreeTDS has no strict encryption");
  if (isYes("Encrypt", encrypt)) out.add("Encryption", "require");
}

// For the two drivers of a SQL Server:
//
// | keyword, whichever spelling       | FreeTDS             | the maker's                          |
// |-----------------------------------|---------------------|--------------------------------------|
// | server "tcp:host\instance,port"   | Server, Port        | Server=host\instance or host,port    |
// | database, user, password          | Database, UID, PWD  | the same                             |
// | integrated security               | Trusted_Connection  | the same                             |
// | encryption                        | Encryption=require  | Encrypt, TrustServerCertificate      |
// | application, workstation, language| APP, WSID, Language | the same                             |
// |                                   | ClientCharset=UTF-8 |                                      |
void writeServerParts(Writer& out, const Parts& parts, const ChosenDriver& chosen,
                      const OdbcMachine& machine) {
  if (chosen.family == Family::FreeTds) out.add("ClientCharset", "UTF-8");
  writeServer(out, parts, chosen);
  out.addUnlessEmpty("Database", parts.value(Keyword::Database));
  if (isYes("Trusted_Connection", parts.value(Keyword::Trusted))) {
    out.add("Trusted_Connection", "yes");
  } else {
    out.addUnlessEmpty("UID", parts.value(Keyword::User));
    out.addUnlessEmpty("PWD", parts.value(Keyword::Password));
  }
  writeEncryption(out, parts, chosen, machine);
  out.addUnlessEmpty("APP", parts.value(Keyword::Application));
  out.addUnlessEmpty("WSID", parts.value(Keyword::Workstation));
  out.addUnlessEmpty("Language", parts.value(Keyword::Language));
  for (const ConnectionPart& part : parts.all())
    if (part.keyword == Keyword::Other) out.add(part.name, part.value);
}

bool isOurs(Keyword keyword) {
  switch (keyword) {
    case Keyword::Provider:
    case Keyword::Driver:
    case Keyword::DataSource:
    case Keyword::OleServer:
    case Keyword::ConnectTimeout:
    case Keyword::Pooling:
    case Keyword::PoolSize:
    case Keyword::PoolIdle:
    case Keyword::Dropped:
    case Keyword::DumpsData:
    case Keyword::DumpSwitch:
      return true;
    default:
      return false;
  }
}

std::string targetText(const Parts& parts, const ChosenDriver& chosen, const OdbcMachine& machine) {
  Writer out(chosen.family);
  if (chosen.source.empty())
    out.add("Driver", chosen.driver);
  else
    out.add("DSN", chosen.source);
  if (isServers(chosen.family)) {
    writeServerParts(out, parts, chosen, machine);
  } else {
    for (const ConnectionPart& part : parts.all())
      if (!isOurs(part.keyword)) out.add(part.name, part.value);
  }
  return chosen.family == Family::FreeTds ? latin(out.text()) : out.text();
}

// ---- what is refused

constexpr std::string_view kRefused = "{} is refused: it writes what passes to a file, and card numbers pass";

void refuseFiles(const Parts& parts) {
  for (const ConnectionPart& part : parts.all()) {
    if (dumpsData(part.name, part.value))
      fail(ErrorNumber::ConnectionFailed, fmt::format(kRefused, part.name));
    if (part.keyword == Keyword::File)
      fail(
          ErrorNumber::ConnectionFailed,
          fmt::format("{} is refused: a file of settings may name a log of what passes, or hold the password",
                      part.name));
  }
}

void refuseDumps(const ChosenDriver& chosen, const OdbcMachine& machine) {
  if (chosen.source.empty()) return;
  for (const std::string_view keyword : dumpKeywords())
    if (dumpsData(keyword, machine.sourceValue(chosen.source, keyword)))
      fail(ErrorNumber::ConnectionFailed,
           fmt::format(kRefused, fmt::format("{} of the data source {}", keyword, chosen.source)));
}

Parts partsOf(const ConnectionSettings& settings) {
  const std::string_view text = trim(settings.connectionString);
  if (text.empty()) fail(ErrorNumber::ProviderFailure, "DBConnectionString is not set");
  Parts parts(text.find('=') == std::string_view::npos
                  ? std::vector<ConnectionPart>{{Keyword::DataSource, "DSN", std::string(text)}}
                  : connectionParts(text));
  if (!settings.user.empty()) parts.put(Keyword::User, "UID", settings.user);
  if (!settings.password.empty()) parts.put(Keyword::Password, "PWD", settings.password);
  return parts;
}

}  // namespace

OdbcTarget odbcTarget(const ConnectionSettings& settings, const OdbcMachine& machine) {
  const Parts parts = partsOf(settings);
  refuseFiles(parts);
  const ChosenDriver chosen = chosenDriver(parts, machine);
  refuseDumps(chosen, machine);
  OdbcTarget target;
  target.text = targetText(parts, chosen, machine);
  target.password = parts.value(Keyword::Password);
  target.isSqlServer = isServers(chosen.family);
  target.isRemote = chosen.family != Family::File;
  if (target.password.empty() && !chosen.source.empty())
    target.password = machine.sourceValue(chosen.source, "PWD");
  if (const auto* part = parts.find(Keyword::Pooling)) target.pool.pooled = isYes(part->name, part->value);
  if (const auto* part = parts.find(Keyword::PoolSize)) target.pool.size = countOf(*part, 1);
  if (const auto* part = parts.find(Keyword::PoolIdle)) target.pool.idleSeconds = countOf(*part, 0);
  if (const auto* part = parts.find(Keyword::ConnectTimeout))
    target.loginSeconds = target.pool.waitSeconds = countOf(*part, 0);
  return target;
}

}  // namespace ondrel
