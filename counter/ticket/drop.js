// The ticket in progress is given up.
if (Request.method === "POST") delete Session.invoice;
Response.redirect("/");
