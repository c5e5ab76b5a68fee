#include "cef/chromium/browser/TitleText.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>
#include <utility>

#include "cef/chromium/base/Text.h"
#include "cef/chromium/base/Url.h"

namespace engine {
namespace {

constexpr int kLongest = 100;

struct Range {
  char32_t first;
  char32_t last;
};

constexpr Range kBlanks[] = {{0x09, 0x0D},     {0x20, 0x20},     {0x85, 0x85},
                             {0xA0, 0xA0},     {0x1680, 0x1680}, {0x2000, 0x200A},
                             {0x2028, 0x2029}, {0x202F, 0x202F}, {0x205F, 0x205F},
                             {0x2800, 0x2800}, {0x3000, 0x3000}, {0x3164, 0x3164}};

// Controls, marks of direction, what joins or parts invisibly, tags, private characters. The
// joiners of Indic and Persian words and of emoji stay.
constexpr Range kUnseen[] = {
    {0x00, 0x1F},     {0x7F, 0x9F},       {0xAD, 0xAD},       {0x034F, 0x034F},   {0x061C, 0x061C},
    {0x115F, 0x1160}, {0x17B4, 0x17B5},   {0x180B, 0x180F},   {0x200B, 0x200B},   {0x200E, 0x200F},
    {0x202A, 0x202E}, {0x2060, 0x206F},   {0xD800, 0xF8FF},   {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFC}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0x10FFFF}};

template <size_t count>
bool IsIn(const Range (&ranges)[count], char32_t c) {
  return std::any_of(std::begin(ranges), std::end(ranges),
                     [c](const Range& range) { return range.first <= c && c <= range.last; });
}

// The next character; one that is no UTF-8 is left out as unseen.
char32_t Next(std::string_view* text) {
  const auto at = [&](size_t i) { return static_cast<unsigned char>((*text)[i]); };
  const unsigned char lead = at(0);
  const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  char32_t c = length == 1 ? lead : lead & (0x7F >> length);
  size_t used = 1;
  while (used < length && used < text->size() && (at(used) & 0xC0) == 0x80) {
    c = c << 6 | (at(used++) & 0x3F);
  }
  text->remove_prefix(used);
  return used == length && (lead < 0x80 || lead >= 0xC2) ? c : 0;
}

std::string Clean(std::string_view text) {
  std::string clean;
  bool blank = false;
  int count = 0;
  while (!text.empty()) {
    const std::string_view rest = text;
    const char32_t c = Next(&text);
    if (IsIn(kBlanks, c)) {
      blank = !clean.empty();
      continue;
    }
    if (IsIn(kUnseen, c)) continue;
    count += blank ? 2 : 1;
    if (count > kLongest) return clean + "\u2026";
    if (std::exchange(blank, false)) clean += ' ';
    clean += rest.substr(0, rest.size() - text.size());
  }
  return clean;
}

}  // namespace

std::string HostToShow(const std::string& url) {
  Url parts;
  if (!ParseUrl(url, &parts) || parts.host.empty()) return "";
  if (parts.scheme != "http" && parts.scheme != "https") return "";
  const size_t begin = url.find_first_not_of("/\\", url.find(':') + 1);
  std::string authority = url.substr(begin, url.find_first_of("/\\?#", begin) - begin);
  authority.erase(0, authority.rfind('@') + 1);
  const size_t port = authority.find(':', authority.rfind(']') + 1);
  return port == std::string::npos ? parts.host : parts.host + authority.substr(port);
}

std::string TitleText(const std::string& host, const std::string& page_title) {
  std::string title = Clean(page_title);
  // A page without one goes by its address.
  if (title == host || StartsWith(title, host + "/")) title.clear();
  if (title.empty()) return host;
  // A number has no direction of its own and would follow that of the page's title.
  const bool letters =
      std::any_of(host.begin(), host.end(), [](unsigned char c) { return isalpha(c) != 0; });
  return (letters ? "" : "\u200E") + host + " \u2013 " + title;
}

std::string FailedTitle(const std::string& host) { return host + " cannot be reached"; }

}  // namespace engine
