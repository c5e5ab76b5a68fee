#include "libs/catalogUtil/Utils.h"

namespace orb::CatalogUtil {

void trimWhitespacesAtBeginAndEnd(std::wstring& text) {
  constexpr wchar_t kBlanks[] = L" \t";
  const size_t last = text.find_last_not_of(kBlanks);
  text.erase(last == std::wstring::npos ? 0 : last + 1);
  text.erase(0, text.find_first_not_of(kBlanks));
}

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
