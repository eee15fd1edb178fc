var said = "", status = 200;
if (Request.method === "POST") {
  var outcome = Server.signIn(Request.form.clerk || "", Request.form.pin || "");
  if (outcome === "ok") {
    Response.redirect("/");
    return;
  }
  said = outcome === "wait" ? "Too many tries. Wait a while." : "Number and PIN do not match.";
  status = outcome === "wait" ? 429 : 403;
}
Response.status = status;
Response.write("<!doctype html><html lang='en'><head><meta charset='utf-8'><title>Sign in</title></head><body>",
  "<main><h1>Sign in</h1><p role='status'>", Server.HTMLEncode(said), "</p><form method='post'>",
  "<input type='hidden' name='_token' value='", Request.token, "'>",
  "<p><label>Employee number <input name='clerk' autocomplete='username' autofocus required></label></p>",
  "<p><label>PIN <input name='pin' type='password' autocomplete='current-password' required></label></p>",
  "<p><button>Sign in</button></p></form></main></body></html>");
