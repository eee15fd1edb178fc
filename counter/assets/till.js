// The till: tickets and tenders change with a click, the sums follow.
(function () {
  "use strict";
  function place(id) { return document.getElementById(id); }

  function show(answer) {
    counter.put(place("tickets"), answer.tickets);
    counter.put(place("tenders"), answer.tenders);
    place("totals").innerHTML = answer.amounts;
    place("problem").hidden = !answer.problem;
    place("problem").textContent = answer.problem;
    place("pay").disabled = answer.due > 0 || !answer.tickets_chosen;
    place("amount").value = answer.due > 0 ? answer.due.toFixed(2) : "";
    if (answer.problem) counter.said(answer.problem);
  }

  function click(name, values) {
    return counter.post("/pickup/act", Object.assign({ click: name }, values)).then(show).catch(function (error) {
      place("problem").hidden = false;
      place("problem").textContent = error.message;
    });
  }

  document.addEventListener("click", function (event) {
    var one = event.target.closest("[data-ticket], [data-off]");
    if (!one) return;
    if (one.dataset.off) click("off", { type: one.dataset.off });
    else click(one.dataset.within ? "leave" : "add", { ticket: one.dataset.ticket });
  });

  function reference() { return place("type").selectedOptions[0].dataset.reference; }
  place("type").addEventListener("change", function () {
    place("reference-field").hidden = !reference();
    document.querySelector("#reference-field label").textContent = reference() || "Number";
  });
  place("tender").addEventListener("submit", function (event) {
    event.preventDefault();
    click("tender", { type: place("type").value, amount: place("amount").value, reference: place("reference").value }).then(function () { place("reference").value = ""; });
  });
})();
