// The statements that a session keeps prepared, by shape.
#include <algorithm>

#include "data/embedded/prepared_statement.h"
#include "data/embedded/session.h"
#include "data/embedded/sqlite_emitter.h"

namespace ondrel::sql {
namespace {

constexpr size_t kKeptShapes = 1000;

FieldType resultType(const ResolvedType& type) {
  if (type.category == Category::Null) return FieldType::Long;
  return isUnsettled(type) ? FieldType::Double : fieldTypeOf(type.declared);
}

}  // namespace

// Statements come in runs and in rounds: the one that followed the statement before when that was last sent is
// tried first, and only what is of another pattern is taken apart.
PreparedStatement& Session::prepare(std::string_view sql) {
  Prepared* prepared = nullptr;
  if (last_)
    for (Prepared* follower : last_->followers)
      if (!prepared && follower && shape_.assign(sql, follower->pattern)) prepared = follower;
  if (!prepared) prepared = &find(sql);
  if (last_) last_->follow(prepared);
  last_ = prepared;
  prepared->lastUse = ++uses_;
  return *prepared;
}

PreparedStatement& Session::find(std::string_view sql) {
  shape_.assign(sql);
  const auto found = prepared_.find(shape_.key());
  Prepared* prepared = found == prepared_.end() ? &enter(shape_.key(), sql) : found->second.get();
  if (!prepared->translation.fixedLiterals.empty()) {
    fixedKey_ = shape_.key();
    for (const int literal : prepared->translation.fixedLiterals)
      fixedKey_.append(shape_.literals()[static_cast<size_t>(literal)].text)
          .append(1, StatementShape::kTextMark);
    const auto fixed = prepared_.find(fixedKey_);
    prepared = fixed == prepared_.end() ? &enter(fixedKey_, sql) : fixed->second.get();
  }
  return *prepared;
}

PreparedStatement& Session::enter(std::string_view key, std::string_view sql) {
  Translation made = translateForSqlite(sql, *catalogue_.schema());
  auto prepared = std::make_unique<Prepared>(StatementPattern(sql, made.fixedLiterals));
  prepared->translation = std::move(made);
  const Translation& translation = prepared->translation;
  if (!translation.sql.empty()) {
    sqlite3_stmt* statement = nullptr;
    const int code =
        sqlite3_prepare_v3(handle_, translation.sql.c_str(), static_cast<int>(translation.sql.size()) + 1,
                           SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (code != SQLITE_OK) fail(code);
    prepared->statement.reset(statement);
  }
  prepared->parameters.resize(translation.parameters.size());
  for (const OutputColumn& column : translation.columns) {
    const int size = column.type.category == Category::Text ? column.type.declared.size : 0;
    prepared->layout.push_back({column.name, resultType(column.type), size, true});
  }
  trim();
  prepared->lastUse = ++uses_;
  auto& place = prepared_[std::string(key)];
  place = std::move(prepared);
  return *place;
}

// Drops the older half of the shapes when there are too many.
void Session::trim() {
  if (prepared_.size() < kKeptShapes) return;
  std::vector<std::uint64_t> used;
  for (const auto& [key, prepared] : prepared_) used.push_back(prepared->lastUse);
  const auto middle = used.begin() + static_cast<std::ptrdiff_t>(used.size() / 2);
  std::nth_element(used.begin(), middle, used.end());
  std::erase_if(prepared_, [&](const auto& entry) { return entry.second->lastUse < *middle; });
  last_ = nullptr;
  for (const auto& [key, prepared] : prepared_) prepared->followers = {};
}

}  // namespace ondrel::sql
