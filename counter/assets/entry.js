// The entry screen: every press is sent, and the parts that changed come back with it.
(function() {
"use strict";
var desk = document.querySelector(".desk").dataset;
var items = JSON.parse(desk.items), scanner = counterScanner, meant = counterTyped.meant,
    nameOn = counterTyped.nameOn;
var at = { group: "it", department: desk.department, line: 0, isPrompted: false };
function place(id) { return document.getElementById(id); }

// ---- what comes from the counter

var parts =
  ["lines", "sums", "bar", "offers", "notices", "preferences", "seals", "coupons", "panel", "groups"];
function show(answer) {
  at.line = answer.line;
  at.group = answer.group;
  parts.forEach(function(part) { counter.put(place(part), answer[part]); });
  shownGroup();
  trouble(answer.problem);
  place("undo").hidden = !answer.undo;
  place("undo").firstChild.textContent = answer.undo;
  place("seal-off").hidden = !answer.seals;
  offerTools();
  counter.said(answer.problem || place("total").textContent);
  if (answer.question) enter(answer.question, "", "answer");
  return answer;
}

function trouble(words) {
  place("problem").hidden = !words;
  place("problem").textContent = words;
}
function failed(error) {
  trouble(error.message);
  counter.said(error.message);
}

function shownGroup() {
  document.querySelectorAll(".id-group-button")
    .forEach(function(one) { one.setAttribute("aria-pressed", String(groupOf(one) === at.group)); });
  place("filter").hidden = at.group !== "br";
  place("panel").dataset.group = at.group;
}

// The tools stand below the line that they are for. An offer can only be removed, a charge is not cleaned
// again.
function offerTools() {
  var chosen = document.querySelector("#lines .lineitem.selected"), tools = place("line-tools");
  var held = tools.contains(document.activeElement) ? document.activeElement : null;
  if (!chosen) document.querySelector(".side").insertBefore(tools, place("entry"));
  else chosen.after(tools);
  tools.hidden = !chosen;
  tools.dataset.kind = chosen ? (/\bit-(\w+)/.exec(chosen.className) || [])[1] : "";
  if (held)
    counter.focus(held.offsetParent ? held : document.querySelector("#lines [tabindex], #panel [tabindex]"));
}
// What is drawn anew must not take the tools away.
function saveTools() { document.querySelector(".side").insertBefore(place("line-tools"), place("entry")); }

// `first` is done when the turn comes, with the presses before it answered.
function click(name, values, first) {
  return counterDesk.inTurn(function() {
    if (first) first();
    return counterDesk
      .press(
        "/ticket/act",
        function() {
          return Object.assign(
            {
              click: name,
              line: at.line,
              work: desk.work,
              group: at.group,
              list: at.department,
              filter: place("brand").value
            },
            typeof values === "function" ? values() : values);
        })
      .then(function(answer) {
        saveTools();
        return show(answer);
      });
  }, failed);
}

function asked(values) {
  return counterDesk.get("/ticket/panel?" + new URLSearchParams(Object.assign({ work: desk.work }, values)));
}

function panel() {
  return asked({
           group: at.group,
           department: at.department,
           line: at.line,
           filter: at.group === "br" ? place("brand").value : ""
         })
    .then(function(answer) {
      counter.put(place("panel"), answer.panel);
      counter.put(place("groups"), answer.groups);
      shownGroup();
    });
}

// The bar's own class of the chosen button says nothing here: it is on all of them.
function groupOf(button) { return (/\bsel-(\w*)/.exec(button.className) || [])[1] || "pr"; }

function turn(group, first) {
  return counterDesk.inTurn(function() {
    if (first) first();
    at.group = group;
    at.isPrompted = false;
    return panel();
  }, failed);
}

// ---- one value keyed in: a note, a price, an answer. It is for the line that was chosen when it was asked
// for.

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
  counter.focus(
    opener && opener.isConnected ? opener : (opener && opener.id && place(opener.id)) || place("say"));
}
// What was refused stays to be corrected.
place("entry").addEventListener("submit", function(event) {
  event.preventDefault();
  var typed = place("entered").value, now = entering,
      label = document.querySelector("#entry label").textContent;
  leave();
  click(now.click, { line: now.line, value: typed }).then(function(answer) {
    if (answer && answer.problem && now.click !== "seal") enter(label, typed, now.click);
  });
});
document.querySelector("[data-cancel]").addEventListener("click", leave);
document.addEventListener("keydown", function(event) {
  if (event.key === "Escape" && !place("entry").hidden) leave();
});

function lineText(part) {
  var found = document.querySelector(".lineitem.selected ." + part);
  return found ? found.textContent : "";
}
function pieces() { return Number(lineText("quantity")) || 1; }

var tools = {
  fewer: function() { click("quantity", function() { return { quantity: Math.max(pieces() - 1, 1) }; }); },
  more: function() { click("quantity", function() { return { quantity: pieces() + 1 }; }); },
  different: function() { click("different", {}); },
  notes: function() { enter("Note", lineText("notes"), "notes"); },
  price: function() { enter("Unit price", "", "price"); },
  redo: function() { click("redo", {}); },
  seal: function() { click("sealHere", {}); },
  remove: function() { click("remove", {}); }
};

// ---- what the library's fragments mean when they are pressed; the first row that fits counts

// The price list says by "fin" where it asks for nothing more about a garment; else the next pick list comes
// by itself. Whoever turns to a list by hand stays there.
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
  group.querySelectorAll("." + mark).forEach(function(other) {
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
  place("charge-sheet").close();
}

function taken() {
  var values = { quantity: place("count").value, redo: place("as-redo").checked };
  place("count").value = 1;
  place("as-redo").checked = false;
  return values;
}

var presses = [
  ["[data-close]", function(one) { one.closest("dialog").close(); }],
  ["[data-open]", function(one) { open(place(one.dataset.open)); }],
  [
    "[data-count]",
    function(one) {
      place("count").value = one.dataset.count;
      place("say").focus({ preventScroll: true });
    }
  ],
  ["[data-undo]", function() { click("undo", {}); }],
  ["#line-tools [data-tool]", function(one) { tools[one.dataset.tool](); }],
  [
    ".department[departmentid]",
    function(one) {
      choose(one, ".departments", "selected");
      at.department = one.getAttribute("departmentid");
      turn("it", function() {
        at.line = 0;
        saveTools();
        choose(null, "#lines", "selected");
        offerTools();
      });
    }
  ],
  [".id-group-button", function(one) { turn(groupOf(one)); }],
  [
    ".li-it",
    function(one) {
      var values = taken();
      values.id = one.id.substr(2);
      click("item", values, function() { at.group = next("it", one); });
    }
  ],
  [
    ".pli",
    function(one) {
      var group = one.id.substr(0, 2), on = one.classList.contains("plisel");
      // Upcharges are counted for each piece, up to what the price list takes.
      var count = group === "up" ?
        Math.min(Number(taken().quantity) || 1, Number(one.getAttribute("maxquantity")) || 1) :
        1;
      click(
        descriptors[group], { id: one.id.substr(2), name: nameOn(one), on: on, quantity: count }, function() {
          if (!on) at.group = next(group, one);
        });
    }
  ],
  [
    "#lines .lineitem",
    function(one) {
      counterDesk.inTurn(function() {
        at.line = Number(one.getAttribute("lineid"));
        choose(document.querySelector("#lines [lineid='" + at.line + "']"), "#lines", "selected");
        offerTools();
        at.group = at.group === "it" ? "up" : at.group;
        at.isPrompted = false;
        return panel();
      }, failed);
    }
  ],
  ["[data-due]", function(one) { open(place("day-sheet"), one.dataset.due); }],
  ["[data-month]", function(one) { due(one.dataset.department, one.dataset.month); }],
  [
    "[data-day]",
    function(one) {
      place("day-sheet").close();
      if (one.dataset.department)
        click("deptDue", { department: one.dataset.department, value: one.dataset.day });
      else click("ticketDue", { value: one.dataset.day });
    }
  ],
  ["[data-coupon]", function(one) { click("coupon", { id: one.dataset.coupon }); }],
  [
    "#apply-charge",
    function() {
      var typed = {
        name: place("description").value,
        quantity: place("pieces").value,
        value: place("price").value,
        department:
          at.department || document.querySelector(".department[departmentid]").getAttribute("departmentid")
      };
      place("charge-sheet").close();
      click("charge", typed).then(function(answer) {
        if (answer && !answer.problem) cleared();
      });
    }
  ],
  ["#cancel-charge", cleared],
  [
    ".pref_option",
    function(one) {
      choose(one, one.parentNode, "sel_pref");
      click(
        "preference",
        { name: one.parentNode.getAttribute("pref_name"), value: one.getAttribute("pref_val") });
    }
  ],
  [
    ".si_view",
    function(one) {
      asked({ preview: one.getAttribute("ticketnumber") })
        .then(function(answer) { counter.put(place("preview"), answer.preview); })
        .catch(failed);
    }
  ],
  [".new-heatseal", function(one) { click("sealNext", { value: one.getAttribute("heatseal") }); }],
  [
    "#seal-off",
    function() {
      click("sealOff", { value: document.querySelector(".new-heatseal-selected").getAttribute("heatseal") });
    }
  ]
];

document.addEventListener("click", function(event) {
  for (var row = 0; row < presses.length; row++) {
    var pressed = event.target.closest(presses[row][0]);
    if (pressed) return presses[row][1](pressed);
  }
});

// ---- what opens over the screen

function due(department, month) {
  return asked({ due: department || 0, page: month })
    .then(function(answer) {
      counter.put(place("due"), answer.due);
      counter.focus(
        document.querySelector("#due .chosen:enabled") || document.querySelector("#due [data-day]:enabled"));
    })
    .catch(failed);
}

var loads = {
  "day-sheet": function(department) { due(department, 0); },
  "similar-sheet": function() {
    asked({ similar: 1, group: at.group, department: at.department })
      .then(function(answer) { counter.put(place("similar"), answer.similar); })
      .catch(failed);
  }
};
function open(sheet, about) {
  if (loads[sheet.id]) loads[sheet.id](about);
  sheet.showModal();
}

// The form of a line: what is changed in it is sent as it is left.
var properties = { "item-price": "price", "item-quantity": "quantity", "item-notes": "notes" };
place("panel").addEventListener("change", function(event) {
  var one = event.target, name = properties[one.id];
  if (one.value === one.defaultValue) return;
  if (name) click(name, { value: one.value, quantity: one.value });
  else if (one.dataset.lineNumber && one.value)
    click("upchargePrice", { upcharge: one.dataset.lineNumber, value: one.value });
});
place("panel").addEventListener("submit", function(event) { event.preventDefault(); });

// A preference without options is written.
document.querySelectorAll(".pref_list:empty").forEach(function(one) {
  var field = document.createElement("input");
  field.setAttribute("aria-label", one.getAttribute("pref_name"));
  field.addEventListener(
    "change",
    function() { click("preference", { name: one.getAttribute("pref_name"), value: field.value }); });
  one.appendChild(field);
});

var typing;
place("brand").addEventListener("input", function() {
  clearTimeout(typing);
  typing = setTimeout(panel, 150);
});

// ---- what is typed: "5 shirts", "navy", a seal

function hint() {
  var typed = place("say").value.trim(), found = typed && !scanner.isSeal(typed) ? meant(typed, items) : {};
  place("found").textContent = found.shown ? nameOn(found.shown) : found.item ? found.item[1] : "";
}
place("say").addEventListener("input", hint);

place("say-form").addEventListener("submit", function(event) {
  event.preventDefault();
  var typed = scanner.bare(place("say").value.trim());
  place("say").value = "";
  place("found").textContent = "";
  if (!typed) return;
  if (scanner.isSeal(typed)) return click("seal", { value: typed });
  var found = meant(typed, items);
  if (found.count) place("count").value = found.count;
  if (!found.words.length) return;
  if (found.shown) return found.shown.click();
  if (!found.item) return click("describe", { value: typed });
  // A word for the chosen garment goes before an item of another department.
  if (at.line && !found.count) return click("describe", { value: typed, item: found.item[0] });
  var values = taken();
  values.id = found.item[0];
  click("item", values);
});

// ---- a scanner, or keys that are for no field

scanner.listen(place("say"), place("say-form"), function(seal, field) {
  // What was half keyed in goes out before the seal draws the form anew.
  if (place("panel").contains(field)) field.dispatchEvent(new Event("change", { bubbles: true }));
  click("seal", { value: seal });
});

// ---- keys

document.addEventListener("keydown", function(event) {
  if (document.querySelector("dialog[open]")) return;
  var departments = document.querySelectorAll(".department[departmentid]");
  if (event.altKey && /^[1-9]$/.test(event.key) && departments[event.key - 1]) {
    event.preventDefault();
    departments[event.key - 1].click();
  }
  if (event.key === "F9") {
    event.preventDefault();
    counterDesk.inTurn(function() { place("finish-button").click(); }, failed);
  }
});
// Finish waits for the presses before it.
place("finish-button").form.addEventListener("submit", function(event) {
  if (event.target.dataset.isTurn) return;
  event.preventDefault();
  event.stopImmediatePropagation();
  counterDesk.inTurn(function() {
    event.target.dataset.isTurn = "yes";
    event.target.submit();
  }, failed);
}, true);

counter.dressed(document);
shownGroup();

// What was typed and entered before this script had arrived.
var early = new URLSearchParams(location.search).get("say");
if (early) {
  history.replaceState(null, "", "/ticket");
  place("say").value = early;
  place("say-form").requestSubmit();
}
})();
