#include "tools/log/Texts.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "tools/log/Secrets.h"

namespace log_reader {

namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD";

size_t HostBegin(std::string_view address) {
  const size_t scheme = address.find("://");
  return scheme == address.npos ? 0 : scheme + 3;
}

// The length of the UTF-8 character at the beginning, or 0 for bytes that are none, for control
// characters and for those that turn the direction of writing.
size_t CharacterLength(std::string_view text) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return first < 0x20 || first == 0x7f ? 0 : 1;
  const size_t length = first >= 0xc2 && first < 0xe0   ? 2
                        : first >= 0xe0 && first < 0xf0 ? 3
                        : first >= 0xf0 && first < 0xf5 ? 4
                                                        : 0;
  if (length == 0 || text.size() < length) return 0;
  unsigned code = first & (0xff >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xc0) != 0x80) return 0;
    code = code << 6 | (byte(i) & 0x3f);
  }
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  const bool surrogate = code >= 0xd800 && code < 0xe000;
  const bool control = code < 0xa0 || code == 0x2028 || code == 0x2029;
  const bool turning = (code >= 0x200e && code <= 0x200f) || (code >= 0x202a && code <= 0x202e) ||
                       (code >= 0x2066 && code <= 0x2069);
  const bool no_character = (code & 0xfffe) == 0xfffe || code > 0x10ffff;
  return overlong || surrogate || control || turning || no_character ? 0 : length;
}

}  // namespace

std::string HostOf(std::string_view address) {
  const size_t begin = HostBegin(address);
  const size_t end = std::min(address.find_first_of("/?#", begin), address.size());
  std::string host(address.substr(begin, end - begin));
  // A user and a password may stand before it.
  host.erase(0, host.rfind('@') + 1);
  std::transform(host.begin(), host.end(), host.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return Printable(host, 100);
}

std::string SchemeOf(std::string_view address) {
  for (const std::string_view scheme : {"https://", "http://"}) {
    if (address.substr(0, scheme.size()) == scheme) return std::string(scheme);
  }
  return "";
}

std::string PathOf(std::string_view address, size_t most) {
  const size_t begin = std::min(address.find('/', HostBegin(address)), address.size());
  const std::string path =
      HideSecrets(address.substr(begin, address.find_first_of("?#", begin) - begin));
  if (path.size() <= most) return path.empty() ? "/" : Printable(path, most);
  const size_t half = most / 2;
  return Printable(path.substr(0, half) + "…" + path.substr(path.size() - half), most + 3);
}

std::string Printable(std::string_view text, size_t most) {
  std::string shown;
  while (!text.empty()) {
    const size_t length = CharacterLength(text);
    const std::string_view next = length ? text.substr(0, length) : kReplacement;
    if (shown.size() + next.size() > most) return shown + "…";
    shown += text[0] == '\n' || text[0] == '\r' || text[0] == '\t' ? " " : next;
    text.remove_prefix(std::max<size_t>(length, 1));
  }
  return shown;
}

std::string Foreign(std::string_view text, size_t most) {
  return Printable(HideSecrets(text), most);
}

std::string Duration(long long milliseconds) {
  char text[64];
  const long long seconds = milliseconds / 1000;
  if (seconds < 10) {
    std::snprintf(text, sizeof text, "%.3f s", static_cast<double>(milliseconds) / 1000);
  } else if (seconds < 60) {
    std::snprintf(text, sizeof text, "%.1f s", static_cast<double>(milliseconds) / 1000);
  } else if (seconds < 3600) {
    std::snprintf(text, sizeof text, "%lld min %lld s", seconds / 60, seconds % 60);
  } else {
    std::snprintf(text, sizeof text, "%lld h %lld min", seconds / 3600, seconds / 60 % 60);
  }
  return text;
}

}  // namespace log_reader
