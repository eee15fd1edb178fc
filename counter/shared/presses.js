// Presses that a page sends one after the other. Each carries the page's name and its own number within it:
// one whose answer was lost on the way is sent again, and is done once.

exports.over = function(words) {
  Response.status = 409;
  Response.json({ problem: words });
};

// The result of what a press does; of one that has been done already, nothing happens and the screen is
// answered as it is.
exports.once = function(click, act) {
  var number = Number(click.press) || 0, from = String(click.page || "").substr(0, 40),
      last = Session.lastPress;
  if (number && last && last.page === from && number <= last.number) return "";
  if (number) Session.lastPress = { page: from, number: number };
  return act();
};

exports.row = function(table, name) {
  return Object.prototype.hasOwnProperty.call(table, String(name)) ?
    table[name] :
    function() { return "There is no such click."; };
};
