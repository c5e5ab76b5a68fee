// The messages of the product, by number, with a short and a long description each.

#ifndef LIBS_CATALOGUTIL_MESSAGECATALOG_H_
#define LIBS_CATALOGUTIL_MESSAGECATALOG_H_

#include <map>
#include <string>
#include <vector>

#include "libs/catalogUtil/BaseCatalog.h"
#include "libs/catalogUtil/os_mutex.h"

namespace orb::CatalogUtil {

struct MessageRecord {
  MessageRecord(const std::wstring& id, const std::wstring& shortDesc, const std::wstring& longDesc)
      : id(id), shortDesc(shortDesc), longDesc(longDesc) {}

  std::wstring id;  // as the section spells it, leading zeros included
  std::wstring shortDesc;
  std::wstring longDesc;
};

// Messages come from the records "Short-desc" and "Long-desc" of sections numbered up to 9999; a
// later record replaces an earlier one. Every call but setBrandingFilePath takes the catalog's
// lock. Failures are logged.
class MessageCatalog : public BaseCatalog {
 public:
  // Collects the values of the section "MessageCatalogFiles", whatever their keys.
  class AccessIniCatalog : public BaseCatalog {
   public:
    // `paths` must outlive the catalog.
    explicit AccessIniCatalog(std::vector<std::wstring>& paths) : m_paths(paths) {}
    void onCatalogRecord(const std::wstring& section, const std::wstring& key,
                         const std::wstring& value) override;

    std::vector<std::wstring>& m_paths;
  };

  // Loads as loadFile does, then the branding file, if one is set. False when either fails: unlike
  // with the resources, a branding file that is set must be there.
  bool load(const wchar_t* path, const wchar_t* language);

  // Loads one file and its variant for `language`; with a null or empty path all files that
  // access.ini lists. One that fails does not keep the others from being loaded. True when all
  // loaded, and there was at least one.
  bool loadFile(const wchar_t* path, const wchar_t* language);

  // Appends the paths of the message catalogs that the installed access.ini lists.
  void getFilepaths(std::vector<std::wstring>& out);

  void onCatalogRecord(const std::wstring& section, const std::wstring& key,
                       const std::wstring& value) override;

  std::map<unsigned int, MessageRecord> m_records;
  os_mutex m_mutex;

 private:
  bool LoadListed(const wchar_t* language);
};

}  // namespace orb::CatalogUtil

#endif  // LIBS_CATALOGUTIL_MESSAGECATALOG_H_
