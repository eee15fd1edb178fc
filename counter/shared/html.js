// Mark-up, safe by default: a text that is put into a tag is encoded, mark-up that was made here or by the
// library is not encoded again.
//
//   var h = Server.include("shared/html.js").tag;
//   h("p", { "class": "notice", hidden: !words }, words, h("strong", null, total))
var text = Server.include("shared/text.js");

function Markup(written) { this.written = written; }
Markup.prototype.toString = function() { return this.written; };

// What is mark-up already: a fragment of the library.
exports.raw = function(fragment) { return new Markup(String(fragment)); };

var empty = /^(input|br|hr|link|meta|img)$/;

function inner(child) {
  if (child === null || child === undefined || child === false || child === "") return "";
  if (child instanceof Markup) return child.written;
  if (Array.isArray(child)) return child.map(inner).join("");
  return text.encoded(child);
}

// True stands for an attribute without a value; null, undefined and false leave it out.
function attributes(values) {
  return Object.keys(values || {})
    .map(function(name) {
      var value = values[name];
      if (value === null || value === undefined || value === false) return "";
      return value === true ? " " + name : " " + name + "=\"" + text.encoded(value) + "\"";
    })
    .join("");
}

// tag(name, attributes, children...)
exports.tag = function(name, values) {
  var children = Array.prototype.slice.call(arguments, 2);
  return new Markup(
    "<" + name + attributes(values) + ">" + (empty.test(name) ? "" : inner(children) + "</" + name + ">"));
};

// Several parts as one.
exports.all = function() { return new Markup(inner(Array.prototype.slice.call(arguments))); };
