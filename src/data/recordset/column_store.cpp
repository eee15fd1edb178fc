#include "data/recordset/column_store.h"

#include <fmt/format.h>

#include <limits>

#include "base/text.h"

namespace ondrel {
namespace {

[[noreturn]] void failSize(const ColumnStore& column, std::string_view reason) {
  throw Error(ErrorNumber::DataOverflow, "Recordset", fmt::format("Column {} {}", column.name, reason));
}

bool fitsInteger(FieldType type, std::int32_t value) {
  if (type == FieldType::SmallInt) return std::in_range<std::int16_t>(value);
  if (type == FieldType::TinyInt) return std::in_range<std::uint8_t>(value);
  return true;
}

}  // namespace

ColumnStore::ColumnStore(std::string_view columnName, FieldType columnType, int columnSize, bool takesNull)
    : name(columnName),
      type(columnType),
      storage(storageOf(columnType)),
      nullable(takesNull),
      size(columnSize) {}

void ColumnStore::resize(size_t rows) {
  present.resize(rows, nullable ? 0 : 1);
  switch (storage) {
    case Storage::Integer:
      integers.resize(rows);
      break;
    case Storage::Number:
    case Storage::Date:
      numbers.resize(rows);
      break;
    case Storage::Flag:
      flags.resize(rows);
      break;
    case Storage::Text:
      texts.resize(rows);
      break;
  }
  if (!keys_.empty()) keys_.resize(rows, foldedKey({}));
}

void ColumnStore::write(size_t row, const Variant& value) {
  if (value.isNull()) return writeNull(row);
  switch (storage) {
    case Storage::Integer:
      writeInteger(row, value.toLong());
      break;
    case Storage::Number:
      numbers[row] = value.toDouble();
      break;
    case Storage::Flag:
      flags[row] = value.toBoolean();
      break;
    case Storage::Date:
      numbers[row] = value.toDate().serial();
      break;
    case Storage::Text:
      if (value.isText())
        writeText(row, value.text());
      else
        writeText(row, value.toText());
      break;
  }
  present[row] = 1;
}

Variant ColumnStore::read(size_t row) const {
  if (!present[row]) return Variant::null();
  switch (storage) {
    case Storage::Integer:
      return integers[row];
    case Storage::Number:
      if (type == FieldType::BigInt) return static_cast<std::int64_t>(numbers[row]);
      return numbers[row];
    case Storage::Flag:
      return flags[row] != 0;
    case Storage::Date:
      return Date(numbers[row]);
    case Storage::Text:
      break;
  }
  return texts[row];
}

void ColumnStore::reset(size_t row) {
  present[row] = nullable ? 0 : 1;
  switch (storage) {
    case Storage::Integer:
      integers[row] = 0;
      break;
    case Storage::Number:
    case Storage::Date:
      numbers[row] = 0;
      break;
    case Storage::Flag:
      flags[row] = 0;
      break;
    case Storage::Text:
      texts[row].clear();
      break;
  }
  if (!keys_.empty()) keys_[row] = foldedKey({});
}

void ColumnStore::move(size_t from, size_t to) {
  present[to] = present[from];
  switch (storage) {
    case Storage::Integer:
      integers[to] = integers[from];
      break;
    case Storage::Number:
    case Storage::Date:
      numbers[to] = numbers[from];
      break;
    case Storage::Flag:
      flags[to] = flags[from];
      break;
    case Storage::Text:
      texts[to].swap(texts[from]);
      break;
  }
  if (!keys_.empty()) keys_[to] = keys_[from];
}

const FoldedKey* ColumnStore::foldedKeys() const {
  if (keys_.size() != texts.size()) {
    keys_.resize(texts.size());
    for (size_t row = 0; row < texts.size(); ++row) keys_[row] = foldedKey(texts[row]);
  }
  return keys_.data();
}

void ColumnStore::writeNull(size_t row) {
  if (!nullable) failSize(*this, "takes no Null");
  reset(row);
}

void ColumnStore::writeInteger(size_t row, std::int32_t value) {
  if (!fitsInteger(type, value)) failSize(*this, fmt::format("does not hold the number {}", value));
  integers[row] = value;
}

void ColumnStore::writeText(size_t row, std::string_view text) {
  const auto limit = static_cast<size_t>(size);
  if (limit > 0 && text.size() > limit && characterCount(text) > limit)
    failSize(*this, fmt::format("holds {} characters, not {}", limit, characterCount(text)));
  texts[row].assign(text);
  if (!keys_.empty()) keys_[row] = foldedKey(text);
}

}  // namespace ondrel
