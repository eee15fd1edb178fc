// What all pages have around them.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");

// Customers, and what is open at this counter.
function navigation() {
  var employee = desk.employee();
  return [["", "/", "Customers"]].concat(desk.openWorks()).map(function (work) {
    var here = work[1] === "/" ? Request.path === "/" : Request.path.indexOf(work[1]) === 0;
    return "<a href=\"" + work[1] + "\"" + (here ? " aria-current=\"page\"" : "") + ">" + work[2] + "</a>";
  }).join("") + "<a class=\"employee\" href=\"/employee\">" + (employee ? text.encoded(employee.name) : "Sign in") + "</a>";
}

// A page with its title and content. Options: `scripts`, names of assets; `styles`, the same; `plain`, without navigation.
exports.page = function (title, content, options) {
  var more = options || {};
  var styles = ["counter.css"].concat(more.styles || []);
  var scripts = ["counter.js"].concat(more.scripts || []);
  Response.write("<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n",
    "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n",
    "<meta name=\"request-token\" content=\"", Request.token, "\">\n",
    "<link rel=\"icon\" href=\"/assets/icon.svg\">\n",
    "<title>", text.encoded(title), "</title>\n",
    styles.map(function (name) { return "<link rel=\"stylesheet\" href=\"/assets/" + name + "\">\n"; }).join(""),
    scripts.map(function (name) { return "<script src=\"/assets/" + name + "\" defer></script>\n"; }).join(""),
    "</head>\n<body>\n<a class=\"skip\" href=\"#main\">To the content</a>\n",
    more.plain ? "" : "<header><nav aria-label=\"Counter\">" + navigation() + "</nav></header>\n",
    "<main id=\"main\">\n<h1>", text.encoded(title), "</h1>\n", content, "\n</main>\n",
    "<div id=\"said\" role=\"status\" aria-live=\"polite\"></div>\n</body>\n</html>\n");
};

// A form with one button: what it does, where it goes, and hidden values. `once` is for what must
// happen once however often the button is pressed or the request is sent.
exports.button = function (path, label, values, options) {
  var more = options || {};
  return "<form method=\"post\" action=\"" + path + "\" class=\"one-button\">" +
         exports.token() + (more.once ? exports.once() : "") + exports.hidden(values) + "<button" + (more.kind ? " class=\"" + more.kind + "\"" : "") + ">" + text.encoded(label) + "</button></form>";
};

exports.hidden = function (values) {
  return Object.keys(values || {}).map(function (name) {
    return "<input type=\"hidden\" name=\"" + name + "\" value=\"" + text.encoded(values[name]) + "\">";
  }).join("");
};

exports.token = function () {
  return "<input type=\"hidden\" name=\"_token\" value=\"" + Request.token + "\">";
};

// A number for what must happen once: the host answers a second request with it from memory.
exports.once = function () {
  function digits() { return Math.random().toString(36).substr(2, 10); }
  return "<input type=\"hidden\" name=\"_number\" value=\"" + digits() + digits() + digits() + "\">";
};

// A notice with a way on, for a page that cannot show what was asked for.
exports.notice = function (title, words, path, label) {
  exports.page(title, "<p class=\"notice\">" + text.encoded(words) + "</p><p><a class=\"button\" href=\"" + path + "\">" +
               text.encoded(label) + "</a></p>");
};

// What is open has to be finished first: something new would push it aside.
exports.unfinished = function (title, works) {
  exports.page(title, "<p class=\"notice\">Finish it or give it up first.</p>" + works.map(function (work) {
    return "<div class=\"choices\"><a class=\"button main\" href=\"" + work[1] + "\">Back to the " + work[2].toLowerCase() + "</a>" + exports.drop(work) + "</div>";
  }).join(""));
};

exports.drop = function (work) {
  return exports.button((work[0] === "invoice" ? "/ticket" : work[1]) + "/drop", "Give it up", exports.of(work[0]), { kind: "quiet" });
};

// The hidden value that says which work a form is about.
exports.of = function (work) {
  return { work: desk.numberOf(work) };
};
