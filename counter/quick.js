// The quick drop-off screen: a count for each department.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var people = Server.include("shared/people.js");
var quicks = Server.include("shared/quick.js");
var h = html.tag;

if (!desk.staffed()) return;
var quick = Session.quick;
if (!quick) return layout.notice("Quick drop-off", "No bag is being taken in.", "/", "Find a customer");

var given = Session.quickGiven || { bags: [], note: "", problem: "", question: "" };
function counted(department) {
  var bag = given.bags.filter(function(one) { return one.department === department; })[0];
  return bag ? bag.pieces : 0;
}

var fields = quicks.departments(quick.priceListId).map(function(one, at) {
  var id = "pieces-" + one.id;
  return h("div", null, h("label", { "for": id }, one.name), h("input", {
             id: id,
             name: id,
             type: "number",
             min: 0,
             max: 999,
             inputmode: "numeric",
             value: counted(one.id),
             autofocus: at === 0 && !given.question
           }));
});

layout.page(
  "Quick drop-off",
  html.all(
    people.head(quick.custSeqNumber, "quick drop-off"),
    given.problem ? h("p", { "class": "problem", role: "alert" }, given.problem) : "",
    h("form", { method: "post", action: "/quick/save" }, html.raw(layout.token()), html.raw(layout.once()),
      html.raw(layout.hidden(layout.of("quick"))),
      given.question ? html.all(
                         h("p", { "class": "problem", role: "alert" }, given.question),
                         html.raw(layout.hidden({ sure: given.question }))) :
                       "",
      h("div", { "class": "sheets counts" }, fields),
      h("label", { "for": "notes" }, "Note, up to " + quicks.noteSize + " letters"),
      h("textarea", { id: "notes", name: "notes" }, given.note),
      h("p", { "class": "notice" }, "The price is known when the bag is itemised."),
      h("div", { "class": "finish" },
        h("button", { "class": "main" }, given.question ? "Yes, take in" : "Take in"))),
    html.raw(layout.button("/quick/drop", "Give up", layout.of("quick"), { kind: "quiet" }))),
  { isHeaded: true });
