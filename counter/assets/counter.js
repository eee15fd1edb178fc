// What every page of the counter does: searching while typing, doing a thing once, pressing with the keyboard.
(function () {
  "use strict";
  var token = document.querySelector("meta[name=request-token]").content;

  // A second press of a button does nothing while the first is under way.
  document.addEventListener("submit", function (event) {
    if (event.defaultPrevented) return;
    if (event.target.dataset.sent) return event.preventDefault();
    event.target.dataset.sent = "yes";
    setTimeout(function () { delete event.target.dataset.sent; }, 4000);
  });

  var box = document.getElementById("q");
  var found = document.getElementById("found");
  var waiting, asked = 0;
  function search() {
    clearTimeout(waiting);
    waiting = setTimeout(function () {
      var mine = ++asked;
      fetch("/?part=1&q=" + encodeURIComponent(box.value)).then(function (answer) { return answer.ok ? answer.text() : ""; }).then(function (list) {
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
  var pressable = ".button:not(a):not(button), .command, .coupon, .id-group-button, .duedate_button, .new-heatseal, .lineitem, .si_view";
  function dressed(place) {
    place.querySelectorAll(pressable).forEach(function (one) {
      one.tabIndex = 0;
      one.setAttribute("role", "button");
      if (/(^|\s)(plisel|selected|sel_pref|sel_discount|due-date|new-heatseal-selected)(\s|$)/.test(one.className)) one.setAttribute("aria-pressed", "true");
    });
  }
  document.addEventListener("keydown", function (event) {
    if ((event.key === "Enter" || event.key === " ") && event.target.getAttribute("role") === "button" && event.target.tagName !== "BUTTON") {
      event.preventDefault();
      event.target.click();
    }
  });

  document.querySelectorAll("[data-print]").forEach(function (one) { one.addEventListener("click", function () { window.print(); }); });

  function said(words) { document.getElementById("said").textContent = words; }

  // With a number the host does it once, however often it arrives.
  function post(path, values, number) {
    var headers = { "Content-Type": "application/json", "X-Request-Token": token };
    if (number) headers["X-Request-Number"] = number;
    return fetch(path, { method: "POST", headers: headers, body: JSON.stringify(values) }).then(function (answer) {
      if (!answer.ok) throw new Error("The counter answered " + answer.status + ".");
      return answer.json();
    });
  }

  // Fragments carry styles of their own, which the security policy does not admit: they are kept as data. The focus
  // stays where it was: on the same thing, or on what stands in its place.
  function put(place, fragment) {
    var focusable = "a, button, input, select, textarea, [tabindex]";
    var held = place.contains(document.activeElement) ? document.activeElement : null;
    var at = held ? Array.prototype.indexOf.call(place.querySelectorAll(focusable), held) : -1;
    place.innerHTML = fragment.replace(/ style="/g, " data-style=\"");
    dressed(place);
    if (!held) return;
    var now = place.querySelectorAll(focusable);
    var again = (held.id && document.getElementById(held.id)) || now[Math.min(at, now.length - 1)];
    if (again) again.focus({ preventScroll: true });
  }

  window.counter = { post: post, put: put, said: said, dressed: dressed };
})();
