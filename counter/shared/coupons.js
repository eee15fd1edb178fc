// The coupons of a ticket: Session.coupons holds those that the customer has given, by discount. One that
// does not fit any more falls off and comes back when it fits again.
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");

function nameOf(id) {
  var found = Database.query(
    "select isnull(discountName, '') as name, isnull(validWithOtherOffer, 1) as beside from Discount " +
    "where discountID = " + id);
  return found.EOF ? null : { name: found.Fields("name").Value, isAlone: !found.Fields("beside").Value };
}

function isOn(invoice, id) { return tickets.lineOf(invoice, "itemType='CU' and lineItemId=" + id) > 0; }

// The offers of a ticket that is called up: its coupons, and what each discount took off when it was saved.
exports.takeUp = function(invoice) {
  var lines = invoice.lineItems.Clone();
  lines.Filter = "itemType='CU'";
  text.rows(
    lines,
    function(field) { Session.coupons[field("lineItemId")] = { name: field("itemName"), isOff: false }; });
  Session.storedDiscounts =
    text
      .rows(
        Database.query(
          "select l.lineItemName, sum(l.lineItemTotal) as amount, max(case d.discountSubType when 'FLAT' " +
          "then 1 else 0 end) as isFlat from TicketLineItem l " +
          "left join Discount d on d.discountID = l.lineItemID and d.discountType = l.ticketLineType " +
          "where l.ticketLineType in ('VI', 'CU', 'PR', 'RE') and l.ticketNumber = " + invoice.ticketNo +
          " group by l.lineItemName"),
        function(field) {
          return {
            name: field("lineItemName"),
            amount: text.cents(field("amount")),
            isFlat: field("isFlat") === 1
          };
        })
      .filter(function(one) { return one.amount; });
};

// What is said of stored discounts beside those of now, [{name, amount}]: a smaller one, and a flat one that
// was shared with the other tickets of its order and would be given once more.
exports.changes = function(discounts) {
  var away = Object.keys(Session.coupons)
               .filter(function(id) { return Session.coupons[id].isOff; })
               .map(function(id) { return Session.coupons[id].name; });
  return (Session.storedDiscounts || [])
    .filter(function(stored) { return away.indexOf(stored.name) < 0; })
    .map(function(stored) {
      var same = discounts.filter(function(one) { return one.name === stored.name; })[0],
          now = same ? same.amount : 0;
      var isTold = now < stored.amount - 0.001 || stored.isFlat && now > stored.amount + 0.001;
      return isTold ? stored.name + " was " + text.money(stored.amount) + " on this ticket and is " +
          text.money(now) + " now." :
                      "";
    })
    .filter(function(one) { return one; });
};

// All its lines: finishing spreads a coupon over departments.
exports.takeOff = function(invoice, id) {
  delete Session.coupons[id];
  for (var line; (line = tickets.lineOf(invoice, "itemType='CU' and lineItemId=" + id)) > 0;
       invoice.lineItems.Filter = 0)
    invoice.removeCoupon(line);
};

// A coupon that is on is taken off; another comes on where the first one admits it.
exports.press = function(invoice, id) {
  if (Session.coupons[id] || isOn(invoice, id)) return exports.takeOff(invoice, id);
  var coupon = nameOf(id);
  if (!invoice.isFirstCoupon() && (!invoice.validateCouponAdd() || coupon && coupon.isAlone))
    throw new Error("One of the offers does not stand beside others.");
  if (!coupon || !invoice.addCoupon(id)) throw new Error("This coupon takes nothing off this ticket.");
  Session.coupons[id] = { name: coupon.name, isOff: false };
};

// After a click: what fell off is tried again.
exports.keep = function(invoice) {
  Object.keys(Session.coupons).forEach(function(id) {
    if (!isOn(invoice, Number(id))) {
      if (!invoice.isInvoiceEmpty() && (invoice.isFirstCoupon() || invoice.validateCouponAdd())) {
        invoice.getQualifyingCoupons();
        invoice.addCoupon(Number(id));
      }
      invoice.lineItems.Filter = 0;
    }
    Session.coupons[id].isOff = !isOn(invoice, Number(id));
  });
};

// What is said of coupons that are given and take nothing off.
exports.notices = function() {
  return Object.keys(Session.coupons || {})
    .filter(function(id) { return Session.coupons[id].isOff; })
    .map(function(id) {
      return Session.coupons[id].name + " does not fit this ticket now; it comes back when it does.";
    });
};
