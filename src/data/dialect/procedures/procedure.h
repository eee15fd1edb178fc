#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/variant.h"
#include "data/recordset/recordset.h"

namespace ondrel::sql {

// What the body of a procedure works with: its arguments, and the connection that called it, whose
// transaction it takes part in. Statements are T-SQL.
class ProcedureCall {
 public:
  virtual ~ProcedureCall() = default;

  virtual RecordsetRef query(std::string_view sql) = 0;
  virtual void execute(std::string_view sql) = 0;
  // The moment of the call, as getdate() gives it.
  virtual Date now() = 0;

  int argumentCount() const { return static_cast<int>(arguments_.size()); }
  // From 0; Null for an argument that the call leaves out.
  const Variant& argument(int position) const;
  bool isNull(int position) const { return argument(position).isNull(); }
  // Conversions of an argument that is not Null, as a parameter of that type has them.
  std::int32_t integer(int position) const;
  double number(int position) const;
  std::string text(int position) const;
  Date date(int position) const;
  // The argument as it goes into a statement: NULL, digits, or a quoted text.
  std::string sql(int position) const;

 protected:
  explicit ProcedureCall(std::vector<Variant> arguments) : arguments_(std::move(arguments)) {}

 private:
  std::vector<Variant> arguments_;
};

// Gives the result table, or nothing.
using ProcedureBody = std::function<RecordsetRef(ProcedureCall&)>;

struct Procedure {
  std::string name;
  int least = 0;  // number of arguments
  int most = 0;
  ProcedureBody body;  // empty while the embedded database has none
};

// The procedures of a database, by name in lower case.
class ProcedureRegistry {
 public:
  void add(Procedure procedure);
  const Procedure* find(std::string_view name) const;
  const std::map<std::string, Procedure>& all() const { return procedures_; }

 private:
  std::map<std::string, Procedure> procedures_;
};

// The procedures that every store has.
const ProcedureRegistry& storeProcedures();

}  // namespace ondrel::sql
