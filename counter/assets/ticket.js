// The entry screen: every click is sent, and the parts that changed are put in place.
(function () {
  "use strict";
  var desk = document.querySelector(".desk").dataset;
  var at = { group: "it", department: desk.department, line: 0, isPrompted: false };
  function place(id) { return document.getElementById(id); }

  // ---- what comes from the counter

  function show(answer) {
    at.line = answer.line;
    ["lines", "totals", "offers", "preferences", "seals", "coupons"].forEach(function (part) { counter.put(place(part), answer[part]); });
    place("problem").hidden = !answer.problem;
    place("problem").textContent = answer.problem;
    offerTools();
    place("seal-off").hidden = !answer.seals;
    closeDue();
    var total = document.querySelector("#totals .total:last-child .value");
    counter.said(answer.problem || (total ? "Total " + total.textContent : ""));
    if (at.group !== "it" && !at.line) at.group = "it";
    if (answer.question) enter(answer.question, "", "answer");
  }

  // A line of its kind has its tools: an offer can only be removed, a charge is not cleaned again.
  function offerTools() {
    var chosen = document.querySelector("#lines .lineitem.selected");
    var held = place("line-tools").contains(document.activeElement);
    place("line-tools").hidden = !chosen;
    place("line-tools").dataset.kind = chosen ? (/\bit-(\w+)/.exec(chosen.className) || [])[1] : "";
    if (held && (!chosen || !document.activeElement.offsetParent)) counter.focus(document.querySelector("#lines [tabindex], #panel [tabindex]"));
  }

  function failed(error) {
    place("problem").hidden = false;
    place("problem").textContent = error.message;
    counter.said(error.message);
  }

  // One thing after the other, in the order of the clerk's hands: what a click is about is what is chosen when its turn
  // comes, with the clicks before it done.
  var turns = Promise.resolve();
  function inTurn(work) {
    turns = turns.then(work).catch(failed);
    return turns;
  }
  function click(name, values) {
    return inTurn(function () {
      var given = typeof values === "function" ? values() : values;
      return counter.post("/ticket/act", Object.assign({ click: name, line: at.line, work: desk.work }, given)).then(show).then(panel);
    });
  }

  function asked(values) {
    return counter.get("/ticket/panel?" + new URLSearchParams(Object.assign({ work: desk.work }, values)));
  }

  function panel() {
    return asked({ group: at.group, department: at.department, line: at.line, filter: at.group === "br" ? place("brand").value : "" }).then(function (answer) {
      counter.put(place("panel"), answer.panel);
      counter.put(place("groups"), answer.groups);
      document.querySelectorAll(".id-group-button").forEach(function (one) { one.setAttribute("aria-pressed", String(groupOf(one) === at.group)); });
      place("filter").hidden = at.group !== "br";
    });
  }

  // The bar's own class of the chosen button says nothing here: it is on all of them.
  function groupOf(button) { return (/\bsel-(\w*)/.exec(button.className) || [])[1] || "pr"; }

  function turn(group) {
    return inTurn(function () {
      at.group = group;
      at.isPrompted = false;
      return panel();
    });
  }

  // ---- one value keyed in: a note, a price, an answer. It is for the line that was chosen when it was asked for.

  var entering, opener;
  function enter(label, value, name) {
    entering = { click: name, line: at.line };
    opener = document.activeElement;
    document.querySelector("#entry label").textContent = label;
    place("entered").value = value;
    place("entry").hidden = false;
    place("entered").focus();
  }
  function leave() {
    place("entry").hidden = true;
    counter.focus(opener && opener.isConnected ? opener : (opener && opener.id && place(opener.id)) || document.querySelector("#panel [tabindex]"));
  }
  place("entry").addEventListener("submit", function (event) {
    event.preventDefault();
    leave();
    click(entering.click, { line: entering.line, value: place("entered").value });
  });
  document.querySelector("[data-cancel]").addEventListener("click", leave);
  document.addEventListener("keydown", function (event) {
    if (event.key !== "Escape") return;
    if (!place("entry").hidden) leave();
    closeDue();
  });

  function lineText(part) {
    var found = document.querySelector(".lineitem.selected ." + part);
    return found ? found.textContent : "";
  }
  function pieces() { return Number(lineText("quantity")) || 1; }

  var tools = {
    fewer:  function () { click("quantity", function () { return { quantity: Math.max(pieces() - 1, 1) }; }); },
    more:   function () { click("quantity", function () { return { quantity: pieces() + 1 }; }); },
    notes:  function () { enter("Note", lineText("notes"), "notes"); },
    price:  function () { enter("Unit price", "", "price"); },
    redo:   function () { click("redo", {}); },
    seal:   function () { click("sealHere", {}); },
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
  // One of several is chosen.
  function choose(one, within, mark) {
    var group = typeof within === "string" ? document.querySelector(within) : within;
    group.querySelectorAll("." + mark).forEach(function (other) {
      other.classList.remove(mark);
      other.removeAttribute("aria-pressed");
    });
    if (!one) return;
    one.classList.add(mark);
    one.setAttribute("aria-pressed", "true");
  }

  // The form of a charge is empty for the next one.
  function cleared() {
    place("description").value = "";
    place("pieces").value = 1;
    place("price").value = "0.00";
    place("charge").parentNode.open = false;
    counter.focus(place("charge").parentNode.querySelector("summary"));
  }

  var presses = [
    ["#line-tools [data-tool]", function (one) { tools[one.dataset.tool](); }],
    [".edit-line-price", tools.price],
    [".edit-line-notes", tools.notes],
    [".department[departmentid]", function (one) {
      choose(one, ".departments", "selected");
      at.department = one.getAttribute("departmentid");
      inTurn(function () {
        at.line = 0;
        choose(null, "#lines", "selected");
        offerTools();
      });
      turn("it");
    }],
    [".id-group-button", function (one) { turn(groupOf(one)); }],
    [".li-it", function (one) {
      var count = place("count").value, redo = place("as-redo").checked;
      place("count").value = 1;
      place("as-redo").checked = false;
      inTurn(function () { at.group = next("it", one); });
      click("item", { id: one.id.substr(2), quantity: count, redo: redo });
    }],
    [".pli", function (one) {
      var group = one.id.substr(0, 2), on = one.classList.contains("plisel");
      inTurn(function () { if (!on) at.group = next(group, one); });
      // Upcharges are counted for each piece, up to what the price list takes.
      var count = group === "up" ? Math.min(Number(place("count").value) || 1, Number(one.getAttribute("maxquantity")) || 1) : 1;
      place("count").value = 1;
      click(descriptors[group], { id: one.id.substr(2), name: one.textContent.trim(), on: on, quantity: count });
    }],
    ["#lines .lineitem", function (one) {
      inTurn(function () {
        at.line = Number(one.getAttribute("lineid"));
        choose(document.querySelector("#lines [lineid='" + at.line + "']"), "#lines", "selected");
        offerTools();
        at.group = at.group === "it" ? "up" : at.group;
        at.isPrompted = false;
        return panel();
      });
    }],
    [".duedate_button", function (one) { due(one.getAttribute("deptid"), ""); }],
    [".dept-due", function (one) {
      var date = one.getAttribute("date"), department = one.getAttribute("deptid");
      if (date === "prev" || date === "next") return due(department, Math.max(Number(one.parentNode.getAttribute("page")) + (date === "next" ? 1 : -1), 0));
      if (date === "stop") return;
      if (department) click("deptDue", { department: department, value: date });
      else click("ticketDue", { value: date });
    }],
    ["[data-offer]", function (one) { click("remove", { line: one.dataset.offer }); }],
    [".coupon", function (one) { click("coupon", { id: one.getAttribute("discountid") }); }],
    ["#item-delete", tools.remove],
    ["#apply-charge", function () {
      click("charge", {
        name: place("description").value, quantity: place("pieces").value, value: place("price").value,
        department: at.department || document.querySelector(".department[departmentid]").getAttribute("departmentid")
      });
      cleared();
    }],
    ["#cancel-charge", cleared],
    [".pref_option", function (one) {
      choose(one, one.parentNode, "sel_pref");
      click("preference", { name: one.parentNode.getAttribute("pref_name"), value: one.getAttribute("pref_val") });
    }],
    [".si_view", function (one) { asked({ preview: one.getAttribute("ticketnumber") }).then(function (answer) { counter.put(place("preview"), answer.preview); }).catch(failed); }],
    [".new-heatseal", function (one) { click("sealNext", { value: one.getAttribute("heatseal") }); }],
    ["#seal-off", function () { click("sealOff", { value: document.querySelector(".new-heatseal-selected").getAttribute("heatseal") }); }]
  ];

  document.addEventListener("click", function (event) {
    for (var row = 0; row < presses.length; row++) {
      var pressed = event.target.closest(presses[row][0]);
      if (pressed) return presses[row][1](pressed);
    }
  });

  var picking;  // the department whose days are shown
  function due(department, page) {
    var where = place(department ? "due" : "ticket-due");
    picking = department;
    return asked({ due: department, page: page }).then(function (answer) {
      counter.put(where, answer.due);
      if (page === "" && department) counter.focus(where.querySelector(".due-date") || where.querySelector("[tabindex]"));
    }).catch(failed);
  }
  function closeDue() {
    var held = place("due").contains(document.activeElement);
    place("due").innerHTML = "";
    if (held) counter.focus(document.querySelector("#lines .duedate_button[deptid='" + picking + "']"));
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
    if (one.value === one.defaultValue) return;
    if (name) click(name, { value: one.value, quantity: one.value });
    else if (one.dataset.lineNumber && one.value) click("upchargePrice", { upcharge: one.dataset.lineNumber, value: one.value });
  });
  place("panel").addEventListener("submit", function (event) { event.preventDefault(); });

  // A preference without options is written.
  document.querySelectorAll(".pref_list:empty").forEach(function (one) {
    var field = document.createElement("input");
    field.setAttribute("aria-label", one.getAttribute("pref_name"));
    field.maxLength = 64;
    field.addEventListener("change", function () { click("preference", { name: one.getAttribute("pref_name"), value: field.value }); });
    one.appendChild(field);
  });

  var typing;
  place("brand").addEventListener("input", function () {
    clearTimeout(typing);
    typing = setTimeout(panel, 150);
  });

  // ---- a scanner types fast and presses Enter, wherever the focus is

  // What it typed into a field goes out of it again.
  var scanned = "", last = 0, field, before;
  document.addEventListener("keydown", function (event) {
    var now = event.timeStamp;
    if (now - last > 50) {
      scanned = "";
      field = document.activeElement;
      before = field && field.value;
    }
    last = now;
    if (event.key === "Enter" && scanned.length >= 5 && /\d/.test(scanned)) {
      event.preventDefault();
      event.stopPropagation();
      if (field && before !== undefined) {
        field.value = before;
        // What was half keyed in goes out before the seal draws the form anew.
        if (place("panel").contains(field)) field.dispatchEvent(new Event("change", { bubbles: true }));
      }
      click("seal", { value: scanned });
      scanned = "";
    } else if (event.key.length === 1) scanned += event.key;
  }, true);

  counter.dressed(document);
})();
