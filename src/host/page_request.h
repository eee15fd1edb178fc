#pragma once

#include <string>
#include <string_view>

#include "host/url_text.h"

namespace ondrel {

inline constexpr std::string_view kFormType = "application/x-www-form-urlencoded";
inline constexpr std::string_view kJsonType = "application/json";

// What a browser asks of a page.
struct PageRequest {
  std::string method;  // GET or POST
  std::string path;    // decoded, without the query
  std::string page;    // the file of the page: "ticket.js"
  NamedTexts query;
  NamedTexts form;
  std::string contentType;  // without parameters, in lower case
  std::string body;
  NamedTexts headers;   // names in lower case; without cookies and token
  std::string address;  // of the browser
  // Given by a page to one changing request; a repetition with the same number is answered from memory.
  std::string number;

  // A changing request carries the token, is journalled and may carry a number.
  bool isChanging() const { return method == "POST"; }
};

struct PageAnswer {
  int status = 200;
  std::string contentType = "text/html; charset=utf-8";
  NamedTexts headers;
  std::string body;
};

inline PageAnswer plainAnswer(int status, std::string_view text) {
  return {status, "text/plain; charset=utf-8", {}, std::string(text) + "\n"};
}

}  // namespace ondrel
