#include "host/secrets.h"

#include <fmt/format.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "base/error.h"

namespace ondrel {
namespace {

constexpr size_t kIdBytes = 16;
constexpr size_t kSaltBytes = 16;
constexpr size_t kHashBytes = 32;
constexpr std::string_view kScheme = "scrypt-16384-8-1$";
constexpr std::uint64_t kCost = 16384, kBlock = 8, kLanes = 1;
constexpr std::uint64_t kHashMemory = std::uint64_t{32} << 20;

std::string hexadecimal(std::span<const unsigned char> bytes) {
  std::string result;
  for (const unsigned char byte : bytes) fmt::format_to(std::back_inserter(result), "{:02x}", byte);
  return result;
}

template <size_t count>
std::string randomDigits() {
  std::array<unsigned char, count> bytes{};
  if (::getentropy(bytes.data(), bytes.size()) != 0)
    throw Error(ErrorNumber::InvalidCall, "Host", "The machine gives no random bytes");
  return hexadecimal(bytes);
}

std::string slowHash(std::string_view pin, std::string_view salt) {
  std::array<unsigned char, kHashBytes> hash{};
  const auto* saltBytes = reinterpret_cast<const unsigned char*>(salt.data());
  if (EVP_PBE_scrypt(pin.data(), pin.size(), saltBytes, salt.size(), kCost, kBlock, kLanes, kHashMemory,
                     hash.data(), hash.size()) != 1)
    throw Error(ErrorNumber::InvalidCall, "Host", "The PIN could not be hashed");
  return hexadecimal(hash);
}

bool isHexadecimal(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

}  // namespace

std::string randomId() {
  return randomDigits<kIdBytes>();
}

bool isRandomId(std::string_view text) {
  return text.size() == 2 * kIdBytes && std::all_of(text.begin(), text.end(), isHexadecimal);
}

std::string digestOf(std::string_view purpose, std::string_view secret) {
  std::string text(purpose);
  text += '\n';
  text += secret;
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned int length = 0;
  if (EVP_Digest(text.data(), text.size(), digest.data(), &length, EVP_sha256(), nullptr) != 1)
    throw Error(ErrorNumber::InvalidCall, "Host", "No digest could be made");
  return hexadecimal(std::span(digest).first(length));
}

bool isSameSecret(std::string_view a, std::string_view b) {
  return a.size() == b.size() && CRYPTO_memcmp(a.data(), b.data(), a.size()) == 0;
}

std::string hashPin(std::string_view pin) {
  const std::string salt = randomDigits<kSaltBytes>();
  return std::string(kScheme) + salt + "$" + slowHash(pin, salt);
}

bool isPinOf(std::string_view pin, std::string_view hash) {
  if (!hash.starts_with(kScheme)) return false;
  hash.remove_prefix(kScheme.size());
  const size_t end = hash.find('$');
  if (end == std::string_view::npos) return false;
  return isSameSecret(slowHash(pin, hash.substr(0, end)), hash.substr(end + 1));
}

}  // namespace ondrel
