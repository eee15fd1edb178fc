#pragma once

#include "data/recordset/recordset.h"

namespace ondrel {

// The columns of a table, as a page sees them: a collection by name or by position from 0.
class RecordsetFields : public Object {
 public:
  explicit RecordsetFields(RecordsetRef table) : table_(std::move(table)) {}
  std::string_view className() const override { return "Fields"; }

  Recordset& table() const { return *table_; }
  int count() const { return table_->fieldCount(); }
  // The column of a name or a position; error 3265 when there is none.
  std::shared_ptr<class RecordsetField> item(const Variant& key) const;
  // Adds a column to a table that is not open yet. `size` counts for text only.
  void append(const std::string& name, FieldType type, int size, int attributes);

 private:
  RecordsetRef table_;
};

// One column in the current row of its table, whichever row that is when it is read.
class RecordsetField : public Object {
 public:
  RecordsetField(RecordsetRef table, Column column) : table_(std::move(table)), column_(column) {}
  std::string_view className() const override { return "Field"; }

  Variant value() const { return table_->value(column_); }
  void setValue(const Variant& value) { table_->setValue(column_, value); }
  std::string name() const { return std::string(table_->fieldName(column_)); }
  FieldType type() const { return table_->fieldType(column_); }
  int definedSize() const { return table_->fieldSize(column_); }
  int attributes() const { return table_->fieldNullable(column_) ? kNullableColumn : 0; }

 private:
  RecordsetRef table_;
  Column column_;
};

}  // namespace ondrel
