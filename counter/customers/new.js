// A stranger. What was looked for in vain stands in the form already.
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var form = Server.include("shared/person_form.js");

if (!desk.staffed()) return;
var words = text.clean(Request.query.q, 60).replace(/^\s+|\s+$/g, "");
var phone = (/[\d][\d\s().+-]{5,}$/.exec(words) || [""])[0],
    names = words.substr(0, words.length - phone.length)
              .split(/[\s,]+/)
              .filter(function(one) { return one && !/\d/.test(one); });
function capital(one) { return one.charAt(0).toUpperCase() + one.substr(1); }
var isTurned = /^[^\s,]+,/.test(words);
if (isTurned) names.push(names.shift());
layout.page(
  "New customer", form.form({
    firstName: names.length > 1 ? capital(names[0]) : "",
    lastName: capital(names.slice(names.length > 1 ? 1 : 0).join(" ")),
    phone: phone,
    deliveries: {},
    preferences: {}
  }),
  { styles: ["shop.css"] });
