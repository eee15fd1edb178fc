// What all pages have around them.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");

var places = [["/", "Customers"], ["/ticket", "Ticket"], ["/pickup", "Pickup"]];

function navigation() {
  var employee = desk.employee();
  return places.map(function (place) {
    var here = place[0] === "/" ? Request.path === "/" : Request.path.indexOf(place[0]) === 0;
    return "<a href=\"" + place[0] + "\"" + (here ? " aria-current=\"page\"" : "") + ">" + place[1] + "</a>";
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
  var hidden = Object.keys(values || {}).map(function (name) {
    return "<input type=\"hidden\" name=\"" + name + "\" value=\"" + text.encoded(values[name]) + "\">";
  }).join("");
  return "<form method=\"post\" action=\"" + path + "\" class=\"one-button\">" +
         exports.token() + (more.once ? exports.once() : "") + hidden + "<button" + (more.kind ? " class=\"" + more.kind + "\"" : "") + ">" + text.encoded(label) + "</button></form>";
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

// Another ticket would push aside the one that is being written.
exports.unfinished = function () {
  exports.page("A ticket is still being written", "<p class=\"notice\">Save it or give it up before you begin another one.</p><div class=\"choices\">" +
               "<a class=\"button main\" href=\"/ticket\">Back to it</a>" + exports.button("/ticket/drop", "Give it up", {}) + "</div>");
};
