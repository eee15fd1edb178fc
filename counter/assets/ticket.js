// The entry screen: every click is sent, and the parts that changed are put in place.
(function () {
  "use strict";
  var at = { group: "it", department: document.querySelector(".desk").dataset.department, line: 0, isPrompted: false };
  function place(id) { return document.getElementById(id); }

  // ---- what comes from the counter

  function show(answer) {
    at.line = answer.line;
    ["lines", "totals", "preferences", "seals", "coupons"].forEach(function (part) { counter.put(place(part), answer[part]); });
    place("problem").hidden = !answer.problem;
    place("problem").textContent = answer.problem;
    place("line-tools").hidden = !at.line;
    place("due").innerHTML = "";
    var total = document.querySelector("#totals .total:last-child .value");
    counter.said(answer.problem || (total ? "Total " + total.textContent : ""));
    if (at.group !== "it" && !at.line) at.group = "it";
    if (answer.question) enter(answer.question, "", function (value) { click("answer", { value: value }); });
  }

  function failed(error) {
    place("problem").hidden = false;
    place("problem").textContent = error.message;
    counter.said(error.message);
  }

  // One click at a time, in the order of the clerk's hands.
  var line = Promise.resolve();
  function click(name, values) {
    var sent = Object.assign({ click: name, line: at.line }, values);
    line = line.then(function () { return counter.post("/ticket/act", sent); }).then(show).then(panel).catch(failed);
    return line;
  }

  function asked(values) {
    return fetch("/ticket/panel?" + new URLSearchParams(values)).then(function (answer) {
      if (!answer.ok) throw new Error("The counter answered " + answer.status + ".");
      return answer.json();
    });
  }

  function panel() {
    return asked({ group: at.group, department: at.department, line: at.line, filter: place("brand").value }).then(function (answer) {
      counter.put(place("panel"), answer.panel);
      counter.put(place("groups"), answer.groups);
      document.querySelectorAll(".id-group-button").forEach(function (one) { one.setAttribute("aria-pressed", String(groupOf(one) === at.group)); });
      place("filter").hidden = at.group !== "br";
    });
  }

  // The bar's own class of the chosen button says nothing here: it is on all of them.
  function groupOf(button) { return (/\bsel-(\w*)/.exec(button.className) || [])[1] || "pr"; }

  function turn(group) {
    at.group = group;
    at.isPrompted = false;
    return panel().catch(failed);
  }

  // ---- one value keyed in: a note, a price

  var entering;
  function enter(label, value, done) {
    entering = done;
    document.querySelector("#entry label").textContent = label;
    place("entered").value = value;
    place("entry").hidden = false;
    place("entered").focus();
  }
  place("entry").addEventListener("submit", function (event) {
    event.preventDefault();
    place("entry").hidden = true;
    entering(place("entered").value);
  });
  document.querySelector("[data-cancel]").addEventListener("click", function () { place("entry").hidden = true; });

  function lineText(part) {
    var found = document.querySelector(".lineitem.selected ." + part);
    return found ? found.textContent : "";
  }
  function pieces() { return Number(lineText("quantity")) || 1; }

  var tools = {
    fewer:  function () { if (pieces() > 1) click("quantity", { quantity: pieces() - 1 }); },
    more:   function () { click("quantity", { quantity: pieces() + 1 }); },
    notes:  function () { enter("Note", lineText("notes"), function (value) { click("notes", { value: value }); }); },
    price:  function () { enter("Unit price", "", function (value) { click("price", { value: value }); }); },
    redo:   function () { click("redo", {}); },
    remove: function () { click("remove", {}); }
  };

  // ---- what the library's fragments mean when they are pressed; the first row that fits counts

  // The price list says by "fin" where it asks for nothing more about a garment; else the next pick list comes by
  // itself. Whoever turns to a list by hand stays there.
  var prompts = { it: "up", up: "co" };
  function next(group, one) {
    if (group !== "it" && !at.isPrompted) return group;
    at.isPrompted = !one.classList.contains("fin") && group in prompts;
    return at.isPrompted ? prompts[group] : "it";
  }

  var descriptors = { co: "color", pa: "pattern", br: "brand", up: "upcharge" };
  var presses = [
    ["#line-tools [data-tool]", function (one) { tools[one.dataset.tool](); }],
    [".edit-line-price", tools.price],
    [".edit-line-notes", tools.notes],
    [".department[departmentid]", function (one) {
      document.querySelectorAll(".departments .selected").forEach(function (other) { other.classList.remove("selected"); });
      one.classList.add("selected");
      at.department = one.getAttribute("departmentid");
      at.line = 0;
      turn("it");
    }],
    [".id-group-button", function (one) { turn(groupOf(one)); }],
    [".li-it", function (one) {
      var count = place("count").value, redo = place("as-redo").checked;
      place("count").value = 1;
      place("as-redo").checked = false;
      at.group = next("it", one);
      click("item", { id: one.id.substr(2), quantity: count, redo: redo });
    }],
    [".pli", function (one) {
      var group = one.id.substr(0, 2), on = one.classList.contains("plisel");
      if (!on) at.group = next(group, one);
      // Upcharges are counted for each piece, descriptors for all of them.
      click(descriptors[group], { id: one.id.substr(2), name: one.textContent.trim(), group: group, on: on, quantity: group === "up" ? 1 : pieces() });
    }],
    [".lineitem", function (one) {
      at.line = Number(one.getAttribute("lineid"));
      document.querySelectorAll(".lineitem.selected").forEach(function (other) { other.classList.remove("selected"); });
      one.classList.add("selected");
      place("line-tools").hidden = false;
      turn(at.group === "it" ? "up" : at.group);
    }],
    [".duedate_button", function (one) { due(one.getAttribute("deptid"), ""); }],
    [".dept-due", function (one) {
      var date = one.getAttribute("date"), department = one.getAttribute("deptid");
      if (date === "prev" || date === "next") return due(department, Number(one.parentNode.getAttribute("page")) + (date === "next" ? 1 : -1));
      if (department) click("deptDue", { department: department, value: date });
      else click("ticketDue", { value: date });
    }],
    [".coupon", function (one) { click("coupon", { id: one.getAttribute("discountid") }); }],
    ["#item-delete", tools.remove],
    ["#apply-charge", function () {
      click("charge", { name: place("description").value, quantity: place("pieces").value, value: place("price").value, department: at.department || 1 });
    }],
    ["#cancel-charge", function () { place("charge").parentNode.open = false; }],
    [".pref_option", function (one) {
      one.parentNode.querySelectorAll(".sel_pref").forEach(function (other) { other.classList.remove("sel_pref"); });
      one.classList.add("sel_pref");
      click("preference", { name: one.parentNode.getAttribute("pref_name"), value: one.getAttribute("pref_val") });
    }],
    [".si_view", function (one) { asked({ preview: one.getAttribute("ticketnumber") }).then(function (answer) { counter.put(place("preview"), answer.preview); }).catch(failed); }],
    [".new-heatseal", function (one) { counter.said("Heat seal " + one.getAttribute("heatseal") + " waits for a garment"); }]
  ];

  document.addEventListener("click", function (event) {
    for (var row = 0; row < presses.length; row++) {
      var pressed = event.target.closest(presses[row][0]);
      if (pressed) return presses[row][1](pressed);
    }
  });

  function due(department, page) {
    var where = place(department ? "due" : "ticket-due");
    return asked({ due: department, page: page }).then(function (answer) { counter.put(where, answer.due); }).catch(failed);
  }

  document.querySelectorAll("details").forEach(function (one) {
    one.addEventListener("toggle", function () {
      if (!one.open) return;
      if (one.querySelector("#ticket-due")) due("", "");
      if (one.querySelector("#similar")) asked({ similar: 1, group: at.group, department: at.department }).then(function (answer) {
        counter.put(place("similar"), answer.similar);
      });
    });
  });

  // The form of a line: what is changed in it is sent as it is left.
  var properties = { "item-price": "price", "item-quantity": "quantity", "item-notes": "notes" };
  place("panel").addEventListener("change", function (event) {
    var one = event.target, name = properties[one.id];
    if (name) click(name, { value: one.value, quantity: one.value });
    else if (one.dataset.lineNumber && one.value) click("upchargePrice", { upcharge: one.dataset.lineNumber, value: one.value });
  });
  place("panel").addEventListener("submit", function (event) { event.preventDefault(); });

  var typing;
  place("brand").addEventListener("input", function () {
    clearTimeout(typing);
    typing = setTimeout(panel, 150);
  });

  // ---- a scanner types fast and presses Enter, wherever the focus is

  var scanned = "", last = 0;
  document.addEventListener("keydown", function (event) {
    var now = event.timeStamp;
    if (now - last > 50) scanned = "";
    last = now;
    if (event.key === "Enter" && scanned.length >= 5) {
      event.preventDefault();
      event.stopPropagation();
      var focus = document.activeElement;
      if (focus && focus.value && focus.value.slice(-scanned.length) === scanned) focus.value = focus.value.slice(0, -scanned.length);
      click("seal", { value: scanned });
      scanned = "";
    } else if (event.key.length === 1) scanned += event.key;
  }, true);

  counter.dressed(document);
})();
