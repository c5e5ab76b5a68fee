// The texts of the user interface, read as the program reads them.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "libs/catalogUtil/MessageCatalog.h"
#include "libs/catalogUtil/ResourceCatalog.h"
#include "libs/catalogUtil/ResourceIds.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxaccess/utf8.h"
#include "tools/doctor/CatalogFile.h"
#include "tools/doctor/Checks.h"

namespace doctor {

namespace {

using orb::CatalogUtil::MessageCatalog;
using orb::CatalogUtil::ResourceCatalog;

constexpr wchar_t kEnglish[] = L"EN";

std::wstring InLanguage(std::wstring path, const std::wstring& language) {
  const size_t mark = path.rfind(L"_EN");
  return mark == std::wstring::npos ? path : path.replace(mark + 1, 2, language);
}

std::vector<std::wstring> MessageFiles() {
  std::vector<std::wstring> files;
  MessageCatalog().getFilepaths(files);
  return files;
}

std::vector<std::wstring> EnglishFiles() {
  std::vector<std::wstring> files = MessageFiles();
  files.insert(files.begin(), InstallPaths::kResourceCatalog);
  return files;
}

// The languages that any catalog is there in. English comes first; a run cannot do without it.
std::vector<std::wstring> Languages() {
  std::set<std::wstring> others;
  for (const std::wstring& file : EnglishFiles()) {
    const std::filesystem::path english(WideToUtf8(file));
    std::string start = english.stem().string();
    if (start.size() < 3 || start.substr(start.size() - 3) != "_EN") continue;
    start.erase(start.size() - 2);
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(english.parent_path(), error)) {
      const std::string name = entry.path().stem().string();
      if (entry.path().extension() != ".txt" || name.rfind(start, 0) != 0) continue;
      others.insert(Utf8ToWide(name.substr(start.size())));
    }
  }
  others.erase(kEnglish);
  std::vector<std::wstring> languages = {kEnglish};
  languages.insert(languages.end(), others.begin(), others.end());
  return languages;
}

std::string MissingTexts(const std::wstring& file, bool* loads) {
  ResourceCatalog catalog;
  *loads = catalog.loadFile(file.c_str(), nullptr);
  std::string missing;
  for (const unsigned int id : kResourceTexts) {
    std::wstring text;
    if (!catalog.getString(id, text) || text.empty()) missing += " " + std::to_string(id);
  }
  return missing;
}

}  // namespace

Finding CheckCatalogs() {
  const std::vector<std::wstring> messages = MessageFiles();
  if (messages.empty()) {
    return Failure("catalogs",
                   WideToUtf8(InstallPaths::kAccessIni) + " is missing or lists no catalog");
  }
  std::string odd, names;
  for (const std::wstring& language : Languages()) {
    names += " " + WideToUtf8(language);
    std::vector<std::wstring> failed;
    const std::wstring texts = InLanguage(InstallPaths::kResourceCatalog, language);
    bool loads = false;
    const std::string missing = MissingTexts(texts, &loads);
    if (!loads) failed.push_back(texts);
    if (loads && !missing.empty() && odd.empty()) odd = WideToUtf8(texts) + " lacks" + missing;
    for (const std::wstring& file : messages) {
      const std::wstring variant = InLanguage(file, language);
      if (!MessageCatalog().loadFile(variant.c_str(), nullptr)) failed.push_back(variant);
    }
    if (failed.empty()) continue;
    const std::string found =
        WideToUtf8(failed[0]) + " is missing, unreadable or begins without the UTF-8 mark";
    if (language == kEnglish) return Failure("catalogs", found);
    if (odd.empty()) odd = found;
  }
  if (!odd.empty()) return Warning("catalogs", odd);
  return Ok("catalogs", "complete in" + names);
}

Finding CheckCatalogEncoding() {
  for (const std::wstring& language : Languages()) {
    for (const std::wstring& file : EnglishFiles()) {
      const std::string path = WideToUtf8(InLanguage(file, language));
      std::ifstream in(path, std::ios::binary);
      const std::string content{std::istreambuf_iterator<char>(in), {}};
      if (const int line = FirstBadLine(content)) {
        return Warning("catalog-encoding",
                       path + ", line " + std::to_string(line) + " is not UTF-8");
      }
    }
  }
  return Ok("catalog-encoding", "UTF-8");
}

}  // namespace doctor
