// A step at the rack: put, off, see, told, again.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var racks = Server.include("shared/racks.js");

if (Request.method !== "POST") return Response.redirect("/rack");
if (!desk.staffed()) return;
var form = Request.form, number = text.whole(form.ticket), words = {
  put: function() { return "Hangs at " + racks.placeOf(form.place) + ": ready."; },
  off: function() { return "Taken off the rack."; },
  see: function() { return "Piece " + text.clean(form.code, 20) + " seen."; },
  told: function() { return "Written down."; },
  again: function() { return "Back in the queue."; }
};
var acts = {
  // The scanner may have read another ticket instead of a place.
  put: function() {
    var other = racks.read(form.place);
    return other.ticket && other.ticket !== number ? { instead: String(form.place) } :
                                                     racks.put(number, form.place, form.also === "1");
  },
  off: function() { return racks.takeOff(number); },
  see: function() { return racks.see(number, text.clean(form.code, 20)); },
  told: function() { return racks.told(number); },
  again: function() { return racks.again(text.whole(form.message)); }
};
if (!Object.prototype.hasOwnProperty.call(acts, String(form.act))) return Response.redirect("/rack");
var result = shop.change(acts[form.act]);
if (result.instead) return Response.redirect("/rack?scan=" + encodeURIComponent(result.instead));
Session.rackSaid = result.problem ? { problem: result.problem } : { words: words[form.act]() };
if (form.act === "told" || form.act === "again") return Response.redirect("/rack/tell");
Response.redirect(result.problem || form.act === "see" ? "/rack?ticket=" + number : "/rack");
