// From the literals of a statement to the values of its parameters.
#include "data/embedded/prepared_statement.h"
#include "data/embedded/session.h"

namespace ondrel::sql {
namespace {

// A text is bound where it stands.
void bindValue(sqlite3_stmt* statement, int index, const SqlValue& value) {
  switch (value.kind) {
    case SqlValue::Kind::Null:
      sqlite3_bind_null(statement, index);
      return;
    case SqlValue::Kind::Integer:
      sqlite3_bind_int64(statement, index, value.integer);
      return;
    case SqlValue::Kind::Real:
      sqlite3_bind_double(statement, index, value.real);
      return;
    case SqlValue::Kind::Text:
      sqlite3_bind_text(statement, index, value.text.data(), static_cast<int>(value.text.size()),
                        SQLITE_STATIC);
  }
}

}  // namespace

// A parameter that is to hold what it holds from the last run is left alone: of the lines of a ticket most
// values are those of the line before.
void Session::bind(Prepared& prepared) {
  const std::vector<BoundLiteral>& places = prepared.translation.parameters;
  for (size_t k = 0; k < places.size(); ++k) {
    const Token& literal = shape_.literals()[static_cast<size_t>(places[k].literal)];
    BoundParameter& parameter = prepared.parameters[k];
    if (parameter.isBound && parameter.literal.size() == literal.text.size() &&
        isSame(parameter.literal.data(), literal.text.data(), literal.text.size()))
      continue;
    parameter.isBound = false;
    parameter.literal = literal.text;
    Token kept = literal;
    kept.text = parameter.literal;
    bindValue(prepared.statement.get(), static_cast<int>(k) + 1,
              literalValue(kept, places[k].conversion, parameter.made));
    parameter.isBound = true;
  }
}

// The value of a literal; a text views the literal or `made`, where a conversion puts what it makes.
SqlValue Session::literalValue(const Token& literal, const ValueConversion& conversion, std::string& made) {
  const Conversion kind = conversion.kind;
  if (literal.kind == TokenKind::Number && kind != Conversion::ToText && kind != Conversion::CutText) {
    const SqlValue number = numberValue(literal.text);
    return kind == Conversion::None ? number : converted(number, conversion, made);
  }
  if (literal.doubled) return doubledValue(literal, conversion, made);
  if (kind == Conversion::None) return SqlValue::of(literal.text);
  return converted(SqlValue::of(literal.text), conversion, made);
}

SqlValue Session::doubledValue(const Token& literal, const ValueConversion& conversion, std::string& made) {
  const std::string plain = unquoted(literal);
  SqlValue value = converted(SqlValue::of(std::string_view(plain)), conversion, made);
  // What still views the plain text must outlive it.
  if (value.kind == SqlValue::Kind::Text && value.text.data() != made.data())
    value = SqlValue::of(std::string_view(made = value.text));
  return value;
}

}  // namespace ondrel::sql
