#include <fmt/format.h>

#include <algorithm>

#include "invoice/invoice.h"
#include "invoice/line_kinds.h"
#include "invoice/splitting/child_tickets.h"
#include "invoice/splitting/department_groups.h"

// What goes on which ticket. Every child is an invoice like its parent; the three ways of making one differ:
//
// |                        | marked lines      | bags of a quick drop-off | garments of departments         |
// |------------------------|-------------------|--------------------------|---------------------------------|
// | what moves             | the lines, with   | DE lines                 | IT and AC lines, with what      |
// |                        | what hangs on them |                         | hangs on them                   |
// | other department lines | stay              | stay                     | shared out by amount            |
// | store calendar         | not loaded        | not loaded               | loaded anew                     |
// | amount paid            | the child has it  | the child has it too     | the first child takes it away   |
// |                        | too               |                          | from the parent                 |
// | surcharges, prepay     | untouched         | untouched                | worked out again                |
//
// Lines without a department stay on the parent.

namespace ondrel {
namespace {

using enum LineColumn;

// A department that the clerk splits by hand is cut by itself only beyond this.
constexpr std::int32_t kPiecesByHand = 10000;

struct DepartmentFilters {
  std::string garments, others;
};

void addTerm(std::string& filter, const std::string& term) {
  filter += (filter.empty() ? "" : " OR ") + term;
}

// What the departments share out: neither garments and charges nor what hangs on a line and follows it.
constexpr std::string_view kShared =
    "itemType <> 'IT' AND itemType <> 'AC' AND itemType <> 'CO' AND itemType <> 'PA' AND itemType <> 'BR' AND "
    "itemType <> 'UP' AND parentLineNumber <= 0";

// Lines of the departments that `rows` names; of any department when it names none.
DepartmentFilters filtersFor(Recordset& rows) {
  DepartmentFilters filters;
  for (; !rows.eof(); rows.moveNext()) {
    const std::string id = rows.value("departmentid").toText();
    addTerm(filters.garments,
            fmt::format("(deptId = '{0}' AND itemType = 'IT') OR (deptId = '{0}' AND itemType='AC')", id));
    addTerm(filters.others, fmt::format("(deptId = '{}' AND {})", id, kShared));
  }
  if (filters.garments.empty()) filters = {"itemType = 'IT' OR itemType = 'AC'", std::string(kShared)};
  return filters;
}

std::int32_t piecesOf(const Recordset& line) {
  return line.isNull(pkgQuantity) ? 1 : line.integer(pkgQuantity);
}

}  // namespace

// ---------------------------------------------------------------- whether

bool Invoice::hasMarkedLineItems() {
  lineItems->setFilter("split = 1");
  const bool found = !lineItems->eof();
  lineItems->clearFilter();
  return found;
}

bool Invoice::isSplitInvoice() {
  if (hasMarkedLineItems()) return true;
  const auto isPresent = [this](Variant department) { return isDepartmentPresent(department).toBoolean(); };
  const auto pieces = [this](Variant department) { return getDepartmentPieceCount(department).toLong(); };
  return departmentsAskForSplit(storeDepartments(), isPresent, pieces) || isQuickInvoice();
}

bool Invoice::oneDeptWithNoSplitExists() {
  return hasDepartmentWithoutSplit(listedDepartments());
}

// ---------------------------------------------------------------- the split

// | step | acts on                 | effect                                                             |
// |------|-------------------------|--------------------------------------------------------------------|
// | 1    | garments of many pieces | a line a piece                                                     |
// | 2    | marked lines            | the first child                                                    |
// | 3    | bags of a quick drop-off | the next child, with or without lines                             |
// | 4    | each department         | children of its group: those already on the saved ticket first,    |
// |      |                         | higher groups before lower, then in the order of the lines         |
// | 5    | what is left            | pieces joined again, the promise from its lines                    |
DictionaryRef Invoice::splitInvoice(const Variant&) {
  createDeptTable();
  fillDeptTable();
  if (!isSplitInvoice()) return nullptr;
  splitTheInvoice = true;
  invoicesDictionary = std::make_shared<Dictionary>();
  flattenLineItems();
  invoiceDeptIds->setSort("existing desc, splitGroup desc");
  if (hasMarkedLineItems()) splitMarkedLineItems();
  if (isQuickInvoice()) splitQuickLines();
  for (; !invoiceDeptIds->eof(); invoiceDeptIds->moveNext()) splitDepartment(invoiceDeptIds->value("deptId"));
  collectLineItems();
  if (!counterSaleOnly) calculateInvDueDate();
  return invoicesDictionary;
}

std::shared_ptr<Invoice> Invoice::createSplitChild() const {
  const ApartmentScope scope(apartment_);
  const auto child = std::make_shared<Invoice>();
  handDownTicket(*this, *child);
  child->custVisitCount = custVisitCount;
  child->tagsSameAsInvNos = tagsSameAsInvNos;
  child->invoiceType = invoiceType;
  child->counterSaleOnly = counterSaleOnly;
  child->multiPickUpCustName = multiPickUpCustName;
  child->multiPickUpLoc = multiPickUpLoc;
  child->amountPaid = amountPaid;
  child->invoiceOnDelivery = invoiceOnDelivery;
  child->excludeSurcharges = excludeSurcharges;
  child->excludeTaxes = excludeTaxes;
  child->isAdd = true;
  return child;
}

void Invoice::addSplitChild(const std::shared_ptr<Invoice>& child) {
  if (!invoicesDictionary) invoicesDictionary = std::make_shared<Dictionary>();
  invoicesDictionary->add(invoicesDictionary->count() + 1, ObjectRef(child));
}

std::vector<std::shared_ptr<Invoice>> Invoice::splitChildren() const {
  return childTickets<Invoice>(invoicesDictionary, className());
}

// Line numbers stay those of the parent; only what hangs on the marked lines raises the child's next number.
Variant Invoice::splitMarkedLineItems() {
  const auto child = createSplitChild();
  std::string attached;
  lineItems->setFilter("split = 1");
  for (; !lineItems->eof(); lineItems->moveNext()) moveLine(*child, attached);
  moveAttachedLines(*child, attached);
  lineItems->clearFilter();
  addSplitChild(child);
  return ObjectRef(child);
}

void Invoice::splitQuickLines() {
  const auto child = createSplitChild();
  lineItems->setFilter("itemType = 'DE'");
  for (; !lineItems->eof(); lineItems->moveNext()) {
    copyLineItem(*child->lineItems, *lineItems);
    lineItems->deleteRow();
  }
  lineItems->clearFilter();
  addSplitChild(child);
}

// ---------------------------------------------------------------- a department

// | step | acts on                             | effect                                           |
// |------|-------------------------------------|--------------------------------------------------|
// | 1    | departments of the same group, and  | travel together                                  |
// |      | those of none, on one price list    |                                                  |
// | 2    | their lines beside the garments     | set aside to be shared out                       |
// | 3    | their garments and charges          | children of at most so many pieces, until none   |
// |      |                                     | is left                                          |
// | 4    | the lines set aside                 | leave the parent                                 |
void Invoice::splitDepartment(const Variant& department) {
  const DepartmentFilters filters = filtersFor(*travellingDepartments(*apartment_, department));

  const RecordsetRef others = createLineItemsTable();
  lineItems->setFilter(filters.others);
  for (; !lineItems->eof(); lineItems->moveNext()) copyLineItem(*others, *lineItems);

  Recordset& departments = storeDepartments();
  departments.setFilter("departmentID=" + department.toText());
  const std::int32_t limit =
      departments.flag("userMaxItem") ? kPiecesByHand : departments.integer("maxItemsInReceipt");
  departments.clearFilter();

  const auto buildNext = [&] {
    lineItems->setFilter(filters.garments);
    lineItems->setSort("originalLineNumber");
    return buildSplitInvoice(*lineItems, *others, limit);
  };
  while (const auto child = buildNext()) {
    child->collectLineItems();
    addSplitChild(child);
  }
  deleteFilteredLines(filters.garments);
  deleteFilteredLines(filters.others);
}

// A line that does not fit is passed over, and a smaller one further on may still join. The first line always
// goes: one that is larger than the limit by itself has a ticket of its own.
std::shared_ptr<Invoice> Invoice::buildSplitInvoice(Recordset& source, Recordset& others,
                                                    std::int32_t maxItems) {
  double remaining = 0;
  for (; !source.eof(); source.moveNext()) remaining += source.number(lineItemTotal);
  if (source.recordCount() == 0) return nullptr;
  const auto child = createSplitChild();
  child->setStoreDays(storeNumber);
  amountPaid = 0;

  std::int64_t pieces = 0;
  double moved = 0;
  bool passedOver = false;
  std::string attached;
  for (source.moveFirst(); !source.eof(); source.moveNext()) {
    if (!attached.empty() && pieces + piecesOf(source) > maxItems) {
      passedOver = true;
      continue;
    }
    pieces += piecesOf(source);
    moved += source.number(lineItemTotal);
    child->raiseLineNumber(source.integer(lineNumber));
    moveLine(*child, attached);
  }
  moved += moveAttachedLines(*child, attached);
  ++child->currentLineNumber;

  // The last child takes all that the others left, so that the shares add up.
  std::optional<double> portion;
  if (remaining > 0.005) portion = passedOver ? std::clamp(moved / remaining, 0.0, 1.0) : 1.0;
  child->takeShareOf(others, portion);
  child->calculateSurcharges();
  Variant prepays = state_.prepayEnabled;
  child->applyPrepay(prepays);
  return child;
}

void Invoice::takeShareOf(Recordset& others, std::optional<double> portion) {
  if (others.recordCount() == 0) return;
  for (others.moveFirst(); !others.eof(); others.moveNext()) {
    const double whole = others.number(lineItemTotal);
    const double share = portion ? *portion * whole : 0;
    copyLineItem(*lineItems, others);
    lineItems->setValue(lineNumber, currentLineNumber++);
    lineItems->setValue(lineItemTotal, share);
    others.setValue(lineItemTotal, portion ? whole - share : 0);
  }
  lineItems->clearFilter();
}

}  // namespace ondrel
