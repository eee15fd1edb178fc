// What is to be done in the shop: its open tickets, by the day they were promised for.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");

exports.most = 60;

// A day as a literal of SQL, so many days from today.
function day(ahead) {
  var now = Server.now(), one = new Date(now.getFullYear(), now.getMonth(), now.getDate() + ahead);
  function two(number) { return (number < 10 ? "0" : "") + number; }
  return "'" + one.getFullYear() + two(one.getMonth() + 1) + two(one.getDate()) + "'";
}
exports.day = day;

var isReady = "exists (select 1 from rackassignment r where r.ticketnumber = t.ticketNumber)",
    isOpen = "not " + isReady;
var isBag = "t.invoiceType = 'Q' and not exists (select 1 from TicketLineItem b where b.ticketNumber = " +
  "t.ticketNumber and b.ticketLineType = 'IT')";
function isRush() {
  return "exists (select 1 from TicketLineItem u inner join rushupcharge x on x.upchargename = " +
    "u.lineItemName where u.ticketNumber = t.ticketNumber and x.storeid = t.storeId) and " + isOpen;
}

// Name in the address, title, condition, what an empty one says.
exports.sections = function() {
  return [
    ["late", "Late", isOpen + " and t.dueDate < " + day(0), "Nothing is late."],
    [
      "today", "Today", isOpen + " and t.dueDate >= " + day(0) + " and t.dueDate < " + day(1),
      "Nothing is left for today."
    ],
    [
      "tomorrow", "Tomorrow", isOpen + " and t.dueDate >= " + day(1) + " and t.dueDate < " + day(2),
      "Nothing is promised for tomorrow."
    ],
    ["rush", "Rush", isRush(), "No rush is in the shop."],
    ["bags", "Bags to itemise", isBag, "Every bag is itemised."],
    ["open", "Not on the rack", isOpen, "Everything hangs on the rack."],
    ["ready", "Ready", isReady, "Nothing is on the rack. Hang tickets on it at Rack."]
  ];
};

var here = function() { return "t.storeId = " + desk.place().store + " and t.ticketStatus in ('AC', 'OD')"; };

// How many tickets each section has, by its name: one pass over the open tickets, and one over the bags.
exports.counts = function() {
  var found = Database.query(
    "select count(*) as every, sum(case when r.ticketnumber is null then 0 else 1 end) as ready, " +
    ["late", "today", "tomorrow"]
      .map(function(name, at) {
        return "sum(case when r.ticketnumber is null" + (at > 0 ? " and t.dueDate >= " + day(at - 1) : "") +
          " and t.dueDate < " + day(at) + " then 1 else 0 end) as " + name;
      })
      .join(", ") +
    " from Ticket t left join (select distinct ticketnumber from rackassignment) r on r.ticketnumber = " +
    "t.ticketNumber where " + here());
  function field(name) { return found.Fields(name).Value || 0; }
  return {
    late: field("late"),
    today: field("today"),
    tomorrow: field("tomorrow"),
    ready: field("ready"),
    open: field("every") - field("ready"),
    bags: Database.query("select count(*) from Ticket t where " + here() + " and " + isBag).Fields(0).Value
  };
};

exports.departments = function() {
  return text.rows(
    Database.query(
      "select departmentID, name from Department where disabled = 0 and storeid = " + desk.place().store +
      " order by displaySequence, departmentID"),
    function(field) {
      return [field("departmentID"), field("name")];
    });
};

// The tickets of a section that are due first.
exports.tickets = function(condition, department) {
  return text.rows(
    Database.query(
      "select top " + (exports.most + 1) +
      " t.ticketNumber, t.invoiceNumber, t.dueDate, t.pickupTime, isnull(c.customername, '') as name, " +
      "isnull(dbo.pivotTicketRackLocationBrief(t.ticketNumber, ', '), '') as rack, " +
      "(select sum(l.quantity * isnull(l.packagedQuantity, 1)) from TicketLineItem l where " +
      "l.ticketNumber = t.ticketNumber and l.ticketLineType in ('IT', 'DE')) as pieces, " +
      "(select sum(l.quantity * isnull(l.packagedQuantity, 1)) from TicketLineItem l where " +
      "l.ticketNumber = t.ticketNumber and l.pickedup = 1 and l.ticketLineType = 'IT') as gone, " +
      "(select min(l.departmentName) from TicketLineItem l where l.ticketNumber = t.ticketNumber and " +
      "l.ticketLineType in ('IT', 'DE')) as firstDepartment, " +
      "(select max(l.departmentName) from TicketLineItem l where l.ticketNumber = t.ticketNumber and " +
      "l.ticketLineType in ('IT', 'DE')) as lastDepartment " +
      "from Ticket t left join Customer c on c.customerSequenceNumber = t.customerSequenceNumber where " +
      here() + " and " + condition +
      (department ? " and exists (select 1 from TicketLineItem d where d.ticketNumber = t.ticketNumber and " +
           "d.departmentID = " + department + ")" :
                    "") +
      " order by t.dueDate, t.ticketNumber"),
    function(field) {
      return {
        number: field("ticketNumber"),
        invoice: field("invoiceNumber"),
        due: field("dueDate"),
        time: field("pickupTime") || "",
        name: field("name"),
        rack: field("rack"),
        pieces: (field("pieces") || 0) - (field("gone") || 0),
        gone: field("gone") || 0,
        departments: field("firstDepartment") === field("lastDepartment") ?
          field("firstDepartment") || "" :
          field("firstDepartment") + ", " + field("lastDepartment")
      };
    });
};
