#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ondrel {

// What a keyword of a connection string stands for, whichever client it was written for.
enum class Keyword {
  Other,  // handed on as it is
  Provider,
  Driver,
  DataSource,  // DSN
  OleServer,   // "Data Source": a server, or a DSN with the provider for ODBC
  Server,
  Port,
  Database,
  User,
  Password,
  Trusted,
  Encrypt,
  TrustCertificate,
  Application,
  Workstation,
  Language,
  Charset,
  ConnectTimeout,
  Pooling,
  PoolSize,
  PoolIdle,
  Nested,      // a connection string within
  Dropped,     // means nothing here
  DumpsData,   // writes traffic to a file
  DumpSwitch,  // the same, unless its value is one for off
  File         // settings read from a file, or written to one
};

struct ConnectionPart {
  Keyword keyword = Keyword::Other;
  std::string name;  // as written
  std::string value;
};

// True when a string is written in the keywords of OLE DB; quotes then enclose values, and the last of two
// equal keywords counts. In one of ODBC braces do, and the first counts.
bool isOleDbString(std::string_view text);

//   string = [ part { ";" part } ]     part = name "=" value
//   value  = bare | "{" any, "}" doubled "}" (ODBC) | quote any, quote doubled quote (OLE DB)
//
// Error InvalidArgument names the keyword whose value does not end, never a value.
std::vector<ConnectionPart> connectionParts(std::string_view text);

// The value as it goes into a string of ODBC: in braces where it needs them.
std::string bracedValue(std::string_view value);

// The keywords of drivers that write traffic to a file, unless they are switched off.
std::vector<std::string_view> dumpKeywords();
// True when a keyword with this value writes traffic to a file.
bool dumpsData(std::string_view name, std::string_view value);

}  // namespace ondrel
