// The end of a clerk's turn.
if (Request.method === "POST") Server.signOut();
Response.redirect("/");
