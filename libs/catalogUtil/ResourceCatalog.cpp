#include "libs/catalogUtil/ResourceCatalog.h"

#include <mutex>

#include "libs/catalogUtil/CatalogParser.h"
#include "libs/catalogUtil/Utils.h"
#include "libs/kxaccess/utf8.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace orb::CatalogUtil {

namespace {

void LogLoadError(const char* module, const std::string& path) {
  KXLOG(1, module, "Error loading resource catalog file %s", path.c_str());
}

std::wstring UnknownIdText(unsigned int id) {
  std::wstring text = L"<<{0}: UNKNOWN RESOURCE ID>>";
  Arguments arguments;
  arguments << id;
  arguments.formatString(text);
  return text;
}

}  // namespace

bool ResourceCatalog::load(const wchar_t* path, const wchar_t* language) {
  if (!loadFile(path, language)) {
    // The language stands where the module belongs, so that only its first letter shows; kept.
    LogLoadError(reinterpret_cast<const char*>(language), path ? WideToUtf8(path) : "(null)");
    return false;
  }
  const std::wstring branding = getBrandingFilePath();
  if (!branding.empty() && !loadFile(branding.c_str(), language)) {
    LogLoadError("CatalogUtil", WideToUtf8(branding));
  }
  return true;
}

bool ResourceCatalog::loadFile(const wchar_t* path, const wchar_t* language) {
  if (!path || !*path) return false;
  const std::lock_guard<os_mutex> lock(m_mutex);
  if (!CatalogParser(*this).loadCatalogFile(path, FileEncoding::kUtf8WithMark)) {
    LogLoadError("CatalogUtil", WideToUtf8(path));
    return false;
  }
  loadLocalized(path, language);
  return true;
}

void ResourceCatalog::onCatalogRecord(const std::wstring& section, const std::wstring& key,
                                      const std::wstring& value) {
  const std::lock_guard<os_mutex> lock(m_mutex);
  unsigned int id;
  if (!convertStringToNumber(section, id) || key != L"Value") return;
  // Files have their records in order, so a new one mostly goes behind all others.
  const bool behind_all = m_records.empty() || m_records.rbegin()->first < id;
  ResourceRecord& record =
      behind_all ? m_records.try_emplace(m_records.end(), id)->second : m_records[id];
  record.id = id;
  record.text = value;
}

bool ResourceCatalog::getString(unsigned int id, std::wstring& out) const {
  out.clear();
  const std::lock_guard<os_mutex> lock(m_mutex);
  const auto record = m_records.find(id);
  if (record == m_records.end()) return false;
  out = record->second.text;
  return true;
}

bool ResourceCatalog::getString(const ResourceStringArguments& args, std::wstring& out) const {
  const std::lock_guard<os_mutex> lock(m_mutex);
  return getString(args.id, out) && args.arguments.formatString(out);
}

std::wstring ResourceCatalog::getString(unsigned int id) const {
  std::wstring text;
  return getString(id, text) ? text : UnknownIdText(id);
}

std::wstring ResourceCatalog::getString(const ResourceStringArguments& args) const {
  std::wstring text;
  if (!getString(args.id, text)) return UnknownIdText(args.id);
  args.arguments.formatString(text);
  return text;
}

}  // namespace orb::CatalogUtil
