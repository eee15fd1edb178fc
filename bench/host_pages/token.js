// Gives the browser its token.
Response.write(Request.token);
