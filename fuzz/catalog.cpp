// Catalog files, through the catalogs that take their records.

#include "fuzz/Fuzz.h"
#include "libs/catalogUtil/MessageCatalog.h"
#include "libs/catalogUtil/ResourceCatalog.h"
#include "libs/catalogUtil/Utils.h"

namespace {

using namespace orb::CatalogUtil;

struct Records : CatalogRecords {
  void onCatalogRecord(const std::wstring& section, const std::wstring& key,
                       const std::wstring& value) override {
    Require(!section.empty() && Trimmed(section) == section && Trimmed(key) == key);
    Require((section + key).find(L'\n') == std::wstring::npos);
    resources.onCatalogRecord(section, key, value);
    messages.onCatalogRecord(section, key, value);
  }

  ResourceCatalog resources;
  MessageCatalog messages;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (const FileEncoding encoding : {kUtf8WithMark, kAnyBytes}) {
    Records records;
    CatalogParser(records).loadCatalogText(bytes, encoding, "fuzz");
    for (unsigned id = 0; id < 4; ++id) records.resources.getString(id);
  }
  return 0;
}
