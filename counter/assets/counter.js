// What every page of the counter does: searching while typing, doing a thing once, pressing with the
// keyboard.
(function() {
"use strict";
var token = document.querySelector("meta[name=request-token]").content;

// A second press of a button does nothing while the first is under way.
document.addEventListener("submit", function(event) {
  if (event.defaultPrevented) return;
  if (event.target.dataset.sent) return event.preventDefault();
  event.target.dataset.sent = "yes";
  setTimeout(function() { delete event.target.dataset.sent; }, 4000);
});

var box = document.getElementById("q");
var found = document.getElementById("found-customers");
var waiting, asked = 0;
function search() {
  clearTimeout(waiting);
  waiting = setTimeout(function() {
    var mine = ++asked;
    fetch("/?part=1&q=" + encodeURIComponent(box.value))
      .then(function(answer) { return answer.ok ? answer.text() : ""; })
      .then(function(list) {
        if (mine === asked) found.innerHTML = list;
      });
  }, 120);
}
if (box && found) {
  box.addEventListener("input", search);
  // What was typed before this script had arrived.
  if (box.value !== box.defaultValue) search();
}

// Things that look like buttons are reached and pressed by keyboard like buttons.
var pressable = ".button:not(a):not(button), .command, .id-group-button, .new-heatseal, .lineitem, .si_view";
function dressed(place) {
  place.querySelectorAll("[data-style*='background-color: #']").forEach(function(one) {
    one.style.setProperty("--swatch", /background-color: (#\w+)/.exec(one.dataset.style)[1]);
    one.classList.add("swatch");
  });
  place.querySelectorAll(".item-upcharge-price").forEach(function(one) {
    one.setAttribute("aria-label", "New price of " + one.closest("tr").cells[1].textContent);
  });
  place.querySelectorAll(pressable).forEach(function(one) {
    one.tabIndex = 0;
    one.setAttribute("role", "button");
    if (/(^|\s)(plisel|selected|sel_pref|sel_discount|due-date|new-heatseal-selected)(\s|$)/.test(
          one.className))
      one.setAttribute("aria-pressed", "true");
  });
}
document.addEventListener("keydown", function(event) {
  if (
    (event.key === "Enter" || event.key === " ") && event.target.getAttribute("role") === "button" &&
    event.target.tagName !== "BUTTON") {
    event.preventDefault();
    event.target.click();
  }
});

// Keys that hold on every page: ? for help, Alt C for a customer, F9 for the one filled button.
document.addEventListener("keydown", function(event) {
  var field = /^(INPUT|SELECT|TEXTAREA)$/.test(event.target.tagName),
      main = document.querySelector("main .main");
  if (event.key === "?" && !field) location.href = "/keys";
  else if (event.altKey && event.code === "KeyC") location.href = "/";
  else if (event.key === "F9" && main && !document.querySelector(".desk")) main.click();
  else return;
  event.preventDefault();
});

document.querySelectorAll("[data-print]")
  .forEach(function(one) { one.addEventListener("click", function() { window.print(); }); });

function said(words) { document.getElementById("said").textContent = words; }

// With a number the host does it once, however often it arrives.
function post(path, values, number) {
  var headers = { "Content-Type": "application/json", "X-Request-Token": token };
  if (number) headers["X-Request-Number"] = number;
  return fetch(path, { method: "POST", headers: headers, body: JSON.stringify(values) }).then(json);
}

// What an answer holds; what the counter refuses, it says why.
function json(answer) {
  if (answer.ok) return answer.json();
  return answer.json().catch(function() { return {}; }).then(function(said) {
    var error = new Error(said.problem || "The counter answered " + answer.status + ". Load the page again.");
    error.answered = true;
    throw error;
  });
}
function get(path) { return fetch(path).then(json); }

// The focus stays where it was: on the same thing, or on what stands in its place. Where another list has
// come, it is on the list and not yet on one of its buttons, so that a second press does nothing.
function put(place, fragment) {
  var focusable = "a, button, input, select, textarea, [tabindex]";
  var held = place.contains(document.activeElement) && document.activeElement !== place ?
    document.activeElement :
    null;
  var at = held ? Array.prototype.indexOf.call(place.querySelectorAll(focusable), held) : -1;
  place.innerHTML = fragment;
  dressed(place);
  if (!held) return;
  var now = place.querySelectorAll(focusable);
  if (!held.id)
    return focus(now[Math.min(at, now.length - 1)] || place.closest("section").querySelector(focusable));
  place.tabIndex = -1;
  focus(document.getElementById(held.id) || place);
}
function focus(one) {
  if (one) one.focus({ preventScroll: true });
}

window.counter = {
  post: post,
  get: get,
  put: put,
  said: said,
  dressed: dressed,
  focus: focus
};
})();
