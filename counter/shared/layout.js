// What all pages have around them.
exports.page = function (title, content) {
  Response.write("<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n",
    "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n",
    "<meta name=\"request-token\" content=\"", Request.token, "\">\n",
    "<title>", Server.HTMLEncode(title), "</title>\n",
    "<link rel=\"stylesheet\" href=\"/assets/counter.css\">\n</head>\n<body>\n<main>\n<h1>",
    Server.HTMLEncode(title), "</h1>\n", content, "\n</main>\n</body>\n</html>\n");
};
