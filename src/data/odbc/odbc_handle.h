#pragma once

#include <sql.h>
#include <sqlext.h>

#include <string>
#include <utility>

#include "base/error.h"

namespace ondrel {

inline constexpr std::string_view kOdbcSource = "ODBC";
inline constexpr auto kTimeoutExpired = static_cast<ErrorNumber>(-2147217871);  // the platform's number

// A handle of the driver manager.
class OdbcHandle {
 public:
  OdbcHandle() = default;
  // Error ConnectionFailed when there is none to be had.
  OdbcHandle(SQLSMALLINT kind, SQLHANDLE parent);
  ~OdbcHandle() { release(); }
  OdbcHandle(OdbcHandle&& other) noexcept
      : kind_(other.kind_), handle_(std::exchange(other.handle_, nullptr)) {}
  OdbcHandle& operator=(OdbcHandle&& other) noexcept {
    release();
    kind_ = other.kind_;
    handle_ = std::exchange(other.handle_, nullptr);
    return *this;
  }

  SQLHANDLE get() const { return handle_; }
  SQLSMALLINT kind() const { return kind_; }

 private:
  void release();

  SQLSMALLINT kind_ = 0;
  SQLHANDLE handle_ = nullptr;
};

// What a driver says of a call that failed.
struct OdbcDiagnosis {
  int number = 0;     // of the server, or of the driver
  std::string state;  // SQLSTATE
  std::string text;   // of the server, without the names of the drivers in front

  bool isTimeout() const { return state == "HYT00" || state == "HYT01"; }
  bool isConnectionLoss() const { return state.starts_with("08"); }
  // The server has ended the transaction, as for the victim of a deadlock.
  bool endsTransaction() const { return isDeadlock() || state.starts_with("40"); }
  bool isDeadlock() const { return number == 1205 || state == "40001"; }
};

// The first record of a handle that is an error, or the first at all: a driver may put notes before it. The
// password does not stand in its text: a long one is replaced; where a short one is a word of the text, the
// text is withheld, since what is left would tell it.
OdbcDiagnosis diagnosisOf(const OdbcHandle& handle, std::string_view password);

// The error of a diagnosis, its number that of the server where there is one, the SQLSTATE behind the text.
Error odbcError(const OdbcDiagnosis& diagnosis, std::string_view before = "");

inline bool succeeded(SQLRETURN code) {
  return SQL_SUCCEEDED(code);
}

}  // namespace ondrel
