#include "data/odbc/odbc_handle.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace ondrel {
namespace {

constexpr auto kTimeoutExpired = static_cast<ErrorNumber>(-2147217871);  // the platform's number
constexpr size_t kMessageLength = 4096;

// "[vendor][driver][server]text"
std::string withoutNames(std::string_view text) {
  while (text.starts_with('[') && text.find(']') != std::string_view::npos)
    text.remove_prefix(text.find(']') + 1);
  return std::string(text);
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

OdbcDiagnosis diagnosisOf(const OdbcHandle& handle) {
  OdbcDiagnosis first{0, "HY000", "The driver does not say why"};
  OdbcDiagnosis each;
  for (SQLSMALLINT record = 1; readRecord(handle, record, each); ++record) {
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
