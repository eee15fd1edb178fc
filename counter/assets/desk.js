// What the entry screen and the till have in common: presses go out one after the other, each once, however
// bad the line is; questions are put to the clerk in between.
(function() {
"use strict";
var page = crypto.getRandomValues(new Uint32Array(2)).join("-");
var busyAfter = 200, againAfter = [500, 1000, 2000, 3000];  // milliseconds
var pressed = 0, waiting = 0, turns = Promise.resolve();

function strip() {
  var one = document.getElementById("line-state");
  if (!one) {
    one = document.createElement("div");
    one.id = "line-state";
    one.setAttribute("role", "status");
    document.body.appendChild(one);
  }
  return one;
}
function tell(words) {
  var one = strip();
  one.hidden = !words;
  if (one.textContent !== words) one.textContent = words;
}
function pause(time) {
  return new Promise(function(done) { setTimeout(done, time); });
}

// Sent until it is answered. The same press that arrives twice is done once: the counter knows it by its
// number.
function sent(send, tries) {
  return send().catch(function(error) {
    if (error.answered) throw error;
    tell("No connection, " + (waiting === 1 ? "1 press waits" : waiting + " presses wait"));
    return pause(againAfter[Math.min(tries, againAfter.length - 1)])
      .then(function() { return sent(send, tries + 1); });
  });
}

// One thing after the other, in the order of the clerk's hands: what a press is about is what is chosen when
// its turn comes, with those before it done.
function inTurn(work, failed) {
  waiting++;
  var sign = setTimeout(function() { document.documentElement.classList.add("busy"); }, busyAfter);
  turns = turns.then(work).catch(failed).then(function(result) {
    clearTimeout(sign);
    waiting--;
    if (!waiting) {
      tell("");
      document.documentElement.classList.remove("busy");
    }
    return result;
  });
  return turns;
}

// Within a turn: `values` may be a function, which is asked when the turn comes.
function press(path, values, number) {
  var body =
    Object.assign({}, typeof values === "function" ? values() : values, { page: page, press: ++pressed });
  return sent(function() { return counter.post(path, body, number); }, 0).then(function(answer) {
    if (answer.ask) return ask(answer.ask, [["Yes", { sure: true }], ["No", null]]).then(again);
    if (answer.choose)
      return ask(answer.choose.choose, answer.choose.values.concat([["Cancel", null]])).then(again);
    return answer;
    function again(more) { return more ? press(path, Object.assign({}, body, more), number) : answer; }
  });
}
function get(path) {
  return sent(function() { return counter.get(path); }, 0);
}

// A question with its answers; Escape is the last of them.
function ask(words, answers) {
  return new Promise(function(done) {
    var box = document.createElement("dialog"), text = document.createElement("p"),
        row = document.createElement("div"), chosen = null;
    text.textContent = words;
    row.className = "row";
    box.setAttribute("aria-label", words);
    answers.forEach(function(one, at) {
      var button = document.createElement("button");
      button.type = "button";
      button.textContent = one[0];
      if (at === 0) button.className = "main";
      button.addEventListener("click", function() {
        chosen = one[1];
        box.close();
      });
      row.appendChild(button);
    });
    box.append(text, row);
    box.addEventListener("close", function() {
      box.remove();
      done(chosen);
    });
    document.body.appendChild(box);
    box.showModal();
  });
}

window.counterDesk = {
  inTurn: inTurn,
  press: press,
  get: get,
  ask: ask
};
})();
