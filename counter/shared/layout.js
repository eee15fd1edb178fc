// What all pages have around them.
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var h = html.tag;

// The places of the shop that are always a press away: path and name.
exports.places = [
  ["/", "Customers"], ["/board", "Board"], ["/rack", "Rack"], ["/history", "Tickets"], ["/day", "Day"],
  ["/reports", "Reports"], ["/setup", "Shop"]
];

function link(path, name) {
  var isHere = path === "/" ? Request.path === "/" : Request.path.indexOf(path) === 0;
  return h("a", { href: path, "aria-current": isHere ? "page" : false }, name);
}

// The places, what is open at this counter, and who is at it.
function navigation() {
  var employee = desk.employee(), clock = Server.setting("clock");
  return h(
    "header", null,
    h("nav", { "aria-label": "Counter" }, exports.places.map(function(one) { return link(one[0], one[1]); }),
      desk.openWorks().map(function(one) { return link(one[1], one[2]); }),
      h("a", { "class": "employee", href: "/employee" }, employee ? employee.name : "Sign in"),
      h("a", { href: "/keys", "aria-label": "Keys" }, "?")),
    clock ? h("p", { "class": "strip-notice" }, "The clock of this counter stands still at " + clock + ".") :
            "");
}

// A page with its title and content. Options: `scripts`, names of assets; `styles`, the same; `plain`,
// without navigation; `isHeaded`, the content has a heading of its own.
exports.page = function(title, content, options) {
  var more = options || {};
  Response.write(
    "<!doctype html>\n",
    String(
      h("html", { lang: "en" },
        h("head", null, h("meta", { charset: "utf-8" }),
          h("meta", { name: "viewport", content: "width=device-width, initial-scale=1" }),
          h("meta", { name: "request-token", content: Request.token }),
          h("link", { rel: "icon", href: "/assets/icon.svg" }), h("title", null, title),
          ["counter.css"].concat(more.styles || []).map(function(name) {
            return h("link", { rel: "stylesheet", href: "/assets/" + name });
          }),
          ["counter.js"].concat(more.scripts || []).map(function(name) {
            return h("script", { src: "/assets/" + name, defer: true });
          })),
        h("body", null, h("a", { "class": "skip", href: "#main" }, "To the content"),
          more.plain ? "" : navigation(),
          h("main", { id: "main" }, more.isHeaded ? "" : h("h1", null, title), html.raw(content)),
          h("div", { id: "said", role: "status", "aria-live": "polite" })))),
    "\n");
};

// A form with one button: what it does, where it goes, and hidden values. `once` is for what must
// happen once however often the button is pressed or the request is sent.
exports.button = function(path, label, values, options) {
  var more = options || {};
  return String(
    h("form", { method: "post", action: path, "class": "one-button" }, html.raw(exports.token()),
      html.raw(more.once ? exports.once() : ""), html.raw(exports.hidden(values)),
      h("button", { "class": more.kind || false, "aria-label": more.said || false }, label)));
};

exports.hidden = function(values) {
  return String(html.all(Object.keys(values || {}).map(function(name) {
    return h("input", { type: "hidden", name: name, value: values[name] });
  })));
};

exports.token =
  function() { return String(h("input", { type: "hidden", name: "_token", value: Request.token })); };

// A number for what must happen once: the host answers a second request with it from memory.
exports.once = function() {
  function digits() { return Math.random().toString(36).substr(2, 10); }
  return String(h("input", { type: "hidden", name: "_number", value: digits() + digits() + digits() }));
};

// A notice with a way on, for a page that cannot show what was asked for.
exports.notice = function(title, words, path, label) {
  exports.page(
    title,
    html.all(
      h("p", { "class": "notice", role: "alert" }, words),
      h("p", null, h("a", { "class": "button main", href: path, autofocus: true }, label))));
};

// Questions before something is done: "yes" sends the form again, with the questions as what was answered.
exports.asked = function(title, questions, path, values, back, label) {
  var sent = { sure: questions.join(" ") };
  Object.keys(values).forEach(function(name) { sent[name] = values[name]; });
  exports.page(
    title,
    h("section", { "class": "paper" },
      h("ul", null, questions.map(function(one) { return h("li", null, one); })),
      h("div", { "class": "row" },
        html.raw(exports.button(path, "Yes, go on", sent, { kind: "main", once: true })),
        h("a", { "class": "button", href: back }, label))));
};

// What is open has to be finished first: something new would push it aside.
exports.unfinished = function(title, works) {
  exports.page(
    title,
    html.all(h("p", { "class": "notice" }, "Finish it or give it up first."), works.map(function(work) {
      return h(
        "div", { "class": "row" },
        h("a", { "class": "button main", href: work[1] }, "Back to the " + work[2].toLowerCase()),
        html.raw(exports.drop(work)));
    })));
};

exports.drop = function(work) {
  return exports.button(
    (work[0] === "invoice" ? "/ticket" : work[1]) + "/drop", "Give it up", exports.of(work[0]),
    { kind: "quiet" });
};

// The hidden value that says which work a form is about.
exports.of = function(work) { return { work: desk.numberOf(work) }; };
