#include "libs/catalogUtil/MessageCatalog.h"

#include <mutex>

#include "libs/catalogUtil/CatalogParser.h"
#include "libs/catalogUtil/Utils.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxaccess/utf8.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace orb::CatalogUtil {

namespace {

constexpr unsigned int kHighestId = 9999;

void LogLoadError(int level, const std::string& path) {
  KXLOG(level, "CatalogUtil", "Error loading message catalog file %s", path.c_str());
}

}  // namespace

void MessageCatalog::AccessIniCatalog::onCatalogRecord(const std::wstring& section,
                                                       const std::wstring&,
                                                       const std::wstring& value) {
  if (section == L"MessageCatalogFiles") m_paths.push_back(value);
}

bool MessageCatalog::load(const wchar_t* path, const wchar_t* language) {
  if (!loadFile(path, language)) {
    LogLoadError(1, path ? WideToUtf8(path) : "(null)");
    return false;
  }
  const std::wstring branding = getBrandingFilePath();
  return branding.empty() || loadFile(branding.c_str(), language);
}

bool MessageCatalog::loadFile(const wchar_t* path, const wchar_t* language) {
  const std::lock_guard<os_mutex> lock(m_mutex);
  if (!path || !*path) return LoadListed(language);
  if (!CatalogParser(*this).loadCatalogFile(path, FileEncoding::kUtf8WithMark)) {
    LogLoadError(1, WideToUtf8(path));
    return false;
  }
  loadLocalized(path, language);
  return true;
}

bool MessageCatalog::LoadListed(const wchar_t* language) {
  std::vector<std::wstring> paths;
  getFilepaths(paths);
  if (paths.empty()) {
    // The text is kept as it has always been, spelling and blanks included.
    KXLOG(2, "CatalogUtil",
          "Can't retrieve any message-catelog filepaths             using VELD access.ini.");
    return false;
  }
  bool all = true;
  for (const std::wstring& path : paths) {
    if (CatalogParser(*this).loadCatalogFile(path.c_str(), FileEncoding::kUtf8WithMark)) {
      loadLocalized(path.c_str(), language);
    } else {
      LogLoadError(2, WideToUtf8(path));
      all = false;
    }
  }
  return all;
}

void MessageCatalog::getFilepaths(std::vector<std::wstring>& out) {
  AccessIniCatalog catalog(out);
  CatalogParser(catalog).loadCatalogFile(InstallPaths::kAccessIni, FileEncoding::kAnyBytes);
}

void MessageCatalog::onCatalogRecord(const std::wstring& section, const std::wstring& key,
                                     const std::wstring& value) {
  const std::lock_guard<os_mutex> lock(m_mutex);
  unsigned int id;
  if (!convertStringToNumber(section, id) || id > kHighestId) return;
  // A record comes into being even when its key means nothing.
  MessageRecord& record = m_records.try_emplace(id, section, L"", L"").first->second;
  if (key == L"Short-desc") record.shortDesc = value;
  if (key == L"Long-desc") record.longDesc = value;
}

}  // namespace orb::CatalogUtil
