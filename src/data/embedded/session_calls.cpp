#include <fmt/format.h>

#include "data/dialect/server_errors.h"
#include "data/embedded/session.h"

namespace ondrel::sql {

// A procedure that runs: its statements go through the session that called it.
class Session::Call : public ProcedureCall {
 public:
  Call(Session& session, std::vector<Variant> arguments)
      : ProcedureCall(std::move(arguments)), session_(session) {
    now_ = session.context_.now();
  }
  RecordsetRef query(std::string_view sql) override { return session_.run(sql, true); }
  void execute(std::string_view sql) override { session_.run(sql, false); }
  Date now() override { return now_; }

 private:
  Session& session_;
  Date now_;
};

RecordsetRef Session::call(const Translation& translation, bool fetch) {
  const std::shared_ptr<const Procedure> procedure = catalogue_.procedure(translation.procedure);
  if (!procedure)
    throw serverError(ServerError::NoSuchProcedure,
                      fmt::format("Could not find stored procedure '{}'.", translation.procedure));
  const int count = static_cast<int>(translation.arguments.size());
  if (count > procedure->most)
    throw serverError(
        ServerError::TooManyArguments,
        fmt::format("Procedure or function {} has too many arguments specified: {} where {} are the most.",
                    procedure->name, count, procedure->most));
  if (count < procedure->least)
    throw serverError(ServerError::MissingArgument,
                      fmt::format("Procedure or function {} expects {} arguments, of which {} were supplied.",
                                  procedure->name, procedure->least, count));
  if (!procedure->body)
    throw Error(ErrorNumber::StatementFailed, kStoreSource,
                fmt::format("Procedure {} has no body in the embedded database", procedure->name));
  Call running(*this, callArguments(translation));
  RecordsetRef table = runWhole([&] { return procedure->body(running); });
  if (!fetch) return nullptr;
  return table ? table : Recordset::create();
}

// A body that fails takes back what it did, so that its transaction stands as before the call.
RecordsetRef Session::runWhole(const std::function<RecordsetRef()>& body) {
  if (!inTransaction()) return body();
  runKept("savepoint call");
  try {
    RecordsetRef table = body();
    runKept("release call");
    return table;
  } catch (...) {
    // Where the engine has rolled back the whole transaction already, there is nothing left to take back.
    sqlite3_exec(handle_, "rollback to call; release call", nullptr, nullptr, nullptr);
    throw;
  }
}

std::vector<Variant> Session::callArguments(const Translation& translation) const {
  std::vector<Variant> result;
  for (const CallArgument& argument : translation.arguments) {
    if (argument.literal < 0) {
      result.push_back(Variant::null());
      continue;
    }
    const Token& literal = shape_.literals()[static_cast<size_t>(argument.literal)];
    const SqlValue number = numberValue(literal.text);
    const int sign = argument.negative ? -1 : 1;
    if (literal.kind == TokenKind::Text)
      result.emplace_back(unquoted(literal));
    else if (number.kind == SqlValue::Kind::Integer)
      result.emplace_back(sign * number.integer);
    else
      result.emplace_back(sign * number.real);
  }
  return result;
}

}  // namespace ondrel::sql
