#include "data/recordset/column_store.h"

#include <fmt/format.h>

#include <limits>

#include "base/text.h"
#include "base/whole_number.h"

namespace ondrel {
namespace {

[[noreturn]] void failSize(const ColumnStore& column, std::string_view reason) {
  throw Error(ErrorNumber::DataOverflow, "Recordset", fmt::format("Column {} {}", column.name, reason));
}

std::int32_t fittingInteger(const ColumnStore& column, std::int32_t value) {
  const bool fits = column.type == FieldType::SmallInt  ? std::in_range<std::int16_t>(value)
                    : column.type == FieldType::TinyInt ? std::in_range<std::uint8_t>(value)
                                                        : true;
  if (!fits) failSize(column, fmt::format("does not hold the number {}", value));
  return value;
}

double fittingNumber(const ColumnStore& column, double value) {
  if (!std::isfinite(value) || (column.type == FieldType::BigInt && std::fabs(value) >= 0x1p63))
    failSize(column, fmt::format("does not hold the number {}", value));
  return value;
}

std::string fittingText(const ColumnStore& column, std::string text) {
  const size_t length = characterCount(text);
  if (column.size > 0 && length > static_cast<size_t>(column.size))
    failSize(column, fmt::format("holds {} characters, not {}", column.size, length));
  return text;
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
  if (!keys_.isEmpty()) keys_.resize(rows);
}

void ColumnStore::becomeLong() {
  type = FieldType::Long;
  storage = Storage::Integer;
  integers.resize(numbers.size());
  for (size_t row = 0; row < numbers.size(); ++row) integers[row] = toLong(numbers[row]);
  numbers = {};
}

Variant ColumnStore::read(size_t row) const {
  if (!present[row]) return Variant::null();
  switch (storage) {
    case Storage::Integer:
      return integers[row];
    case Storage::Number:
      if (type == FieldType::BigInt) return wholeNumber<std::int64_t>(numbers[row]).value_or(0);
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
  if (!keys_.isEmpty()) keys_.set(row, kKeyOfNoText);
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
  if (!keys_.isEmpty()) keys_.move(from, to);
}

const FoldedKeyList& ColumnStore::foldedKeys() const {
  if (keys_.size() != texts.size()) {
    keys_.resize(texts.size());
    for (size_t row = 0; row < texts.size(); ++row) keys_.set(row, foldedKey(texts[row]));
  }
  return keys_;
}

std::int32_t ColumnStore::convertToInteger(size_t row) const {
  return read(row).toLong();
}

double ColumnStore::convertToNumber(size_t row) const {
  return read(row).toDouble();
}

void ColumnStore::convertAndWrite(size_t row, double value) {
  convertAndWrite(row, Variant(value));
}

void ColumnStore::convertAndWrite(size_t row, const Variant& value) {
  if (value.isNull()) {
    if (!nullable) failSize(*this, "takes no Null");
    present[row] = 0;
    return;
  }
  switch (storage) {
    case Storage::Integer:
      return put(integers, row, fittingInteger(*this, value.toLong()));
    case Storage::Number:
      return put(numbers, row, fittingNumber(*this, value.toDouble()));
    case Storage::Flag:
      return put(flags, row, std::uint8_t{value.toBoolean()});
    case Storage::Date:
      return put(numbers, row, value.toDate().serial());
    case Storage::Text:
      return putText(row, fittingText(*this, value.toText()));
  }
}

}  // namespace ondrel
