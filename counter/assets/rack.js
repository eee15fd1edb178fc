// Sends what waits in the queue of messages, one after the other, while the clerk goes on.
(function() {
"use strict";
var place = document.querySelector("[data-send]");
if (!place) return;
function next(sent) {
  window.counter.post(place.dataset.send, {}, "send-" + Date.now() + "-" + sent)
    .then(function(answer) {
      if (answer.problem) place.textContent = "A message was not taken: " + answer.problem;
      else if (answer.sent || sent)
        place.textContent =
          sent + answer.sent === 1 ? "One message sent." : (sent + answer.sent) + " messages sent.";
      if (answer.sent && answer.left) next(sent + 1);
    })
    .catch(function(error) { place.textContent = error.message; });
}
next(0);
})();
