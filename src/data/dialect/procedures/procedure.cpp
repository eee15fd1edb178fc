#include "data/dialect/procedures/procedure.h"

#include "base/text.h"
#include "data/dialect/sql_values.h"
#include "data/query_database.h"

namespace ondrel::sql {

const Variant& ProcedureCall::argument(int position) const {
  static const Variant kNull = Variant::null();
  const auto at = static_cast<size_t>(position);
  return at < arguments_.size() ? arguments_[at] : kNull;
}

std::int32_t ProcedureCall::integer(int position) const {
  const Variant& value = argument(position);
  return value.isText() && trim(value.text()).empty() ? 0 : value.toLong();
}

double ProcedureCall::number(int position) const {
  const Variant& value = argument(position);
  return value.isText() && trim(value.text()).empty() ? 0 : value.toDouble();
}

std::string ProcedureCall::text(int position) const {
  return argument(position).toText();
}

Date ProcedureCall::date(int position) const {
  return dateOfText(argument(position).toText());
}

std::string ProcedureCall::sql(int position) const {
  const Variant& value = argument(position);
  if (value.isNull()) return "NULL";
  return value.isText() ? "'" + escapeSql(value) + "'" : value.toText();
}

void ProcedureRegistry::add(Procedure procedure) {
  std::string key = toLower(procedure.name);
  procedures_[std::move(key)] = std::move(procedure);
}

const Procedure* ProcedureRegistry::find(std::string_view name) const {
  const auto found = procedures_.find(toLower(name));
  return found == procedures_.end() ? nullptr : &found->second;
}

}  // namespace ondrel::sql
