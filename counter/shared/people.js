// The customer in front of the counter, as the head of a page shows them.
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var credit = Server.include("shared/credit.js");
var customers = Server.include("shared/customers.js");
var h = html.tag;

function marks(id) {
  var found = Database.query(
    "select vipEligible, taxExempt, isnull(routenumber, -1) as route from Customer where " +
    "customerSequenceNumber = " + id);
  if (found.EOF) return [];
  return [
    found.Fields("vipEligible").Value ? "VIP" : "", found.Fields("taxExempt").Value ? "No tax" : "",
    found.Fields("route").Value > 0 ? "Route " + found.Fields("route").Value : ""
  ];
}

function onAccount(id) {
  if (!credit.hasAccount(id)) return "";
  return "On account " +
    text.money(Database
                 .query(
                   "select isnull(sum(paymentAmount), 0) from Payment where paymentType = 'On Account' and " +
                   "customerSequenceNumber = " + id)
                 .Fields(0)
                 .Value);
}

function preferences(id) {
  return text.rows(
    Database.query(
      "select t.name, p.value from customerpreference p inner join customerpreferencetype t on " +
      "t.customerpreferencetypeid = p.customerpreferencetypeid " +
      "where p.ticketnumber is null and p.value <> '' and p.customersequencenumber = " + id +
      " order by t.displayorder"),
    function(field) { return field("name") + ": " + field("value"); });
}

// Name, phone and what to know: who is served, before anything is said. `more` stands beside the name.
exports.head = function(id, more) {
  var customer = customers.byId(id), open = customers.openTickets(id);
  if (!customer) return "";
  var ready = open.filter(function(one) { return one.state === "ready"; }).length;
  var facts = [customer.phone].concat(
    marks(id), onAccount(id), preferences(id),
    open.length ? open.length + (open.length === 1 ? " ticket" : " tickets") + " here" +
        (ready ? ", " + ready + " ready" : "") :
                  "");
  return h(
    "div", { "class": "head" },
    h("h1", null, customer.name, more ? h("span", { "class": "small" }, " ", more) : ""),
    h("ul", { "class": "facts" },
      facts.filter(function(one) { return one; }).map(function(one) { return h("li", null, one); })));
};
