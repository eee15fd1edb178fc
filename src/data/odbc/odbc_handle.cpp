#include "data/odbc/odbc_handle.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>

#include "base/text.h"

namespace ondrel {
namespace {

constexpr size_t kMessageLength = 4096;

// "[vendor][driver][server]text", and the text itself may begin with a bracket.
std::string withoutNames(std::string_view text) {
  constexpr int kMostNames = 3;
  for (int k = 0; k < kMostNames && text.starts_with('['); ++k) {
    const size_t end = text.find(']');
    if (end == std::string_view::npos) break;
    const bool isServer = text.substr(0, end) == "[SQL Server";
    text.remove_prefix(end + 1);
    if (isServer) break;
  }
  return std::string(text);
}

bool isOfWord(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || std::isalnum(byte);
}

bool hasWord(std::string_view text, std::string_view word) {
  for (size_t at = 0; (at = text.find(word, at)) != std::string_view::npos; ++at) {
    const size_t end = at + word.size();
    const bool begins = at == 0 || !isOfWord(text[at - 1]) || !isOfWord(word.front());
    const bool ends = end == text.size() || !isOfWord(text[end]) || !isOfWord(word.back());
    if (begins && ends) return true;
  }
  return false;
}

std::string withoutPassword(std::string text, std::string_view password) {
  constexpr size_t kShort = 6;
  if (password.empty()) return text;
  if (password.size() >= kShort) return replaceAll(text, password, "***");
  return hasWord(text, password) ? "(a text that holds the password)" : text;
}

bool readRecord(const OdbcHandle& handle, SQLSMALLINT record, OdbcDiagnosis& diagnosis) {
  std::array<SQLCHAR, SQL_SQLSTATE_SIZE + 1> state{};
  std::array<SQLCHAR, kMessageLength> text{};
  SQLINTEGER number = 0;
  SQLSMALLINT length = 0;
  if (!succeeded(SQLGetDiagRec(handle.kind(), handle.get(), record, state.data(), &number, text.data(),
                               static_cast<SQLSMALLINT>(text.size()), &length)))
    return false;
  diagnosis = {number, reinterpret_cast<const char*>(state.data()),
               withoutNames(reinterpret_cast<const char*>(text.data()))};
  return true;
}

ErrorNumber numberOf(const OdbcDiagnosis& diagnosis) {
  if (diagnosis.isTimeout()) return kTimeoutExpired;
  if (diagnosis.isConnectionLoss()) return ErrorNumber::ConnectionFailed;
  return diagnosis.number == 0 ? ErrorNumber::StatementFailed : static_cast<ErrorNumber>(diagnosis.number);
}

}  // namespace

OdbcHandle::OdbcHandle(SQLSMALLINT kind, SQLHANDLE parent) : kind_(kind) {
  if (!succeeded(SQLAllocHandle(kind, parent, &handle_)))
    throw Error(ErrorNumber::ConnectionFailed, kOdbcSource, "The ODBC driver manager gives no handle");
}

void OdbcHandle::release() {
  if (handle_) SQLFreeHandle(kind_, handle_);
}

OdbcDiagnosis diagnosisOf(const OdbcHandle& handle, std::string_view password) {
  OdbcDiagnosis first{0, "HY000", "The driver does not say why"};
  OdbcDiagnosis each;
  for (SQLSMALLINT record = 1; readRecord(handle, record, each); ++record) {
    each.text = withoutPassword(std::move(each.text), password);
    if (!each.state.starts_with("01")) return each;
    if (record == 1) first = each;
  }
  return first;
}

Error odbcError(const OdbcDiagnosis& diagnosis, std::string_view before) {
  return Error(numberOf(diagnosis), kOdbcSource,
               fmt::format("{}{} (SQLSTATE {})", before, diagnosis.text, diagnosis.state));
}

}  // namespace ondrel
