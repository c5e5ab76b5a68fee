#include "libs/catalogUtil/Utils.h"

namespace orb::CatalogUtil {

namespace {

bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t'; }

}  // namespace

std::wstring_view Trimmed(std::wstring_view text) {
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return text;
}

void trimWhitespacesAtBeginAndEnd(std::wstring& text) { text = std::wstring(Trimmed(text)); }

bool convertStringToNumber(const std::wstring& text, unsigned int& out) {
  if (text.empty()) return false;
  unsigned int number = 0;
  for (const wchar_t digit : text) {
    if (digit < L'0' || digit > L'9') return false;
    number = number * 10 + static_cast<unsigned int>(digit - L'0');
  }
  out = number;
  return true;
}

void findAndReplace(std::wstring& text, const std::wstring& what, const std::wstring& with) {
  if (what.empty()) return;
  size_t pos = 0;
  while ((pos = text.find(what, pos)) != std::wstring::npos) {
    text.replace(pos, what.size(), with);
    pos += with.size();
  }
}

}  // namespace orb::CatalogUtil
