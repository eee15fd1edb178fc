#include <fmt/format.h>

#include <algorithm>

#include "invoice/invoice.h"
#include "invoice/splitting/child_tickets.h"
#include "invoice/splitting/department_groups.h"
#include "invoice/splitting/department_table.h"
#include "invoice/splitting/line_moves.h"

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

constexpr std::string_view kMarked = "split = 1";

// A department that the clerk splits by hand is cut by itself only beyond this.
constexpr std::int32_t kPiecesByHand = 10000;

struct DepartmentFilters {
  std::string articles, others;
};

void addTerm(std::string& filter, std::string_view separator, const std::string& term) {
  if (!filter.empty()) filter += separator;
  filter += term;
}

// What the departments share out: neither articles nor what hangs on one and follows it.
std::string sharedLines() {
  std::string filter;
  for (const LineKind& kind : kLineKinds)
    if (kind.isArticle || kind.isDescriptor)
      addTerm(filter, " AND ", fmt::format("itemType <> '{}'", kind.code));
  return filter + " AND parentLineNumber <= 0";
}

// Lines of the departments that `rows` names; of any department when it names none.
DepartmentFilters filtersFor(Recordset& rows) {
  static const std::string kShared = sharedLines();
  DepartmentFilters filters;
  for (; !rows.eof(); rows.moveNext()) {
    const std::string department = fmt::format("deptId = '{}'", rows.value("departmentid").toText());
    addTerm(filters.articles, " OR ", filterOf(&LineKind::isArticle, department));
    addTerm(filters.others, " OR ", fmt::format("({} AND {})", department, kShared));
  }
  if (filters.articles.empty()) filters = {filterOf(&LineKind::isArticle), kShared};
  return filters;
}

std::int32_t packOf(const Recordset& line) {
  return line.isNull(col::pkgQuantity) ? 1 : line.integer(col::pkgQuantity);
}

// ---------------------------------------------------------------- children

std::shared_ptr<Invoice> createChild(const Invoice& parent) {
  const ApartmentScope scope(parent.apartment());
  const auto child = std::make_shared<Invoice>();
  handDownTicket(parent, *child);
  child->custVisitCount = parent.custVisitCount;
  child->tagsSameAsInvNos = parent.tagsSameAsInvNos;
  child->invoiceType = parent.invoiceType;
  child->counterSaleOnly = parent.counterSaleOnly;
  child->multiPickUpCustName = parent.multiPickUpCustName;
  child->multiPickUpLoc = parent.multiPickUpLoc;
  child->amountPaid = parent.amountPaid;
  child->invoiceOnDelivery = parent.invoiceOnDelivery;
  child->excludeSurcharges = parent.excludeSurcharges;
  child->excludeTaxes = parent.excludeTaxes;
  child->isAdd = true;
  return child;
}

void addChild(Invoice& parent, const std::shared_ptr<Invoice>& child) {
  DictionaryRef& children = parent.invoicesDictionary;
  if (!children) children = std::make_shared<Dictionary>();
  children->add(children->count() + 1, ObjectRef(child));
}

void splitQuickLines(Invoice& invoice) {
  const auto child = createChild(invoice);
  invoice.lines().each(ofKind(kind::department), [&](Recordset& bag) {
    copyLine(*child->lineItems, bag);
    bag.deleteRow();
  });
  addChild(invoice, child);
}

// ---------------------------------------------------------------- a department

// Puts the portion of each line on the child and takes it off the line.
void takeShare(Invoice& child, Recordset& others, std::optional<double> portion) {
  if (others.recordCount() == 0) return;
  for (others.moveFirst(); !others.eof(); others.moveNext()) {
    const double whole = others.number(col::lineItemTotal);
    const double share = portion ? *portion * whole : 0;
    copyLine(*child.lineItems, others);
    child.lineItems->setValue(col::lineNumber, child.currentLineNumber++);
    child.lineItems->setValue(col::lineItemTotal, share);
    others.setValue(col::lineItemTotal, portion ? whole - share : 0);
  }
  child.lines().leavesAll();
}

// A child with as many of the articles as fit, or nothing when there are none left. A line that does not fit is
// passed over, and a smaller one further on may still join. The first line always goes: one that is larger than
// the limit by itself has a ticket of its own.
std::shared_ptr<Invoice> buildChild(Invoice& parent, const std::string& articles, Recordset& others,
                                    std::int32_t maxItems) {
  Lines& lines = parent.lines();
  parent.lineItems->setSort("originalLineNumber");
  const double remaining =
      lines.sum(articles, [](const Recordset& line) { return line.number(col::lineItemTotal); });
  if (!lines.any(articles)) return nullptr;
  const auto child = createChild(parent);
  child->setStoreDays(parent.storeNumber);
  parent.amountPaid = 0;

  std::int64_t pieces = 0;
  double moved = 0;
  bool passedOver = false;
  std::string attached;
  lines.each(articles, [&](Recordset& line) {
    if (!attached.empty() && pieces + packOf(line) > maxItems) {
      passedOver = true;
      return;
    }
    pieces += packOf(line);
    moved += line.number(col::lineItemTotal);
    raiseLineNumber(*child, line.integer(col::lineNumber));
    moveLine(line, *child, attached);
  });
  moved += moveAttachedLines(lines, *child, attached);
  ++child->currentLineNumber;

  // The last child takes all that the others left, so that the shares add up.
  std::optional<double> portion;
  if (remaining > 0.005) portion = passedOver ? std::clamp(moved / remaining, 0.0, 1.0) : 1.0;
  takeShare(*child, others, portion);
  child->calculateSurcharges();
  Variant prepays = parent.state().prepayEnabled;
  child->applyPrepay(prepays);
  return child;
}

std::int32_t mostPiecesOf(Recordset& departments, const Variant& department) {
  departments.setFilter("departmentID=" + department.toText());
  const std::int32_t limit =
      departments.flag("userMaxItem") ? kPiecesByHand : departments.integer("maxItemsInReceipt");
  departments.clearFilter();
  return limit;
}

// | step | acts on                             | effect                                           |
// |------|-------------------------------------|--------------------------------------------------|
// | 1    | departments of the same group, and  | travel together                                  |
// |      | those of none, on one price list    |                                                  |
// | 2    | their lines beside the garments     | set aside to be shared out                       |
// | 3    | their garments and charges          | children of at most so many pieces, until none   |
// |      |                                     | is left                                          |
// | 4    | the lines set aside                 | leave the parent                                 |
void splitDepartment(Invoice& invoice, const Variant& department) {
  const DepartmentFilters filters = filtersFor(*travellingDepartments(*invoice.apartment(), department));
  const RecordsetRef others = Recordset::create(kLineLayout);
  invoice.lines().each(filters.others, [&](const Recordset& line) { copyLine(*others, line); });
  const std::int32_t limit =
      mostPiecesOf(loadedDepartments(*invoice.apartment(), invoice.className()), department);
  while (const auto child = buildChild(invoice, filters.articles, *others, limit)) {
    child->collectLineItems();
    addChild(invoice, child);
  }
  invoice.lines().remove(filters.others);
}

}  // namespace

// ---------------------------------------------------------------- whether

bool Invoice::isSplitInvoice() {
  if (lines_.any(kMarked)) return true;
  const auto isPresent = [this](Variant department) { return isDepartmentPresent(department).toBoolean(); };
  const auto pieces = [this](Variant department) { return getDepartmentPieceCount(department).toLong(); };
  return departmentsAskForSplit(loadedDepartments(*apartment_, className()), isPresent, pieces) ||
         isQuickInvoice();
}

bool Invoice::oneDeptWithNoSplitExists() {
  return hasDepartmentWithoutSplit(listedDepartments(*this));
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
  listDepartments(*this);
  if (!isSplitInvoice()) return nullptr;
  splitTheInvoice = true;
  invoicesDictionary = std::make_shared<Dictionary>();
  flattenLines(*this);
  invoiceDeptIds->setSort("existing desc, splitGroup desc");
  if (lines_.any(kMarked)) splitMarkedLineItems();
  if (isQuickInvoice()) splitQuickLines(*this);
  for (; !invoiceDeptIds->eof(); invoiceDeptIds->moveNext())
    splitDepartment(*this, invoiceDeptIds->value(DeptColumn::deptId));
  collectLineItems();
  if (!counterSaleOnly) calculateInvDueDate();
  return invoicesDictionary;
}

// Line numbers stay those of the parent; only what hangs on the marked lines raises the child's next number.
Variant Invoice::splitMarkedLineItems() {
  const auto child = createChild(*this);
  std::string attached;
  lines_.each(kMarked, [&](Recordset& line) { moveLine(line, *child, attached); });
  moveAttachedLines(lines_, *child, attached);
  addChild(*this, child);
  return ObjectRef(child);
}

}  // namespace ondrel
