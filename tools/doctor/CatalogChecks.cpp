// The texts of the user interface, read as the program reads them.

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "libs/catalogUtil/MessageCatalog.h"
#include "libs/catalogUtil/ResourceCatalog.h"
#include "libs/catalogUtil/ResourceIds.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxaccess/utf8.h"
#include "tools/doctor/Checks.h"

namespace doctor {

namespace {

using orb::CatalogUtil::MessageCatalog;
using orb::CatalogUtil::ResourceCatalog;

// The texts and buttons of the question about a certificate.
constexpr unsigned int kNeededTexts[] = {kResourceAcceptCertificate, kResourceRefuseCertificate,
                                         kUntrustedAuthorityText, kOtherFaultText,
                                         kContinueQuestion};

constexpr wchar_t kEnglish[] = L"_EN";
constexpr const wchar_t* kOtherLanguages[] = {L"_DE", L"_FR"};

std::wstring InLanguage(std::wstring path, const wchar_t* language) {
  const size_t mark = path.rfind(kEnglish);
  return mark == std::wstring::npos ? path : path.replace(mark, 3, language);
}

std::vector<std::wstring> MessageFiles() {
  std::vector<std::wstring> files;
  MessageCatalog().getFilepaths(files);
  return files;
}

// The English files come first; a run cannot do without them.
std::vector<std::wstring> AllFiles() {
  std::vector<std::wstring> files = MessageFiles();
  files.insert(files.begin(), InstallPaths::kResourceCatalog);
  const std::vector<std::wstring> english = files;
  for (const wchar_t* language : kOtherLanguages) {
    for (const std::wstring& file : english) files.push_back(InLanguage(file, language));
  }
  return files;
}

std::string MissingTexts(const std::wstring& file, bool* loads) {
  ResourceCatalog catalog;
  *loads = catalog.loadFile(file.c_str(), nullptr);
  std::string missing;
  for (const unsigned int id : kNeededTexts) {
    std::wstring text;
    if (!catalog.getString(id, text) || text.empty()) missing += " " + std::to_string(id);
  }
  return missing;
}

// The number of the first line with bytes that are not UTF-8; 0 when there is none.
int FirstBadLine(const std::string& content) {
  const char* const end = content.data() + content.size();
  _dcfUtf8RefIn in(content.data(), end);
  std::uint32_t code_point;
  while (in.position() != end) {
    const char* const at = in.position();
    if (!in.Get(code_point)) return 1 + static_cast<int>(std::count(content.data(), at, '\n'));
  }
  return 0;
}

}  // namespace

Finding CheckCatalogs() {
  const std::vector<std::wstring> messages = MessageFiles();
  if (messages.empty()) {
    return Failure("catalogs",
                   WideToUtf8(InstallPaths::kAccessIni) + " is missing or lists no catalog");
  }
  std::string odd;
  for (const wchar_t* language : {kEnglish, kOtherLanguages[0], kOtherLanguages[1]}) {
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
  return Ok("catalogs", "complete in English, German and French");
}

Finding CheckCatalogEncoding() {
  for (const std::wstring& file : AllFiles()) {
    const std::string path = WideToUtf8(file);
    std::ifstream in(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(in), {}};
    if (const int line = FirstBadLine(content)) {
      return Warning("catalog-encoding", path + ", line " + std::to_string(line) + " is not UTF-8");
    }
  }
  return Ok("catalog-encoding", "UTF-8");
}

}  // namespace doctor
