// The coupons that the tickets of the visit qualify for.
var till = Server.include("shared/till.js");

var session = till.meant(Request.query.work);
Response.json({ coupons: session ? Server.include("shared/till_screen.js").coupons(session) : "" });
