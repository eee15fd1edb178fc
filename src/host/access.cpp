#include "host/access.h"

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

// "localhost:8080" without its port, "[::1]:8080" without its brackets as well.
std::string nameOf(std::string_view host) {
  if (host.starts_with('[')) return toLower(host.substr(1, host.find(']') - 1));
  return toLower(host.substr(0, host.find(':')));
}

}  // namespace

bool isLoopback(std::string_view address) {
  return address.starts_with("127.") || address == "::1" || address == "localhost" ||
         address.starts_with("::ffff:127.");
}

Access::Access(std::string_view address, std::vector<std::string> names)
    : anyName_(!isLoopback(address) && names.empty()), names_(std::move(names)) {
  for (std::string& name : names_) name = toLower(name);
  names_.emplace_back(toLower(address));
  if (isLoopback(address)) names_.insert(names_.end(), {"localhost", "127.0.0.1", "::1"});
}

bool Access::isOurs(std::string_view host) const {
  return anyName_ || std::ranges::find(names_, nameOf(host)) != names_.end();
}

std::optional<PageAnswer> Access::refusal(const HttpRequest& request) const {
  const bool isChanging = request.method == "POST";
  if (request.method != "GET" && request.method != "HEAD" && !isChanging)
    return plainAnswer(405, "This host answers GET, HEAD and POST.");
  const std::string_view host = valueOf(request.headers, "host");
  if (host.empty() || !isOurs(host)) return plainAnswer(421, "This host has another name.");
  const std::string_view origin = valueOf(request.headers, "origin");
  if (!isChanging || origin.empty()) return std::nullopt;
  const size_t scheme = origin.find("://");
  const std::string_view caller = scheme == std::string_view::npos ? "" : origin.substr(scheme + 3);
  const bool isSame = caller == host || (!anyName_ && !caller.empty() && isOurs(caller));
  return isSame ? std::nullopt : std::optional(plainAnswer(403, "This request comes from another site."));
}

void addSecurityHeaders(PageAnswer& answer) {
  for (const auto& [name, value] : kSecurityHeaders) answer.headers.emplace_back(name, value);
}

}  // namespace ondrel
