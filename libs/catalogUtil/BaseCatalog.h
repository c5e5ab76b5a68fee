// What all catalogs have in common: they receive records, may have a branding file, and load the
// variant of a file for the user's language.

#ifndef LIBS_CATALOGUTIL_BASECATALOG_H_
#define LIBS_CATALOGUTIL_BASECATALOG_H_

#include <string>
#include <vector>

#include "libs/catalogUtil/CatalogParser.h"

namespace orb::CatalogUtil {

// The files that hold the variant of `path` for `language` (such as L"fr-fr"), the best first: the
// one for language and region ("_FR-FR"), then the one for the language alone ("_FR"). None for
// American English, which is the base file itself, and for a name without "_EN".
std::vector<std::wstring> VariantPaths(const std::wstring& path, const std::wstring& language);

class BaseCatalog : public CatalogRecords {
 public:
  BaseCatalog() = default;
  BaseCatalog(const BaseCatalog&) = delete;
  BaseCatalog& operator=(const BaseCatalog&) = delete;

  // Loads the first of the VariantPaths() that there is, on top of the base file. A variant that is
  // missing is only a log line; null or empty arguments do nothing.
  void loadLocalized(const wchar_t* path, const wchar_t* language);

  // The file whose records override those of the base files. A null or empty path changes nothing.
  // Set it before the catalog is loaded.
  void setBrandingFilePath(const wchar_t* path);
  std::wstring getBrandingFilePath() const { return m_brandingFilePath; }

  std::wstring m_brandingFilePath;
};

}  // namespace orb::CatalogUtil

#endif  // LIBS_CATALOGUTIL_BASECATALOG_H_
