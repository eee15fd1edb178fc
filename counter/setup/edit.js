// One row of the shop's data: entered, changed or taken away.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var setup = Server.include("shared/setup.js");
var h = html.tag;

if (!desk.staffed() || !shop.allowed("setup")) return;
var isPost = Request.method === "POST", asked = isPost ? Request.form : Request.query;
var what = String(asked.what), kind = setup.kind(what), name = text.clean(asked.row, 80),
    of = text.whole(asked.of);
if (!kind || (what === "extras" && !of)) return Response.redirect("/setup");
var back = "/setup/list?what=" + what + (of ? "&of=" + of : "");

function checks(legend, choices, isOn, prefix) {
  return choices.length ?
    h("fieldset", { "class": "checks" }, h("legend", null, legend),
      choices.map(function(one) { return shop.check(prefix + one[0], one[1], isOn(one[0])); })) :
    "";
}

function input(field, one, links) {
  var rule = field[3] || {}, label = field[1] + (rule.note ? " (" + rule.note + ")" : ""),
      column = field[0].replace(/[\[\]]/g, "");
  if (field[2] === "links")
    return checks(
      field[1], setup.choices(field), function(id) { return links(field).indexOf(id) >= 0; }, field[0] + "-");
  var value = one.values[field[0]];
  if (field[2] === "rights")
    return checks(
      "May; nobody with any right lets everybody do all", shop.rights,
      function(word) { return value.split(" ").indexOf(word) >= 0; }, "right-");
  if (field[2] === "check") return shop.check(column, label, value === "1");
  if (field[2] === "choice") return shop.select(column, label, value, setup.choices(field));
  var more = { maxlength: rule.size || 20, required: !!rule.needed, autofocus: field === kind.fields[0] };
  if (field[2] === "day") more.type = "date";
  if (field[2] === "pin") more.type = "password";
  if (field[2] === "money" || field[2] === "percent") more.inputmode = "decimal";
  if (field[2] === "whole" || field[2] === "pin") more.inputmode = "numeric";
  return shop.field(column, label, value, more);
}

function shown(one, mark, links, problem, done) {
  var wide = kind.fields.filter(function(field) { return field[2] === "links" || field[2] === "rights"; }),
      plain = kind.fields.filter(function(field) { return wide.indexOf(field) < 0; });
  layout.page(
    (name ? "Change " : "New ") + kind.one,
    html.all(
      done ? h("p", { "class": "done", role: "status" }, done) : "",
      shop.form(
        "/setup/edit", { what: what, row: name, of: of || "", mark: mark },
        html.all(
          shop.problem(problem),
          h("fieldset", null, h("legend", null, kind.title),
            plain.map(function(field) { return input(field, one, links); })),
          wide.map(function(field) { return input(field, one, links); }),
          h("div", { "class": "finish" },
            h("button", { "class": "main", name: "then", value: "list" }, "Save"),
            name ? "" : h("button", { name: "then", value: "more" }, "Save, and another"),
            h("a", { "class": "button quiet", href: back }, "Leave it")))),
      name && kind.removes ?
        html.raw(layout.button(
          "/setup/edit", "Take it away", { what: what, row: name, of: of || "", act: "remove" },
          { once: true, kind: "quiet" })) :
        ""),
    { styles: ["shop.css"] });
}

if (!isPost) {
  var one = name ? setup.byName(kind, name) : setup.blank(kind, of);
  if (!one) return layout.notice(kind.title, "This is not there any more.", back, "Back");
  return shown(
    one, name ? setup.mark(kind, one) : "",
    function(field) { return name ? setup.linked(field, one.row) : one.begins[field[0]]; }, "",
    Request.query.done ? "Saved." : "");
}
var form = Request.form, result = shop.change(function() {
  return form.act === "remove" ? setup.remove(what, name) : setup.save(what, name, String(form.mark), form);
});
if (result.problem && form.act === "remove") return layout.notice(kind.title, result.problem, back, "Back");
if (result.problem) {
  var given = setup.given(kind, form);
  return shown(given, String(form.mark), function(field) { return given.links[field[0]]; }, result.problem);
}
Response.redirect(
  form.then === "more" ? "/setup/edit?what=" + what + "&done=1" + (of ? "&of=" + of : "") : back);
