// The texts of the user interface, by number.

#ifndef LIBS_CATALOGUTIL_RESOURCECATALOG_H_
#define LIBS_CATALOGUTIL_RESOURCECATALOG_H_

#include <map>
#include <string>

#include "libs/catalogUtil/Arguments.h"
#include "libs/catalogUtil/BaseCatalog.h"
#include "libs/catalogUtil/os_mutex.h"

namespace orb::CatalogUtil {

struct ResourceRecord {
  unsigned int id = 0;
  std::wstring text;
};

// Texts come from the records "Value" of numbered sections; a later record replaces an earlier one.
// Every call takes the catalog's lock, so a look-up waits for a load on another thread. Failures
// are logged at level 1.
class ResourceCatalog : public BaseCatalog {
 public:
  // Loads the file with its variant for `language`, then the branding file, if one is set. False
  // when the file does not load; a branding file that does not load is only logged.
  bool load(const wchar_t* path, const wchar_t* language);

  // Loads one file and its variant for `language`. False, without a log line, when the path is null
  // or empty; false when the file is missing or not UTF-8 with a byte-order mark.
  bool loadFile(const wchar_t* path, const wchar_t* language);

  void onCatalogRecord(const std::wstring& section, const std::wstring& key,
                       const std::wstring& value) override;

  // The text as it stands in the catalog. False, with `out` empty, when the id is unknown.
  bool getString(unsigned int id, std::wstring& out) const;
  // The text with its placeholders filled in. False when the id is unknown or the text is empty.
  bool getString(const ResourceStringArguments& args, std::wstring& out) const;

  // The same, but an unknown id gives a text that shows the number: "<<7: UNKNOWN RESOURCE ID>>".
  std::wstring getString(unsigned int id) const;
  std::wstring getString(const ResourceStringArguments& args) const;

  std::map<unsigned int, ResourceRecord> m_records;
  mutable os_mutex m_mutex;
};

}  // namespace orb::CatalogUtil

#endif  // LIBS_CATALOGUTIL_RESOURCECATALOG_H_
