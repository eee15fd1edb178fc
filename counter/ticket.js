// The entry screen: on the left what can be added, on the right the ticket, whose total, day and Finish are
// always there.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var people = Server.include("shared/people.js");
var fragments = Server.include("shared/fragments.js");
var tickets = Server.include("shared/tickets.js");
var h = html.tag;

if (!desk.staffed()) return;
var invoice = tickets.meant();
if (!invoice) return layout.notice("Ticket", "No ticket is being written.", "/", "Find a customer");
if (Session.finished) return Response.redirect("/finished");

var department = text.whole(Request.query.department) || invoice.getFirstDeptId() || "";
var paper = fragments.paper(invoice, 0);

function tool(name, label, said) {
  return h("button", { type: "button", "data-tool": name, "aria-label": said || false }, label);
}

// Opens over the screen and closes with Escape.
function sheet(id, title, content) {
  return h(
    "dialog", { id: id + "-sheet", "aria-label": title },
    h("div", { "class": "headline" }, h("h2", null, title),
      h("button", { type: "button", "class": "quiet", "data-close": true }, "Close")),
    content);
}
function part(id, fragment) { return h("div", { id: id }, html.raw(fragment || "")); }

var pick =
  h("section", { "class": "pick", "aria-label": "Price list" },
    h("div", { "class": "departments" }, html.raw(invoice.htmlDepartments(department))),
    h("form", { id: "say-form", autocomplete: "off", role: "search" },
      h("div", { "class": "pad", role: "group", "aria-label": "Pieces" },
        ["2", "3", "4", "5", "6", "10"].map(function(one) {
          return h(
            "button", { type: "button", "data-count": one, "aria-label": one + " pieces of the next item" },
            one + "\u00d7");
        })),
      h("div", null, h("label", { "for": "count" }, "Pieces"),
        h("input", { id: "count", type: "number", min: 1, max: 999, inputmode: "numeric", value: 1 })),
      h("div", { "class": "wide" }, h("label", { "for": "say" }, "Item, color, or a seal"),
        h("input",
          { id: "say", name: "say", maxlength: 60, placeholder: "5 shirts", "aria-describedby": "found" }),
        h("div", { id: "found", role: "status" })),
      h("button", { "class": "add" }, "Add"),
      h("label", { "class": "check" }, h("input", { id: "as-redo", type: "checkbox" }), " Redo")),
    part("groups"),
    h("div", { id: "filter", hidden: true }, h("label", { "for": "brand" }, "Brand begins with"),
      h("input", { id: "brand", autocomplete: "off" })),
    part("panel", fragments.panel(invoice, "it", department, 0, "")));

var tools =
  h("div", { "class": "row", id: "line-tools", hidden: true }, tool("fewer", "\u2212", "One piece less"),
    tool("more", "+", "Another like this"), tool("different", "Another, different"), tool("notes", "Note"),
    tool("price", "Price"), tool("redo", "Redo"), tool("seal", "Heat seal"), tool("remove", "Remove"));

var side = h(
  "section", { "class": "side paper", "aria-label": "Ticket" },
  h("p", { id: "problem", "class": "problem", role: "alert", hidden: true }),
  h("div", { id: "notices", role: "status" }, html.raw(paper.notices)),
  h("div", { id: "undo", "class": "row", hidden: !paper.undo }, h("span", null, paper.undo),
    h("button", { type: "button", "data-undo": true }, "Undo")),
  part("seals", paper.seals),
  h("button", { id: "seal-off", "class": "quiet", hidden: !paper.seals }, "Put the first seal away"),
  part("lines", paper.lines), tools,
  h("form", { id: "entry", hidden: true }, h("label", { "for": "entered" }),
    h("input", { id: "entered", autocomplete: "off" }), h("button", null, "OK"),
    h("button", { type: "button", "data-cancel": true }, "Cancel")),
  part("offers", paper.offers), part("sums", paper.sums),
  h("div", { "class": "row extras" },
    [
      ["day", "Day"], ["coupons", "Coupons"], ["charge", "Charge"], ["preferences", "Preferences"],
      ["similar", "Similar"]
    ].map(function(one) { return h("button", { type: "button", "data-open": one[0] + "-sheet" }, one[1]); })),
  h("div", { "class": "bar" }, part("bar", paper.bar),
    h("form", { method: "post", action: "/ticket/finish" }, html.raw(layout.token()),
      html.raw(layout.hidden(layout.of("invoice"))),
      h("button", { "class": "main", id: "finish-button" }, "Finish"))));

layout.page(
  "Ticket",
  html.all(
    people.head(invoice.custSeqNumber, invoice.isAdd ? "" : "invoice " + invoice.invoiceNo),
    h("div", {
      "class": "desk",
      "data-department": department,
      "data-work": desk.numberOf("invoice"),
      "data-items": JSON.stringify(fragments.items(invoice)),
      "data-scanner": JSON.stringify(desk.scanner())
    },
      pick, side),
    sheet("day", "Day", part("due")),
    sheet("coupons", "Coupons", h("div", { id: "coupons", "class": "choices" }, html.raw(paper.coupons))),
    sheet("charge", "Charge", part("charge", invoice.htmlAddChargeDetail())),
    sheet(
      "preferences", "Preferences",
      html.all(
        part("preferences", paper.preferences), part("preference-list", invoice.htmlPreferenceList()))),
    sheet("similar", "Similar tickets", html.all(part("similar"), part("preview"))),
    h("div", { "class": "away" },
      html.raw(layout.button("/ticket/drop", "Give up", layout.of("invoice"), { kind: "quiet" })))),
  { scripts: ["desk.js", "scanner.js", "typed.js", "entry.js"], isHeaded: true });
