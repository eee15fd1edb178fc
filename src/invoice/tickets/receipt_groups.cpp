#include "invoice/tickets/receipt_groups.h"

#include <array>

#include "base/text.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"

namespace ondrel {
namespace {

enum class GroupColumn : int { itemDesc, colorPatternDesc, upchargeDesc, total, quantity };

// clang-format off
constexpr std::array<ColumnSpec, 5> kGroupLayout = {{
  {"itemDesc",         FieldType::Text, 255, false},
  {"colorPatternDesc", FieldType::Text, 255, true},
  {"upchargeDesc",     FieldType::Text, 255, true},
  {"total",            FieldType::Double, 0, false},
  {"quantity",         FieldType::Long,   0, false},
}};
// clang-format on

// Where a table of lines keeps what a group is made of.
struct LineFields {
  Column number, type, name, quantity, total, notes, itemNotes;

  explicit LineFields(const Recordset& lines)
      : number(lines.column("lineNumber")),
        type(lines.column("itemType")),
        name(lines.column("itemName")),
        quantity(lines.column("quantity")),
        total(lines.column("lineItemTotal")),
        notes(lines.column("notes")),
        itemNotes(lines.column("peNotes")) {}
};

void appendNote(std::string& text, const std::string& note) {
  if (!trim(note).empty()) text += " " + note;
}

void appendWord(std::string& words, const std::string& word) {
  if (!words.empty()) words += ", ";
  words += word;
}

std::string wordOf(const Recordset& child, const LineFields& fields) {
  std::string word = child.text(fields.name);
  if (!child.isNull(fields.quantity) && child.integer(fields.quantity) > 1)
    word = std::to_string(child.integer(fields.quantity)) + " " + word;
  appendNote(word, child.text(fields.itemNotes));
  appendNote(word, child.text(fields.notes));
  return word;
}

}  // namespace

// | child          | its word goes to  | its amount goes to |
// |----------------|-------------------|--------------------|
// | UP             | upchargeDesc      | total              |
// | CO, PA         | colorPatternDesc  | total              |
// | BR             | colorPatternDesc by brandWords | total              |
// | any other      | nowhere           | total              |
RecordsetRef groupLines(Recordset& lines, BrandWords brandWords) {
  const RecordsetRef groups = Recordset::create(kGroupLayout);
  const LineFields fields(lines);
  const RecordsetRef children = lines.clone();
  lines.setFilter("itemType='IT' OR itemType='AC'");
  for (; !lines.eof(); lines.moveNext()) {
    std::string item = lines.text(fields.name), colors, upcharges;
    appendNote(item, lines.text(fields.notes));
    appendNote(item, lines.text(fields.itemNotes));
    double total = lines.number(fields.total);
    children->setFilter("parentLineNumber=" + std::to_string(lines.integer(fields.number)));
    for (; !children->eof(); children->moveNext()) {
      const std::string type = toUpper(children->text(fields.type));
      if (type == kind::upcharge)
        appendWord(upcharges, wordOf(*children, fields));
      else if (type == kind::color || type == kind::pattern ||
               (type == kind::brand && brandWords == BrandWords::yes))
        appendWord(colors, wordOf(*children, fields));
      total += children->number(fields.total);
    }
    groups->addNew(
        {{GroupColumn::itemDesc, item},
         {GroupColumn::colorPatternDesc, colors},
         {GroupColumn::upchargeDesc, upcharges},
         {GroupColumn::total, total},
         {GroupColumn::quantity, lines.isNull(fields.quantity) ? 0 : lines.integer(fields.quantity)}});
  }
  lines.clearFilter();
  if (groups->recordCount() > 0) groups->moveFirst();
  return groups;
}

RecordsetRef Invoice::getLineItemsGroupDetails() {
  return groupLines(*lineItems, BrandWords::no);
}

}  // namespace ondrel
