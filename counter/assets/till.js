// The till: tickets and tenders change with a press, the sums follow. A card is asked for at once, and the
// till looks whether it has been accepted until it has an answer.
(function() {
"use strict";
var lookEvery = 700;  // milliseconds
var work = document.querySelector(".desk").dataset.work;
var type = "Cash";
function place(id) { return document.getElementById(id); }

function trouble(words) {
  place("problem").hidden = !words;
  place("problem").textContent = words;
  if (words) counter.said(words);
}
function failed(error) { trouble(error.message); }

// The result says whether the press was done.
function show(answer) {
  ["tickets", "tenders", "sales", "credit", "taken"].forEach(function(
    part) { counter.put(place(part), answer[part]); });
  place("totals").innerHTML = answer.amounts;
  trouble(answer.problem);
  if (!answer.problem)
    counter.said(
      document.querySelector("#totals .total:last-child").textContent.replace(/^(.*?)(Due)$/, "$2 $1"));
  place("pay").disabled = !!answer.why;
  place("why").textContent = answer.why;
  place("least").hidden = !answer.least;
  place("least").textContent = answer.least;
  if (!answer.problem) place("amount").value = answer.due > 0 ? answer.due.toFixed(2) : "";
  look();
  coupons();
  return !answer.problem && !answer.ask;
}

// Asked for while they are looked at.
function coupons() {
  if (!place("coupons").closest("details").open) return;
  counter.get("/pickup/coupons?work=" + work)
    .then(function(answer) { counter.put(place("coupons"), answer.coupons); })
    .catch(failed);
}
place("coupons").closest("details").addEventListener("toggle", coupons);

function sent(path, values, number) {
  return counterDesk.inTurn(
    function() { return counterDesk.press(path, Object.assign({ work: work }, values), number).then(show); },
    failed);
}
function click(name, values) { return sent("/pickup/act", Object.assign({ click: name }, values)); }

var looking;
function look() {
  clearTimeout(looking);
  if (!document.querySelector("[data-waiting]")) return;
  looking = setTimeout(function() {
    counter.get("/pickup/card?work=" + work)
      .then(function(answer) {
        if (answer.answered) click("settle");
        else look();
      })
      .catch(function(error) {
        if (error.answered) failed(error);
        else look();
      });
  }, lookEvery);
}

// ---- tenders

function isCard() { return type === "Credit Card"; }
function chosen() {
  var button = document.querySelector("[data-type='" + type + "']");
  document.querySelectorAll("[data-type]")
    .forEach(function(one) { one.setAttribute("aria-pressed", String(one === button)); });
  place("reference-field").hidden = !button.dataset.reference;
  document.querySelector("#reference-field label").textContent = button.dataset.reference || "Number";
  place("card-fields").hidden = !isCard();
  place("notes").hidden = type !== "Cash";
}
function turnTo(button) {
  type = button.dataset.type;
  chosen();
  var first = isCard()       ? place("card-number") :
    button.dataset.reference ? place("reference") :
                               place("amount");
  first.focus();
  if (first === place("amount")) first.select();
}

var cardFields = {
  cardNumber: "card-number",
  cardExpiration: "card-expiration",
  cardZip: "card-zip",
  cardCode: "card-code"
};
function charge() {
  var values = { amount: place("amount").value };
  Object.keys(cardFields).forEach(function(name) { values[name] = place(cardFields[name]).value; });
  return sent("/pickup/card", values, crypto.getRandomValues(new Uint32Array(4)).join("-"))
    .then(function(isTaken) {
      if (isTaken) Object.keys(cardFields).forEach(function(name) { place(cardFields[name]).value = ""; });
    });
}
function take(amount) {
  return click("tender", { type: type, amount: amount, reference: place("reference").value })
    .then(function(isTaken) {
      if (isTaken) place("reference").value = "";
    });
}

var isSending = false;
place("tender").addEventListener("submit", function(event) {
  event.preventDefault();
  if (isSending) return;
  isSending = true;
  (isCard() ? charge() : take(place("amount").value)).then(function() { isSending = false; });
});

var presses = [
  ["[data-type]", turnTo],
  [
    "[data-note]",
    function(one) { take(one.dataset.note === "exact" ? place("amount").value : one.dataset.note); }
  ],
  ["[data-off]", function(one) { click("off", { number: one.dataset.off }); }],
  [
    "[data-ticket]",
    function(one) { click(one.dataset.within ? "leave" : "add", { ticket: one.dataset.ticket }); }
  ],
  ["[data-sale]", function(one) { click("sale", { transaction: one.dataset.sale }); }],
  ["[data-coupon]", function(one) { click("coupon", { id: one.dataset.coupon }); }],
  ["[data-coupon-off]", function(one) { click("couponOff", { id: one.dataset.couponOff }); }],
  ["[data-credit]", function(one) { click("credit", { way: one.dataset.credit }); }],
  ["[data-give-up]", function() { click("giveUp"); }]
];
document.addEventListener("click", function(event) {
  for (var row = 0; row < presses.length; row++) {
    var one = event.target.closest(presses[row][0]);
    if (one) return presses[row][1](one);
  }
});

document.addEventListener("keydown", function(event) {
  if (event.key !== "F9" || document.querySelector("dialog[open]")) return;
  event.preventDefault();
  counterDesk.inTurn(function() { place("pay").click(); }, failed);
});
// Enter in the fields of the claim does not pay.
document.querySelectorAll("details input").forEach(function(one) {
  one.addEventListener("keydown", function(event) {
    if (event.key === "Enter") event.preventDefault();
  });
});

chosen();
look();
})();
