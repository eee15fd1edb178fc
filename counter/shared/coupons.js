// The coupons of a ticket: Session.coupons holds those that the customer has given, by discount. One that does not fit any
// more falls off and comes back when it fits again.
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");

function nameOf(id) {
  var found = Database.query("select isnull(discountName, '') as name, isnull(validWithOtherOffer, 1) as beside from Discount where discountID = " + id);
  return found.EOF ? null : { name: found.Fields("name").Value, isAlone: !found.Fields("beside").Value };
}

function isOn(invoice, id) { return tickets.lineOf(invoice, "itemType='CU' and lineItemId=" + id) > 0; }

// All its lines: finishing spreads a coupon over departments.
exports.takeOff = function (invoice, id) {
  delete Session.coupons[id];
  for (var line; (line = tickets.lineOf(invoice, "itemType='CU' and lineItemId=" + id)) > 0; invoice.lineItems.Filter = 0) invoice.removeCoupon(line);
};

// A coupon that is on is taken off; another comes on where the first one admits it.
exports.press = function (invoice, id) {
  if (Session.coupons[id] || isOn(invoice, id)) return exports.takeOff(invoice, id);
  var coupon = nameOf(id);
  if (!invoice.isFirstCoupon() && (!invoice.validateCouponAdd() || coupon && coupon.isAlone)) throw new Error("One of the offers does not stand beside others.");
  if (!coupon || !invoice.addCoupon(id)) throw new Error("This coupon takes nothing off this ticket.");
  Session.coupons[id] = { name: coupon.name, isOff: false };
};

// After a click: what fell off is tried again.
exports.keep = function (invoice) {
  Object.keys(Session.coupons).forEach(function (id) {
    if (!isOn(invoice, Number(id))) {
      if (!invoice.isInvoiceEmpty() && (invoice.isFirstCoupon() || invoice.validateCouponAdd())) invoice.addCoupon(Number(id));
      invoice.lineItems.Filter = 0;
    }
    Session.coupons[id].isOff = !isOn(invoice, Number(id));
  });
};

// What is said of coupons that are given and take nothing off.
exports.notices = function () {
  return Object.keys(Session.coupons || {}).filter(function (id) { return Session.coupons[id].isOff; }).map(function (id) {
    return Session.coupons[id].name + " does not fit this ticket now; it comes back when it does.";
  });
};
