#include "invoice/invoice.h"
#include "invoice/line_access.h"

namespace ondrel {

using enum LineColumn;

void Invoice::setLineText(const Variant& lineNo, Column column, const Variant& text) {
  setLineValue(*lineItems, lineNo, column, text);
}

void Invoice::renameLineItem(const Variant& lineNo, const Variant& name) {
  setLineText(lineNo, itemName, name);
}

void Invoice::attachNotes(const Variant& lineNo, const Variant& text) {
  setLineText(lineNo, notes, text);
}

void Invoice::attachPromptReponse(const Variant& lineNo, const Variant& response) {
  setLineText(lineNo, promptResponse, response);
}

Variant Invoice::getItemNotes(const Variant& lineNo) {
  return lineText(*lineItems, lineNo, notes);
}

Variant Invoice::getLineQuantity(const Variant& line) {
  const RecordsetRef lines = lineItems->clone();
  return ondrel::findLine(*lines, line) ? lines->value(quantity) : Variant(0);
}

void Invoice::logCurrent(std::string_view logType, const Variant& pieces, const Variant& amount) {
  lines_.log(logType, pieces, lineItems->value(deptName), lineItems->value(itemName), amount);
}

}  // namespace ondrel
