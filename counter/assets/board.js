// The board looks again every few seconds while it is seen; the focus stays where it was.
(function() {
"use strict";
var board = document.getElementById("board"), last = "";
document.querySelectorAll("[data-submits]")
  .forEach(function(one) { one.addEventListener("change", function() { one.form.submit(); }); });
function again() {
  if (document.hidden) return;
  fetch(board.dataset.again)
    .then(function(answer) { return answer.ok ? answer.text() : ""; })
    .then(function(shown) {
      if (shown && shown !== last && last) window.counter.put(board, shown);
      last = shown || last;
    })
    .catch(function() { /* the next look finds out whether the counter is there again */ });
}
again();
setInterval(again, 5000);
})();
