#include "GUI/cefBrowser/CookieStandIns.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string_view>

namespace {

constexpr std::string_view kBetween = "; ";
// Both kinds of sign-in have one.
constexpr std::string_view kStatus = "EBSTATUS";

// Nobody can look for a value that gives the mark without this process's key.
std::uint32_t Mark(std::string_view value) {
  static const std::uint64_t key = [] {
    std::random_device random;
    return std::uint64_t{random()} << 32 | random();
  }();
  std::uint64_t mark = key;
  for (const unsigned char byte : value) mark = (mark ^ byte) * 0x100000001b3 + (mark >> 29);
  return static_cast<std::uint32_t>((mark ^ key) >> 32);
}

}  // namespace

std::string CookieStandIns(const std::string& cookies) {
  std::string shown;
  std::string_view rest = cookies;
  while (!rest.empty()) {
    const size_t end = std::min(rest.find(kBetween), rest.size());
    const std::string_view item = rest.substr(0, end);
    rest.remove_prefix(std::min(end + kBetween.size(), rest.size()));
    // A cookie without a name is all value.
    const size_t equals = item.find('=');
    const std::string_view name = equals == item.npos ? "" : item.substr(0, equals);
    const std::string_view value = equals == item.npos ? item : item.substr(equals + 1);
    if (!shown.empty()) shown += kBetween;
    shown += name;
    shown += '=';
    if (name.find(kStatus) != name.npos) {
      shown += value;
      continue;
    }
    char stand_in[32];
    std::snprintf(stand_in, sizeof stand_in, "%zu.%08x", value.size(), Mark(value));
    shown += stand_in;
  }
  return shown;
}
