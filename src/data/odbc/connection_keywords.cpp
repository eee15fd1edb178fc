#include "data/odbc/connection_keywords.h"

#include <algorithm>

#include "base/error.h"
#include "base/text.h"

namespace ondrel {
namespace {

struct KeywordRow {
  std::string_view name;  // blanks and underscores do not count
  Keyword keyword;
  bool oleDb = false;  // no driver of ODBC knows it
};

// clang-format off
constexpr KeywordRow kKeywords[] = {
    {"provider",                  Keyword::Provider,         true},
    {"driver",                    Keyword::Driver},
    {"dsn",                       Keyword::DataSource},
    {"datasource",                Keyword::OleServer,        true},
    {"server",                    Keyword::Server},
    {"address",                   Keyword::Server},
    {"addr",                      Keyword::Server},
    {"networkaddress",            Keyword::Server,           true},
    {"port",                      Keyword::Port},
    {"initialcatalog",            Keyword::Database,         true},
    {"database",                  Keyword::Database},
    {"userid",                    Keyword::User,             true},
    {"user",                      Keyword::User},
    {"uid",                       Keyword::User},
    {"password",                  Keyword::Password},
    {"pwd",                       Keyword::Password},
    {"integratedsecurity",        Keyword::Trusted,          true},
    {"trustedconnection",         Keyword::Trusted},
    {"encrypt",                   Keyword::Encrypt},
    {"encryption",                Keyword::Encrypt},
    {"useencryptionfordata",      Keyword::Encrypt,          true},
    {"trustservercertificate",    Keyword::TrustCertificate},
    {"applicationname",           Keyword::Application,      true},
    {"app",                       Keyword::Application},
    {"workstationid",             Keyword::Workstation,      true},
    {"wsid",                      Keyword::Workstation},
    {"currentlanguage",           Keyword::Language,         true},
    {"language",                  Keyword::Language},
    {"clientcharset",             Keyword::Charset},
    {"connecttimeout",            Keyword::ConnectTimeout},
    {"connectiontimeout",         Keyword::ConnectTimeout},
    {"logintimeout",              Keyword::ConnectTimeout},
    {"pooling",                   Keyword::Pooling},
    {"maxpoolsize",               Keyword::PoolSize},
    {"poolidletime",              Keyword::PoolIdle},
    {"extendedproperties",        Keyword::Nested,           true},
    {"persistsecurityinfo",       Keyword::Dropped,          true},
    {"oledbservices",             Keyword::Dropped,          true},
    {"autotranslate",             Keyword::Dropped,          true},
    {"packetsize",                Keyword::Dropped},
    {"networklibrary",            Keyword::Dropped},
    {"network",                   Keyword::Dropped},
    {"useprocedureforprepare",    Keyword::Dropped,          true},
    {"tagwithcolumncollationwhenpossible", Keyword::Dropped, true},
    {"datatypecompatibility",     Keyword::Dropped},
    {"marsconnection",            Keyword::Dropped},
    {"multipleactiveresultsets",  Keyword::Dropped},
    {"generaltimeout",            Keyword::Dropped,          true},
    {"prompt",                    Keyword::Dropped,          true},
    {"localeidentifier",          Keyword::Dropped,          true},
    {"dumpfile",                  Keyword::DumpsData},
    {"dumpfileappend",            Keyword::DumpSwitch},
    {"debugflags",                Keyword::DumpSwitch},
    {"querylog_on",               Keyword::DumpSwitch},
    {"querylogfile",              Keyword::DumpsData},
    {"statslog_on",               Keyword::DumpSwitch},
    {"statslogfile",              Keyword::DumpsData},
    {"trace",                     Keyword::DumpSwitch},
    {"tracefile",                 Keyword::DumpsData},
    {"filedsn",                   Keyword::File},
    {"savefile",                  Keyword::File},
};
// clang-format on

std::string bareName(std::string_view name) {
  std::string bare = toLower(name);
  std::erase_if(bare, [](char c) { return c == ' ' || c == '_'; });
  return bare;
}

const KeywordRow* rowOf(std::string_view name) {
  const std::string bare = bareName(name);
  const auto* row = std::find_if(std::begin(kKeywords), std::end(kKeywords),
                                 [&](const KeywordRow& each) { return bareName(each.name) == bare; });
  return row == std::end(kKeywords) ? nullptr : row;
}

// Takes a value that `close` ends, itself doubled within; `at` stands behind the opening character.
std::string enclosedValue(std::string_view text, size_t& at, char close, std::string_view name) {
  std::string value;
  for (; at < text.size(); ++at) {
    if (text[at] == close && (++at == text.size() || text[at] != close)) return value;
    value += text[at];
  }
  throw Error(ErrorNumber::InvalidArgument, "ODBC",
              "The value of " + std::string(name) + " in the connection string does not end");
}

std::string valueAt(std::string_view text, size_t& at, bool oleDb, std::string_view name) {
  at = std::min(text.find_first_not_of(' ', at), text.size());
  const char opening = at < text.size() ? text[at] : ';';
  const bool enclosed = oleDb ? opening == '"' || opening == '\'' : opening == '{';
  std::string value;
  if (enclosed) value = enclosedValue(text, ++at, oleDb ? opening : '}', name);
  const size_t end = std::min(text.find(';', at), text.size());
  if (!enclosed) value = trim(text.substr(at, end - at));
  at = end;
  return value;
}

std::vector<ConnectionPart> split(std::string_view text, bool oleDb) {
  std::vector<ConnectionPart> parts;
  for (size_t at = 0; at < text.size(); ++at) {
    const size_t sign = text.find_first_of("=;", at);
    if (sign == std::string_view::npos) break;
    const std::string_view name = trim(text.substr(at, sign - at));
    at = sign;
    if (text[sign] == ';') continue;
    std::string value = valueAt(text, ++at, oleDb, name);
    const KeywordRow* row = rowOf(name);
    parts.push_back({row ? row->keyword : Keyword::Other, std::string(name), std::move(value)});
  }
  return parts;
}

}  // namespace

bool isOleDbString(std::string_view text) {
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find(';', at), text.size());
    const std::string_view part = text.substr(at, end - at);
    const KeywordRow* row = rowOf(trim(part.substr(0, part.find('='))));
    if (row && row->oleDb) return true;
    at = end + 1;
  }
  return false;
}

std::vector<ConnectionPart> connectionParts(std::string_view text) {
  const bool oleDb = isOleDbString(text);
  std::vector<ConnectionPart> parts = split(text, oleDb);
  if (oleDb) std::reverse(parts.begin(), parts.end());
  std::vector<ConnectionPart> result;
  for (ConnectionPart& part : parts) {
    if (part.keyword == Keyword::Nested) {
      for (ConnectionPart& inner : split(part.value, false)) result.push_back(std::move(inner));
    } else {
      result.push_back(std::move(part));
    }
  }
  return result;
}

std::string bracedValue(std::string_view value) {
  const bool plain =
      value.find_first_of("{};=[]()?*!@") == std::string_view::npos && trim(value).size() == value.size();
  return plain ? std::string(value) : "{" + replaceAll(value, "}", "}}") + "}";
}

std::vector<std::string_view> dumpKeywords() {
  std::vector<std::string_view> names;
  for (const KeywordRow& row : kKeywords)
    if (row.keyword == Keyword::DumpsData || row.keyword == Keyword::DumpSwitch) names.push_back(row.name);
  return names;
}

bool dumpsData(std::string_view name, std::string_view value) {
  const KeywordRow* row = rowOf(name);
  if (!row || value.empty()) return false;
  if (row->keyword != Keyword::DumpSwitch) return row->keyword == Keyword::DumpsData;
  constexpr std::string_view kOff[] = {"no", "n", "off", "false", "0"};
  return std::none_of(std::begin(kOff), std::end(kOff),
                      [&](std::string_view off) { return equalsIgnoringCase(off, value); });
}

}  // namespace ondrel
