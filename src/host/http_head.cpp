#include "host/http_head.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace ondrel {
namespace {

constexpr size_t kLongestPath = 1024;
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kTokenSigns = "!#$%&'*+-.^_`|~";

bool isToken(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) {
    return isLetter(c) || isDigit(c) || kTokenSigns.find(c) != std::string_view::npos;
  });
}

bool isVisible(char c) {
  return c > ' ' && c < 0x7F;
}

// Bytes of other character sets are no mark of a line's end to anybody.
bool isValue(std::string_view text) {
  return std::ranges::all_of(text, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return c == '\t' || (byte >= ' ' && byte != 0x7F);
  });
}

std::string_view takeLine(std::string_view& head) {
  const size_t end = head.find(kLineEnd);
  const std::string_view line = head.substr(0, end);
  head.remove_prefix(std::min(head.size(), line.size() + kLineEnd.size()));
  return line;
}

bool readRequestLine(std::string_view line, HttpRequest& request) {
  const size_t first = line.find(' ');
  const size_t second = line.find(' ', first + 1);
  if (first == std::string_view::npos || second == std::string_view::npos) return false;
  const std::string_view method = line.substr(0, first), version = line.substr(second + 1);
  const std::string_view target = line.substr(first + 1, second - first - 1);
  if (!isToken(method) || !target.starts_with('/') || !std::ranges::all_of(target, isVisible)) return false;
  request.method = method;
  request.path = target.substr(0, target.find('?'));
  return version == "HTTP/1.1" || version == "HTTP/1.0";
}

bool readHeaders(std::string_view lines, HttpRequest& request) {
  while (!lines.empty()) {
    const std::string_view line = takeLine(lines);
    if (line.empty()) return lines.empty();
    const size_t colon = line.find(':');
    if (colon == std::string_view::npos || !isToken(line.substr(0, colon))) return false;
    if (!isValue(line.substr(colon + 1))) return false;
    request.headers.emplace_back(toLower(line.substr(0, colon)), trim(line.substr(colon + 1)));
  }
  return false;
}

int refusalOf(const HttpRequest& request, const HttpLimits& limits) {
  const auto count = [&](std::string_view name) {
    return std::ranges::count_if(request.headers, [&](const auto& header) { return header.first == name; });
  };
  const std::string_view length = valueOf(request.headers, "content-length");
  const auto lengths = count("content-length");
  const bool isPost = request.method == "POST";
  if (lengths > 1 || count("host") > 1) return 400;
  if (lengths == 1 && (length.empty() || !std::ranges::all_of(length, isDigit))) return 400;
  if (!isPost && request.method != "GET" && request.method != "HEAD") return 405;
  if (count("transfer-encoding") > 0 || (isPost && lengths == 0)) return 411;
  size_t bytes = 0;
  const auto read = std::from_chars(length.data(), length.data() + length.size(), bytes);
  if (lengths == 1 && (read.ec != std::errc() || bytes > limits.bodyBytes)) return isPost ? 413 : 400;
  if (!isPost && bytes > 0) return 400;
  if (request.path.size() > kLongestPath) return 414;
  if (count("content-encoding") > 0) return 415;
  if (count("range") > 0) return 416;
  const bool expects = count("expect") > 0;
  return expects && !equalsIgnoringCase(valueOf(request.headers, "expect"), "100-continue") ? 417 : 0;
}

}  // namespace

std::optional<size_t> headEnd(std::string_view bytes, size_t searched) {
  constexpr std::string_view kEnd = "\r\n\r\n";
  const size_t from = searched < kEnd.size() ? 0 : searched - kEnd.size();
  const size_t end = bytes.find(kEnd, from);
  for (size_t at = from; (at = bytes.find('\n', at)) < end; ++at)
    if (at == 0 || bytes[at - 1] != '\r') return at + 1;
  return end == std::string_view::npos ? std::nullopt : std::optional(end + kEnd.size());
}

HttpRequest readHead(std::string_view head, const HttpLimits& limits) {
  HttpRequest request;
  std::string_view rest = head;
  const bool isWhole = readRequestLine(takeLine(rest), request) && readHeaders(rest, request);
  request.refusal = isWhole ? refusalOf(request, limits) : 400;
  return request;
}

}  // namespace ondrel
