// The till: tickets and tenders change with a click, the sums follow. A card is asked for at once, and the till looks
// whether it has been accepted until it has an answer.
(function () {
  "use strict";
  var lookEvery = 700;  // milliseconds
  var work = document.querySelector(".desk").dataset.work;
  function place(id) { return document.getElementById(id); }

  function trouble(words) {
    place("problem").hidden = !words;
    place("problem").textContent = words;
    if (words) counter.said(words);
  }

  function show(answer) {
    ["tickets", "tenders", "sales"].forEach(function (part) { counter.put(place(part), answer[part]); });
    place("totals").innerHTML = answer.amounts;
    trouble(answer.problem);
    if (!answer.problem) counter.said(document.querySelector("#totals .total:last-child").textContent.replace(/^(.*?)(Due)$/, "$2 $1"));
    place("pay").disabled = !answer.canPay;
    place("amount").value = answer.due > 0 ? answer.due.toFixed(2) : "";
    look();
    coupons();
    return !answer.problem;
  }

  // Asked for while they are looked at.
  function coupons() {
    if (!place("coupons").closest("details").open) return;
    counter.get("/pickup/coupons?work=" + work).then(function (answer) { counter.put(place("coupons"), answer.coupons); });
  }
  place("coupons").closest("details").addEventListener("toggle", coupons);

  function sent(path, values, number) {
    return counter.post(path, Object.assign({ work: work }, values), number).then(show).catch(function (error) { trouble(error.message); });
  }
  function click(name, values) { return sent("/pickup/act", Object.assign({ click: name }, values)); }

  var looking;
  function look() {
    clearTimeout(looking);
    if (!document.querySelector("[data-waiting]")) return;
    looking = setTimeout(function () {
      counter.get("/pickup/card?work=" + work).then(function (answer) {
        if (answer.answered) click("settle");
        else look();
      }).catch(function (error) { trouble(error.message); });
    }, lookEvery);
  }

  var presses = [
    ["[data-off]", function (one) { click("off", { number: one.dataset.off }); }],
    ["[data-ticket]", function (one) { click(one.dataset.within ? "leave" : "add", { ticket: one.dataset.ticket }); }],
    ["[data-sale]", function (one) { click("sale", { transaction: one.dataset.sale }); }],
    ["[data-coupon]", function (one) { click("coupon", { id: one.dataset.coupon }); }],
    ["[data-give-up]", function () { click("giveUp"); }]
  ];
  document.addEventListener("click", function (event) {
    for (var row = 0; row < presses.length; row++) {
      var one = event.target.closest(presses[row][0]);
      if (one) return presses[row][1](one);
    }
  });

  function isCard() { return place("type").value === "Credit Card"; }
  function reference() { return place("type").selectedOptions[0].dataset.reference; }
  function chosen() {
    place("reference-field").hidden = !reference();
    document.querySelector("#reference-field label").textContent = reference() || "Number";
    place("card-fields").hidden = !isCard();
    if (isCard()) place("card-number").focus();
  }
  place("type").addEventListener("change", chosen);

  var cardFields = { cardNumber: "card-number", cardExpiration: "card-expiration", cardZip: "card-zip", cardCode: "card-code" };
  function charge() {
    var values = { amount: place("amount").value };
    Object.keys(cardFields).forEach(function (name) { values[name] = place(cardFields[name]).value; });
    return sent("/pickup/card", values, crypto.getRandomValues(new Uint32Array(4)).join("-")).then(function (isTaken) {
      if (isTaken) Object.keys(cardFields).forEach(function (name) { place(cardFields[name]).value = ""; });
    });
  }

  var isSending = false;
  place("tender").addEventListener("submit", function (event) {
    event.preventDefault();
    if (isSending) return;
    isSending = true;
    var taken = isCard() ? charge() : click("tender", { type: place("type").value, amount: place("amount").value, reference: place("reference").value }).then(function (isTaken) {
      if (isTaken) place("reference").value = "";
    });
    taken.then(function () { isSending = false; });
  });

  // Enter in the fields of the claim does not pay.
  document.querySelectorAll("details input").forEach(function (one) {
    one.addEventListener("keydown", function (event) { if (event.key === "Enter") event.preventDefault(); });
  });

  // A type may be chosen already, before this script had arrived.
  chosen();
  look();
})();
