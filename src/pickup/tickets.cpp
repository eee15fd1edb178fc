#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "pickup/pickup.h"

namespace ondrel {
namespace {

void join(std::string& list, std::string_view separator, const std::string& entry) {
  if (!list.empty()) list += separator;
  list += entry;
}

}  // namespace

// ---------------------------------------------------------------- lists

std::string Pickup::constructTicketNosStrForInvDetails() const {
  std::string list;
  for (const PickupInvoiceRef& ticket : tickets()) join(list, ",", std::to_string(ticket->ticketNumber));
  return list;
}

std::string Pickup::constructTicketNosString() const {
  const std::vector<PickupInvoiceRef> all = tickets();
  if (all.empty()) return "";
  std::string list;
  for (const PickupInvoiceRef& ticket : all)
    if (ticket->ticketNumber != 0) join(list, ",", fmt::format("''{}''", ticket->ticketNumber));
  return "'" + list + "'";
}

Variant Pickup::getTicketNosForPrinting() const {
  std::string list;
  for (const PickupInvoiceRef& ticket : tickets())
    if (ticket->ticketNumber != 0) join(list, ",", std::to_string(ticket->ticketNumber));
  return list;
}

Variant Pickup::getInvoiceNosForPrinting() const {
  std::string list;
  bool first = true;
  for (const PickupInvoiceRef& ticket : tickets()) {
    if (!first) list += ", ";
    list += ticket->InvoiceNumber;
    first = false;
  }
  return list;
}

// ---------------------------------------------------------------- the release

Variant Pickup::getEmployeeName(const Variant& employeeid) const {
  const std::string id = employeeid.joined();
  if (trim(id).empty()) return {};
  const RecordsetRef row = queryDatabase(
      *apartment_, "select employeename from employee where employeeid = '" + escapeSql(id) + "'");
  return row->eof() ? Variant() : row->value("employeename");
}

void Pickup::recordPickupAction(const Variant& employeeid) {
  for (const PickupInvoiceRef& ticket : tickets()) logTicketRelease(ticket->ticketNumber, employeeid);
}

void Pickup::logTicketRelease(std::int32_t ticketNumber, const Variant& employeeid) {
  const std::string name = getEmployeeName(employeeid).joined();
  executeInTransaction(*apartment_,
                       fmt::format(" insert into ticketlog (ticketnumber, logdate, logtype, employeename)  "
                                   "values ( {},  getdate(),  'R',  '{}'  ) ",
                                   ticketNumber, escapeSql(name)));
}

Variant Pickup::isTicketRacked(const Variant& ticketNumber) const {
  const RecordsetRef row =
      queryDatabase(*apartment_, "select count(*) as cnt from rackassignment where ticketnumber = '" +
                                     escapeSqlValue(ticketNumber) + "'");
  return row->integer("cnt") > 0;
}

}  // namespace ondrel
