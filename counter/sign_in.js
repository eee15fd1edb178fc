// A shop with clerks' PINs: nobody works without signing in.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var h = html.tag;

var said = {
  wrong: ["Number and PIN do not match. Try again.", 403],
  wait: ["Too many tries. Wait a minute, then try again.", 429]
};
var outcome =
  Request.method === "POST" ? Server.signIn(Request.form.clerk || "", Request.form.pin || "") : "";
if (outcome === "ok") return Response.redirect("/");
if (outcome) Response.status = said[outcome][1];
layout.page(
  "Sign in",
  html.all(
    outcome ? h("p", { "class": "problem", role: "alert" }, said[outcome][0]) : "",
    h("form", { method: "post", action: "/sign_in", "class": "paper narrow" }, html.raw(layout.token()),
      h("label", { "for": "clerk" }, "Employee number"), h("input", {
        id: "clerk",
        name: "clerk",
        inputmode: "numeric",
        autocomplete: "username",
        autofocus: true,
        required: true
      }),
      h("label", { "for": "pin" }, "PIN"), h("input", {
        id: "pin",
        name: "pin",
        type: "password",
        inputmode: "numeric",
        autocomplete: "current-password",
        required: true
      }),
      h("div", { "class": "finish" }, h("button", { "class": "main" }, "Sign in")))),
  { plain: true });
