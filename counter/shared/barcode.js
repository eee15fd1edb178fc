// Code 128 as a drawing. Letters, digits and signs of ASCII; an even number of digits takes half the width.
var html = Server.include("shared/html.js");
var h = html.tag;

// Widths of bars and gaps in turn, by a sign's value. The last three are the beginnings; the end has a bar
// more.
// clang-format off
var widths = [
  "212222 222122 222221 121223 121322 131222 122213 122312 132212 221213 221312 231212 112232 122132",
  "122231 113222 123122 123221 223211 221132 221231 213212 223112 312131 311222 321122 321221 312212",
  "322112 322211 212123 212321 232121 111323 131123 131321 112313 132113 132311 211313 231113 231311",
  "112133 112331 132131 113123 113321 133121 313121 211331 231131 213113 213311 213131 311123 311321",
  "331121 312113 312311 332111 314111 221411 431111 111224 111422 121124 121421 141122 141221 112214",
  "112412 122114 122411 142112 142211 241211 221114 413111 241112 134111 111242 121142 121241 114212",
  "124112 124211 411212 421112 421211 212141 214121 412121 111143 111341 131141 114113 114311 411113",
  "411311 113141 114131 311141 411131 211412 211214 211232"
].join(" ").split(" ");
// clang-format on
var end = "2331112", beginLetters = 104, beginDigits = 105;

// The signs' values: the beginning, the text, the check sum.
function values(text) {
  var isDigits = /^(\d\d)+$/.test(text), all = [isDigits ? beginDigits : beginLetters];
  for (var at = 0; at < text.length; at += isDigits ? 2 : 1)
    all.push(isDigits ? Number(text.substr(at, 2)) : text.charCodeAt(at) - 32);
  var sum = all.reduce(function(so, value, place) { return so + value * Math.max(place, 1); }, 0);
  return all.concat(sum % 103);
}

// `height` counts widths of the thinnest bar. Empty for what has a sign that the code does not know.
exports.of = function(text, height) {
  var code = String(text === null || text === undefined ? "" : text);
  if (!/^[ -~]{1,40}$/.test(code)) return "";
  var runs = values(code).map(function(value) { return widths[value]; }).join("") + end, path = "",
      x = 10;  // a margin of ten
  runs.split("").forEach(function(run, at) {
    if (at % 2 === 0) path += "M" + x + " 0h" + run + "v" + height + "h-" + run + "z";
    x += Number(run);
  });
  return h(
    "svg", {
      "class": "barcode",
      viewBox: "0 0 " + (x + 10) + " " + height,
      role: "img",
      "aria-label": "Barcode " + code,
      preserveAspectRatio: "none"
    },
    h("path", { d: path, "shape-rendering": "crispEdges" }));
};
