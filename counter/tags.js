// The tags that go on the garments, one a piece: on the strip of 80 mm, or on labels of 57 x 32 mm.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var barcode = Server.include("shared/barcode.js");
var receipts = Server.include("shared/receipts.js");
var h = html.tag;

// The shop's own paper: --set tagPaper=label. Either can be asked for.
var paper = Request.query.paper || Server.setting("tagPaper"), isLabel = paper === "label",
    numbers = receipts.asked();

function tag(ticket, piece) {
  var code = piece.tag ? piece.tag.number : piece.seal;
  return h(
    "section", { "class": isLabel ? "strip label" : "strip tag", "aria-label": "Tag " + code },
    h("div", { "class": "headline" }, h("strong", null, ticket.invoice),
      h("span", null, piece.of ? piece.at + " of " + piece.of : "")),
    h("p", { "class": "name" }, ticket.customer),
    h("p", null, piece.name, piece.color ? ", " + piece.color : ""),
    h("div", { "class": "headline" }, h("strong", null, text.day(ticket.due)),
      h("span", null, piece.tag ? piece.tag.color : "")),
    barcode.of(code, 24), h("p", { "class": "code" }, code));
}

var tags = [];
numbers.map(receipts.header).filter(function(one) { return one; }).forEach(function(ticket) {
  receipts.pieces(ticket.number)
    .filter(function(piece) { return piece.tag; })
    .forEach(function(piece) { tags.push(tag(ticket, piece)); });
});
if (!tags.length)
  return layout.notice(
    "Tags", "These tickets have no tags: every piece has a heat seal, or nothing was itemised.", "/",
    "Find a customer");
var other = isLabel ? ["strip", "On the strip"] : ["label", "On labels"];
layout.page(
  "Tags",
  html.all(
    h("div", { "class": "choices" },
      h("button", { "class": "main", "data-print": true, autofocus: true }, "Print"),
      h("a", { "class": "button", href: "/tags?paper=" + other[0] + "&tickets=" + numbers.join("-") },
        other[1]),
      h("a", { "class": "button", href: "/" }, "Next customer")),
    tags),
  { styles: ["print.css"], scripts: ["print.js"] });
