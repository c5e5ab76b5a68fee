#include "libs/catalogUtil/BaseCatalog.h"

#include <cwctype>

#include "libs/kxaccess/utf8.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace orb::CatalogUtil {

namespace {

constexpr wchar_t kEnglishMark[] = L"_EN";

bool LoadVariant(BaseCatalog& catalog, const std::wstring& path) {
  if (CatalogParser(catalog).loadCatalogFile(path.c_str(), FileEncoding::kUtf8WithMark))
    return true;
  KXLOG(5, "CatalogUtil", "Error loading catalog file: %s", WideToUtf8(path).c_str());
  return false;
}

}  // namespace

std::vector<std::wstring> VariantPaths(const std::wstring& path, const std::wstring& language) {
  const size_t mark = path.find(kEnglishMark);
  if (mark == std::wstring::npos || language.empty()) return {};
  std::wstring code = language;
  for (wchar_t& c : code) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
  if (code == L"EN-US") return {};

  std::vector<std::wstring> paths;
  const auto add = [&] { paths.push_back(std::wstring(path).replace(mark + 1, 2, code)); };
  add();
  const size_t region = code.find(L'-');
  if (region == std::wstring::npos) return paths;
  code.erase(region);
  if (code != L"EN") add();
  return paths;
}

void BaseCatalog::loadLocalized(const wchar_t* path, const wchar_t* language) {
  if (!path || !language) return;
  for (const std::wstring& variant : VariantPaths(path, language)) {
    if (LoadVariant(*this, variant)) return;
  }
}

void BaseCatalog::setBrandingFilePath(const wchar_t* path) {
  if (path && *path) m_brandingFilePath = path;
}

}  // namespace orb::CatalogUtil
