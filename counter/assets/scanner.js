// A scanner of heat seals, which types like a clerk, only faster; how this shop's types is said on the entry
// screen.
(function() {
"use strict";
var scanner = JSON.parse(document.querySelector("[data-scanner]").dataset.scanner);

function isSeal(typed) {
  return typed.length >= scanner.minimum && /\d/.test(typed) && /^[A-Za-z0-9-]+$/.test(typed);
}
function bare(typed) {
  return scanner.prefix && typed.indexOf(scanner.prefix) === 0 ? typed.substr(scanner.prefix.length) : typed;
}

function isField(one) {
  return one && /^(INPUT|SELECT|TEXTAREA)$/.test(one.tagName) && !/^(checkbox|radio|button)$/.test(one.type);
}

// Typed by a scanner into another field, it is known by its prefix or by its speed, which is learnt from each
// scan: the slowest gap of those before, with something to spare.
var gaps = [], run = "", last = 0, field, before;
function slowest() { return Math.max(Number(localStorage.getItem("scannerGap")) || 0, 100); }
function isScan() {
  if (scanner.prefix) return run.indexOf(scanner.prefix) === 0;
  return isSeal(run) && gaps.every(function(gap) { return gap <= slowest(); });
}
function learn() {
  var gap = Math.max.apply(null, gaps);
  if (gap > 0 && gap < 200) localStorage.setItem("scannerGap", String(Math.max(slowest(), gap * 1.5)));
}

// `own` is the field that takes anything, `form` its form; scanned(seal, field) is told of a seal that was
// typed into another field, which has by then what it had before.
function listen(own, form, scanned) {
  // Typed where there is no field, anything goes into the one for it: no key of it presses a button.
  document.addEventListener("keydown", function(event) {
    if (
      event.key.length !== 1 || event.key === " " || event.ctrlKey || event.metaKey || event.altKey ||
      event.key === "?" || document.querySelector("dialog[open]") || isField(document.activeElement))
      return;
    own.focus({ preventScroll: true });
  }, true);

  document.addEventListener("keydown", function(event) {
    if (event.key.length !== 1 && event.key !== scanner.suffix) return;
    var now = event.timeStamp;
    if (now - last > Math.max(slowest(), 250) || document.activeElement !== field) {
      run = "";
      gaps = [];
      field = document.activeElement;
      before = field && field.value;
    } else if (run) gaps.push(now - last);
    last = now;
    if (event.key.length === 1) {
      run += event.key;
      return;
    }
    var isOwn = field === own, isKnown = run.length >= scanner.minimum && isScan();
    if (isKnown) learn();
    if (isKnown && !isOwn && isField(field)) {
      event.preventDefault();
      event.stopPropagation();
      field.value = before;
      scanned(bare(run), field);
    } else if (isOwn && event.key !== "Enter") {
      event.preventDefault();
      form.requestSubmit();
    }
    run = "";
  }, true);
}

window.counterScanner = {
  isSeal: isSeal,
  bare: bare,
  listen: listen
};
})();
