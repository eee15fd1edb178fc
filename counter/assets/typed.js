// What a clerk means by what is typed: "5 shirts", "2 pan", "navy".
(function() {
"use strict";

function nameOn(button) { return button.querySelector("span").textContent.trim(); }

function plain(words) { return words.normalize("NFD").replace(/[\u0300-\u036f]/g, "").toLowerCase(); }
// Every word begins a word of the name.
function fits(name, words) {
  var own = plain(name).split(/[\s-]+/);
  return words.every(function(word) { return own.some(function(one) { return one.indexOf(word) === 0; }); });
}

// {count, words, shown, item}: a button on the screen, or an item of the price list, which are [id, name].
// What is on the screen goes before the whole price list.
function meant(typed, items) {
  var split = /^(\d{1,3})\s*[x\u00d7*]?\s*(.*)$/.exec(typed),
      words = plain(split ? split[2] : typed).split(/\s+/).filter(Boolean);
  var found = { count: split ? split[1] : "", words: words };
  if (!words.length) return found;
  var buttons = Array.from(document.querySelectorAll("#panel .pli"));
  // A name that begins so goes before one that only has such a word.
  [function(name) { return plain(name).indexOf(words[0]) === 0; }, function() { return true; }].forEach(
    function(isFirst) {
      if (found.shown || found.item) return;
      found.shown = buttons.find(function(one) { return isFirst(nameOn(one)) && fits(nameOn(one), words); });
      found.item = items.find(function(one) { return isFirst(one[1]) && fits(one[1], words); });
    });
  return found;
}

window.counterTyped = {
  meant: meant,
  nameOn: nameOn
};
})();
