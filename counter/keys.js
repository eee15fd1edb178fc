// What can be done from the keyboard.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var h = html.tag;

var keys = [
  [
    "Everywhere",
    [
      ["Alt C", "Find a customer"], ["?", "This page"], ["Tab, Enter", "To the next thing, press it"],
      ["Escape", "Close what has opened"]
    ]
  ],
  [
    "Ticket",
    [
      ["5 shirts Enter", "Five of the first item that begins so; every word may be short: 2 pan"],
      ["navy Enter", "A color, pattern, upcharge or brand of the chosen garment"],
      ["7 Enter", "Seven pieces of the next item"], ["Alt 1 to 9", "Department"], ["F9", "Finish, then Save"],
      ["a seal Enter", "As a scanner sends it, from anywhere"]
    ]
  ],
  ["Till", [["Enter", "Take the amount"], ["F9", "Pay"]]]
];
layout.page("Keys", html.all(keys.map(function(group) {
  return h(
    "section", null, h("h2", null, group[0]),
    h("table", null, h("tbody", null, group[1].map(function(one) {
        return h("tr", null, h("th", { scope: "row" }, h("kbd", null, one[0])), h("td", null, one[1]));
      }))));
})));
