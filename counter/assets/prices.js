// The price list's page: reads the file, shows what it would do, takes it over once.
(function() {
"use strict";
var form = document.getElementById("prices"), words = document.getElementById("f-text"),
    plan = document.getElementById("plan"), number;

document.getElementById("f-file").addEventListener("change", function(event) {
  var file = event.target.files[0];
  if (file) file.text().then(function(read) { words.value = read; });
});

function ask(more, once) {
  var values = { list: form.elements.list.value, text: words.value };
  return counter.post("/setup/prices", Object.assign(values, more), once)
    .then(
      function(answer) { counter.put(plan, answer.html); },
      function(error) { plan.textContent = error.message; });
}
form.addEventListener("submit", function(event) {
  event.preventDefault();
  number = crypto.randomUUID();
  ask({});
});
plan.addEventListener("click", function(event) {
  if (event.target.id === "take") ask({ take: true }, number);
});
})();
