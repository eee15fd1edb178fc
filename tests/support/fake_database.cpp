#include "support/fake_database.h"

namespace ondrel {
namespace {

FieldType typeOf(const Variant& value) {
  switch (value.kind()) {
    case Variant::Kind::Boolean:
      return FieldType::Boolean;
    case Variant::Kind::Long:
      return FieldType::Long;
    case Variant::Kind::Double:
      return FieldType::Double;
    case Variant::Kind::Date:
      return FieldType::Date;
    default:
      return FieldType::Text;
  }
}

FieldType columnType(const std::vector<std::vector<Variant>>& rows, size_t column) {
  for (const auto& row : rows)
    if (!row[column].isNull()) return typeOf(row[column]);
  return FieldType::Text;
}

}  // namespace

class FakeConnection : public Connection {
 public:
  explicit FakeConnection(FakeDatabase& database) : database_(database) {}

  void setCommandTimeout(int seconds) override { note("<timeout " + std::to_string(seconds) + ">"); }
  void open() override { note("<open>"); }
  void begin() override { note("<begin>"); }
  void commit() override { note("<commit>"); }
  void execute(std::string_view sql) override { database_.run(sql); }
  RecordsetRef query(std::string_view sql) override { return database_.run(sql); }
  void close() override { note("<close>"); }

 private:
  void note(std::string step) { database_.log_.push_back(std::move(step)); }

  FakeDatabase& database_;
};

void FakeDatabase::answer(std::string part, RecordsetRef table) {
  answers_.emplace_back(std::move(part), std::move(table));
}

void FakeDatabase::attachTo(Apartment& apartment) {
  apartment.connect = [this](const ConnectionSettings&) { return std::make_unique<FakeConnection>(*this); };
}

RecordsetRef FakeDatabase::run(std::string_view sql) {
  log_.emplace_back(sql);
  if (failIn_ > 0 && --failIn_ == 0)
    throw Error(ErrorNumber::StatementFailed, "FakeDatabase", "the statement failed");
  for (auto answer = answers_.rbegin(); answer != answers_.rend(); ++answer)
    if (sql.find(answer->first) != std::string_view::npos) return answer->second->clone();
  return tableOf({"nothing"}, {});
}

RecordsetRef tableOf(const std::vector<std::string>& names, const std::vector<std::vector<Variant>>& rows) {
  const RecordsetRef table = Recordset::create();
  for (size_t column = 0; column < names.size(); ++column)
    table->appendField(names[column], columnType(rows, column), 0, kNullableColumn);
  table->open();
  for (const auto& row : rows) table->appendRow(row);
  if (!rows.empty()) table->moveFirst();
  return table;
}

}  // namespace ondrel
