#include "platform/UserLanguages.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <sstream>

namespace {

constexpr size_t kMostLanguages = 10;

// "de-AT" of "de_AT.UTF-8@euro"; "" of what names no language.
std::string LanguageOf(std::string locale) {
  locale.erase(std::min(locale.find_first_of(".@"), locale.size()));
  for (char& c : locale) {
    if (c == '_') c = '-';
    if (c != '-' && !isalnum(static_cast<unsigned char>(c))) return "";
  }
  const size_t code = std::min(locale.find('-'), locale.size());
  return code == 2 || code == 3 ? locale : "";
}

}  // namespace

std::vector<std::string> UserLanguages() {
  std::string named;
  for (const char* variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const value = getenv(variable);
    if (named.empty() && value) named = value;
  }
  std::vector<std::string> languages;
  std::istringstream entries(named);
  for (std::string entry; std::getline(entries, entry, ':');) {
    const std::string language = LanguageOf(entry);
    if (!language.empty() && languages.size() < kMostLanguages) languages.push_back(language);
  }
  return languages;
}
