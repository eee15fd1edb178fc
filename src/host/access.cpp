#include "host/access.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <utility>

#include "base/text.h"

namespace ondrel {
namespace {

// clang-format off
constexpr std::array<std::pair<std::string_view, std::string_view>, 6> kSecurityHeaders = {{
    {"Content-Security-Policy", "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; "
                                "font-src 'self'; connect-src 'self'; form-action 'self'; base-uri 'none'; "
                                "frame-ancestors 'none'"},
    {"X-Content-Type-Options",       "nosniff"},
    {"X-Frame-Options",              "DENY"},
    {"Referrer-Policy",              "same-origin"},
    {"Cross-Origin-Opener-Policy",   "same-origin"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
}};
// clang-format on

// "localhost:8080" without its port, "[::1]:8080" without its brackets as well; empty for anything else.
std::string nameOf(std::string_view host) {
  const bool isBracketed = host.starts_with('[');
  const size_t end = isBracketed ? host.find(']') : std::min(host.find(':'), host.size());
  if (end == std::string_view::npos) return "";
  const std::string_view port = host.substr(end + (isBracketed ? 1 : 0));
  if (!port.empty() && (port.front() != ':' || !std::ranges::all_of(port.substr(1), isDigit))) return "";
  return toLower(isBracketed ? host.substr(1, end - 1) : host.substr(0, end));
}

// A foreign site cannot have its name resolve to here when it comes without a name.
bool isAddress(const std::string& name) {
  in6_addr bytes{};
  return ::inet_pton(AF_INET, name.c_str(), &bytes) == 1 || ::inet_pton(AF_INET6, name.c_str(), &bytes) == 1;
}

}  // namespace

bool isLoopback(std::string_view address) {
  return address.starts_with("127.") || address == "::1" || address == "localhost" ||
         address.starts_with("::ffff:127.");
}

Access::Access(std::string_view address, std::vector<std::string> names)
    : anyAddress_(!isLoopback(address) && names.empty()), names_(std::move(names)) {
  for (std::string& name : names_) name = toLower(name);
  names_.emplace_back(toLower(address));
  names_.insert(names_.end(), {"localhost", "127.0.0.1", "::1"});
}

bool Access::isOurs(std::string_view host) const {
  const std::string name = nameOf(host);
  return std::ranges::find(names_, name) != names_.end() || (anyAddress_ && isAddress(name));
}

std::optional<PageAnswer> Access::refusal(const HttpRequest& request) const {
  const bool isChanging = request.method == "POST";
  const std::string_view host = valueOf(request.headers, "host");
  if (host.empty() || !isOurs(host)) return plainAnswer(421, "This host has another name.");
  const std::string_view origin = valueOf(request.headers, "origin");
  if (!isChanging || origin.empty()) return std::nullopt;
  const size_t scheme = origin.find("://");
  const std::string_view caller = scheme == std::string_view::npos ? "" : origin.substr(scheme + 3);
  const bool isSame = caller == host || (!anyAddress_ && !caller.empty() && isOurs(caller));
  return isSame ? std::nullopt : std::optional(plainAnswer(403, "This request comes from another site."));
}

void addSecurityHeaders(PageAnswer& answer) {
  for (const auto& [name, value] : kSecurityHeaders) answer.headers.emplace_back(name, value);
}

}  // namespace ondrel
