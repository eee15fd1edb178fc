// Opens the drawer, or pays into it or out of it.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var drawer = Server.include("shared/drawer.js");

if (Request.method !== "POST") return Response.redirect("/day");
if (!desk.staffed()) return;
var form = Request.form, amount = text.dollars(form.amount), isOpening = form.act === "open",
    reason = text.clean(form.reason, 64).replace(/^\s+|\s+$/g, "");
function back(said) {
  Session.daySaid = said;
  Response.redirect("/day");
}
if (amount === null || (!isOpening && !amount))
  return back({ problem: "This is no amount: " + text.clean(form.amount, 20) });
if (!isOpening && (!reason || (form.type !== "I" && form.type !== "O")))
  return back({ problem: "Say what the money is for." });
var result = shop.change(
  function() { return isOpening ? drawer.open(amount) : drawer.move(form.type, amount, reason); });
back(result.problem ? result : {
  words: isOpening ? "The drawer is open with " + text.money(amount) + "." :
                     text.money(amount) + (form.type === "I" ? " paid in." : " paid out.")
});
