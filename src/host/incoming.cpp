#include "host/incoming.h"

#include "base/text.h"
#include "host/access.h"
#include "host/url_text.h"

namespace ondrel {
namespace {

constexpr std::string_view kTokenField = "_token";
constexpr std::string_view kNumberField = "_number";
constexpr std::string_view kTokenHeader = "x-request-token";
constexpr std::string_view kNumberHeader = "x-request-number";
constexpr size_t kLongestNumber = 64;

std::string_view contentTypeOf(const NamedTexts& headers) {
  const std::string_view value = valueOf(headers, "content-type");
  return trim(value.substr(0, value.find(';')));
}

std::string take(NamedTexts& texts, std::string_view name) {
  std::string value(valueOf(texts, name));
  std::erase_if(texts, [&](const auto& text) { return text.first == name; });
  return value;
}

}  // namespace

Incoming incomingOf(const HttpRequest& request, const PageFile& page) {
  Incoming incoming;
  PageRequest& target = incoming.page;
  target.method = request.method == "POST" ? "POST" : "GET";
  target.path = request.path;
  target.page = page.name;
  target.query = parseForm(request.query);
  target.headers = request.headers;
  target.address = request.address;
  incoming.sessionId = cookieValue(take(target.headers, "cookie"), kSessionCookie);
  incoming.token = take(target.headers, kTokenHeader);
  target.number = take(target.headers, kNumberHeader);
  if (!target.isChanging()) return incoming;
  target.contentType = toLower(contentTypeOf(request.headers));
  if (target.contentType == kFormType)
    target.form = parseForm(request.body);
  else
    target.body = request.body;
  const std::string token = take(target.form, kTokenField);
  const std::string number = take(target.form, kNumberField);
  if (incoming.token.empty()) incoming.token = token;
  if (target.number.empty()) target.number = number;
  return incoming;
}

HttpRequest asProxied(HttpRequest request) {
  if (!isLoopback(request.address)) return request;
  for (const auto& [name, asked] : request.headers)
    if (name == "x-forwarded-for") request.address = trim(asked.substr(asked.rfind(',') + 1));
  return request;
}

bool isRequestNumber(std::string_view text) {
  if (text.size() > kLongestNumber) return false;
  for (const char c : text)
    if (!isLetter(c) && !isDigit(c) && c != '-') return false;
  return true;
}

}  // namespace ondrel
