#include <array>

#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/line_kinds.h"
#include "web/html_writer.h"
#include "web/line_views.h"
#include "web/panels.h"

namespace ondrel {
namespace {

// Tickets due longer ago are no double entry.
constexpr int kSimilarDays = 180;

// The tickets that hold one garment of the invoice with all that describes it. `garment` and `descriptor` number
// the joined tables of the whole statement and are raised.
std::string ticketsWith(const Recordset& line, Recordset& children, int& garment, int& descriptor) {
  const std::string item = fmt::format("pitem{}", garment++);
  std::string query = fmt::format(" select distinct {0}.ticketnumber  from ticketlineitem {0} ", item);
  children.setFilter(fmt::format("parentLineNumber = {}", line.integer(col::lineNumber)));
  for (; !children.eof(); children.moveNext()) {
    const std::string type = children.text(col::itemType);
    if (!kind::isDescriptor(toUpper(type))) continue;
    query += fmt::format(
        " inner join TicketLineItem sitem{0} on  sitem{0}.ticketNumber = {1}.ticketNumber and  "
        "sitem{0}.parentLineNumber = {1}.lineItemNumber and  sitem{0}.lineItemName = '{2}' and "
        "sitem{0}.ticketLineType = '{3}' ",
        descriptor++, item, escapeSqlValue(children.text(col::itemName)), escapeSqlValue(type));
  }
  return query + fmt::format(
                     " where {0}.lineItemId = {1} and {0}.quantity >= {2} and datediff(day, {0}.duedate, "
                     "getdate()) <= {3} ",
                     item, sqlNumber(line.value(col::lineItemId)), sqlNumber(line.value(col::quantity)),
                     kSimilarDays);
}

void writeSimilarTickets(Invoice& invoice, HtmlWriter& html, const std::string& query) {
  const RecordsetRef tickets = queryDatabase(
      *invoice.apartment(),
      fmt::format(
          " select ticket.invoicenumber, ticket.ticketnumber, employee.employeename, ticket.createddate, "
          "isnull(convert(varchar, ticket.dateout, 101), '-') as dateout, customer.customername, "
          "dbo.pivotTicketRackLocationBrief(ticket.ticketNumber, ',') as racklocation  from ticket  inner join "
          "customer on ticket.customersequencenumber = customer.customersequencenumber  inner join employee on "
          "ticket.createdbyemployeeid = employee.employeeid  where ticket.ticketnumber in  (  {}  )  order by "
          "ticket.createddate desc ",
          query));
  static constexpr std::array<std::pair<std::string_view, std::string_view>, 6> kCells = {{
      {"si_invoice", "invoicenumber"},
      {"si_customer", "customername"},
      {"si_employee", "employeename"},
      {"si_rack", "racklocation"},
      {"si_created", "createddate"},
      {"si_pickedup", "dateout"},
  }};
  for (; !tickets->eof(); tickets->moveNext()) {
    const Variant number = tickets->value("ticketnumber");
    html.raw("<div class=\"si_item\"").escaped("ticketnumber", number).content();
    html.raw("<div class=\"si_view\"").escaped("ticketnumber", number).raw("><span>View</span></div>");
    for (const auto& [className, column] : kCells)
      html.tag("div").attribute("class", className).content().encoded(tickets->value(column)).end("div");
    html.raw("</div>");
  }
}

}  // namespace

Variant htmlSummary(Invoice& invoice, const Variant& ticketNumber) {
  const RecordsetRef ticket = queryDatabase(
      *invoice.apartment(),
      fmt::format(" select  ticket.ticketnumber,  ticket.ticketstatus,  ticket.invoicenumber,  "
                  "dbo.pivotTicketRackLocationBrief(ticket.ticketnumber, ', ') as racklocation,  "
                  "ticketcustomer.customername,  dbo.formatphone(ticketcustomer.mainareacode, "
                  "ticketcustomer.mainphone) as customerphone  from ticket  inner join ticketcustomer on "
                  "ticket.ticketnumber = ticketcustomer.ticketnumber  where ticket.ticketnumber = '{}' ",
                  escapeSqlValue(ticketNumber.joined())));
  if (ticket->eof()) return {};
  HtmlWriter html;
  html.raw("<div class=\"summary_phone\">").encoded(ticket->value("customerphone")).raw("</div>");
  html.raw("<div class=\"summary_name\">").encoded(ticket->value("customername")).raw("</div>");
  html.raw("<div class=\"summary_invoice\">").encoded(ticket->value("invoicenumber")).raw(" ");
  html.encoded(ticket->value("ticketstatus")).raw(" ").encoded(ticket->value("racklocation")).raw("</div>");
  return html.take();
}

Variant htmlSimilarInvoices(Invoice& invoice) {
  std::string query;
  int garment = 1, descriptor = 1;
  const RecordsetRef children = invoice.lineItems->clone();
  invoice.lineItems->setFilter("itemType = 'IT'");
  for (; !invoice.lineItems->eof(); invoice.lineItems->moveNext()) {
    if (!query.empty()) query += " intersect ";
    query += ticketsWith(*invoice.lineItems, *children, garment, descriptor);
  }
  HtmlWriter html;
  html.raw("<div class=\"si_list\">");
  if (!query.empty()) writeSimilarTickets(invoice, html, query);
  html.raw("</div>");
  return html.take();
}

}  // namespace ondrel
