// Each strip is a page of its own, as long as what it says; a page's size can only be said in a style sheet.
(function() {
"use strict";
var margin = 1;  // millimetres, for what is rounded on the way to the printer
var sheet = Array.from(document.styleSheets).find(function(one) { return /print\.css/.test(one.href); });
document.querySelectorAll(".strip:not(.label)").forEach(function(strip, at) {
  var height = Math.ceil(strip.offsetHeight * 25.4 / 96) + margin;
  sheet.insertRule(
    "@page strip" + at + " { size: 80mm " + height + "mm; margin: 0; }", sheet.cssRules.length);
  strip.style.page = "strip" + at;
});
})();
