#include "web/invoice_json.h"

#include <fmt/format.h>

#include "base/text.h"
#include "data/values.h"
#include "invoice/line_access.h"
#include "web/line_views.h"
#include "web/whole_number.h"

namespace ondrel {
namespace {

constexpr size_t kExpectedJsonSize = 192;

// Writes JSON to one text that grows. Every value is a text, numbers too; Null is the empty text.
class JsonWriter {
 public:
  explicit JsonWriter(size_t expectedSize) { text_.reserve(expectedSize); }

  JsonWriter& raw(std::string_view text) {
    text_ += text;
    return *this;
  }
  JsonWriter& raw(char sign) {
    text_ += sign;
    return *this;
  }
  // "name":"value"
  JsonWriter& field(std::string_view name, std::string_view value) {
    start(name);
    appendJsonEscaped(text_, value);
    return raw('"');
  }
  JsonWriter& field(std::string_view name, std::int32_t value) {
    start(name);
    appendWhole(text_, value);
    return raw('"');
  }
  JsonWriter& field(std::string_view name, double value) {
    start(name);
    appendNumber(text_, value);
    return raw('"');
  }
  JsonWriter& field(std::string_view name, const std::string& value) {
    return field(name, std::string_view(value));
  }
  // A column of the current row.
  JsonWriter& number(std::string_view name, const Recordset& line, Column column) {
    return line.isNull(column) ? field(name, std::string_view()) : field(name, line.integer(column));
  }
  std::string take() { return std::move(text_); }

 private:
  JsonWriter& start(std::string_view name) { return raw('"').raw(name).raw("\":\""); }

  std::string text_;
};

// A line lacks its sum of upcharges until it has one, and then its price is not told.
void writePrice(JsonWriter& json, const Recordset& line) {
  if (line.isNull(col::upchargeTotal))
    json.field("price", std::string_view());
  else
    json.field("price", line.number(col::lineItemTotal) + line.number(col::upchargeTotal));
}

void writeDescriptors(JsonWriter& json, std::span<const ChildLine> children) {
  json.raw("\"descriptors\": [");
  std::string_view separator;
  for (const ChildLine& child : children) {
    json.raw(separator).raw('{').field("lineid", child.number).raw(',').field("name", child.name).raw(',');
    json.field("type", child.type).raw(',');
    if (child.quantity)
      json.field("quantity", *child.quantity).raw(',');
    else
      json.field("quantity", std::string_view()).raw(',');
    json.field("price", child.total).raw('}');
    separator = ", ";
  }
  json.raw(']');
}

// What both views of a line begin with.
void writeLineHead(JsonWriter& json, const Recordset& line) {
  json.raw('{').number("lineid", line, col::lineNumber).raw(',');
  json.number("deptid", line, col::deptId).raw(',');
  json.number("id", line, col::lineItemId).raw(',');
  json.field("name", line.textView(col::itemName)).raw(',');
  json.field("type", line.textView(col::itemType)).raw(',');
  json.number("quantity", line, col::quantity).raw(',');
  writePrice(json, line);
  json.raw(',');
}

void writeLineEnd(JsonWriter& json, const Recordset& line, const ChildLines& children,
                  std::int32_t selected) {
  const std::int32_t number = line.integer(col::lineNumber);
  if (number == selected) json.raw("\"selected\": 1,");
  writeDescriptors(json, children.of(number));
  json.raw('}');
}

}  // namespace

Variant toJSON(Invoice& invoice) {
  invoice.lineItems->clearFilter();
  const ChildLines children(*invoice.lineItems);
  const RecordsetRef lines = invoice.lineItems->clone();  // in table order, whatever the last panel sorted by
  JsonWriter json(kExpectedJsonSize * static_cast<size_t>(lines->recordCount()));
  json.raw('{').field("id", invoice.ticketNo).raw(", ").field("invoice", invoice.invoiceNo).raw(", ");
  json.field("datecreated", invoice.createdDate.text()).raw(", \"departments\": [");
  std::string_view betweenDepartments;
  for (const LineDepartment& department : departmentsOf(*lines)) {
    if (department.id.isNull()) continue;
    json.raw(betweenDepartments)
        .raw('{')
        .field("deptid", department.id.toLong())
        .raw(',')
        .field("name", department.name.joined());
    json.raw(',').field("datedue", invoice.getDeptDueDate(department.name).toText()).raw(",\"items\": [");
    std::string_view betweenLines;
    lines->setFilter(fmt::format("deptID = {} and parentLineNumber < 0", department.id.toLong()));
    for (; !lines->eof(); lines->moveNext()) {
      json.raw(betweenLines);
      writeLineHead(json, *lines);
      writeLineEnd(json, *lines, children, invoice.selectedLineNumber);
      betweenLines = ", ";
    }
    json.raw("]}");
    betweenDepartments = ", ";
  }
  json.raw("]}");
  return json.take();
}

Variant jsonItem(Invoice& invoice, const Variant& lineNumber) {
  Variant result;
  if (!lineNumber.joined().empty() && findLine(*invoice.lineItems, lineNumber)) {
    JsonWriter json(kExpectedJsonSize);
    writeLineHead(json, *invoice.lineItems);
    json.field("baseprice", invoice.lineItems->number(col::lineItemTotal)).raw(',');
    json.field("heatseal", invoice.lineItems->text(col::heatSeal)).raw(',');
    json.field("notes", invoice.lineItems->text(col::notes)).raw(',');
    json.field("datedue", invoice.lineItems->value(col::dueDate).joined()).raw(',');
    writeLineEnd(json, *invoice.lineItems, ChildLines(*invoice.lineItems), invoice.selectedLineNumber);
    result = json.take();
  }
  invoice.lineItems->clearFilter();
  return result;
}

}  // namespace ondrel
