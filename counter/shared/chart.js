// Charts as SVG without any script: bars side by side for days, one below the other for names. The table
// beside a chart says the same in words, so the picture has one sentence for who does not see it.
var html = Server.include("shared/html.js");
var h = html.tag;

function greatest(bars) {
  return bars.reduce(function(most, one) { return Math.max(most, one.value); }, 0);
}
function at(number) { return Math.round(number * 10) / 10; }

function frame(width, height, said, parts) {
  return h(
    "svg", { "class": "chart", viewBox: "0 0 " + width + " " + height, role: "img", "aria-label": said },
    parts);
}

// Bars are {name, value, words}; what is not above nothing has no bar.
exports.columns = function(bars, said) {
  var width = 960, height = 200, floor = 172, step = width / Math.max(bars.length, 1), most = greatest(bars);
  var each = Math.ceil(bars.length / 12);
  return frame(
    width, height, said,
    bars
      .map(function(one, index) {
        var size = most > 0 ? Math.max(one.value, 0) / most * (floor - 20) : 0, x = index * step;
        return h(
          "g", null, h("title", null, one.name + ": " + one.words), h("rect", {
            x: at(x + step * 0.1),
            y: at(floor - size),
            width: at(Math.min(step * 0.8, 64)),
            height: at(size)
          }),
          index % each === 0 ? h("text", { x: at(x + step * 0.1), y: floor + 20 }, one.name) : "");
      })
      .concat(h("line", { x1: 0, y1: floor, x2: width, y2: floor })));
};

exports.bars = function(bars, said) {
  var row = 28, name = 240, width = 960, most = greatest(bars);
  return frame(width, Math.max(bars.length, 1) * row, said, bars.map(function(one, index) {
    var y = index * row, size = most > 0 ? Math.max(one.value, 0) / most * (width - name - 120) : 0;
    return h(
      "g", null, h("text", { x: name - 8, y: y + 19, "class": "end" }, one.name),
      h("rect", { x: name, y: y + 5, width: at(size), height: row - 10 }),
      h("text", { x: at(name + size + 8), y: y + 19 }, one.words));
  }));
};
