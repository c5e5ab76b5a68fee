#include "libs/catalogUtil/BaseCatalog.h"

#include <cwctype>

#include "libs/kxaccess/utf8.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace orb::CatalogUtil {

namespace {

constexpr wchar_t kEnglishMark[] = L"_EN";

std::wstring VariantPath(const std::wstring& path, const std::wstring& language) {
  std::wstring variant = path;
  return variant.replace(variant.find(kEnglishMark) + 1, 2, language);
}

bool LoadVariant(BaseCatalog& catalog, const std::wstring& path) {
  if (CatalogParser(catalog).loadCatalogFile(path.c_str(), FileEncoding::kUtf8WithMark))
    return true;
  KXLOG(5, "CatalogUtil", "Error loading catalog file: %s", WideToUtf8(path).c_str());
  return false;
}

}  // namespace

void BaseCatalog::loadLocalized(const wchar_t* path, const wchar_t* language) {
  if (!path || !*path || !language || !*language) return;
  const std::wstring base = path;
  if (base.find(kEnglishMark) == std::wstring::npos) return;

  std::wstring code = language;
  for (wchar_t& c : code) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
  if (code == L"EN-US") return;
  if (LoadVariant(*this, VariantPath(base, code))) return;

  const size_t region = code.find(L'-');
  if (region == std::wstring::npos) return;
  code.erase(region);
  if (code != L"EN") LoadVariant(*this, VariantPath(base, code));
}

void BaseCatalog::setBrandingFilePath(const wchar_t* path) {
  if (path && *path) m_brandingFilePath = path;
}

}  // namespace orb::CatalogUtil
