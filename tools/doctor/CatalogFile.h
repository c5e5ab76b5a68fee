// One catalog file, looked at on its own: its texts with their places, and what is wrong with it.

#ifndef TOOLS_DOCTOR_CATALOGFILE_H_
#define TOOLS_DOCTOR_CATALOGFILE_H_

#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "libs/catalogUtil/CatalogParser.h"

namespace doctor {

// Something that a translator has to put right.
struct CatalogFault {
  std::string file;
  size_t line;
  std::string text;  // UTF-8, one line

  bool operator<(const CatalogFault& other) const {
    return std::tie(file, line, text) < std::tie(other.file, other.line, other.text);
  }
};

enum class CatalogKind { kResources, kMessages };

// A text's number and the record that holds it, such as 1700 and "Long-desc".
using TextKey = std::pair<unsigned int, std::wstring>;

// "[1700] Long-desc".
std::string KeyText(const TextKey& key);

// The records that a text of that kind has.
const std::vector<std::wstring>& FieldsOf(CatalogKind kind);

// The number of the first line with bytes that are not UTF-8; 0 when there is none.
int FirstBadLine(const std::string& content);

// Reads the file as the catalogs do.
class CatalogFile : private orb::CatalogUtil::CatalogRecords {
 public:
  struct Text {
    std::wstring value;
    size_t line;
  };

  // Adds what is wrong to `faults`.
  CatalogFile(const std::string& path, CatalogKind kind, std::vector<CatalogFault>& faults);

  const std::string& path() const { return path_; }
  const std::map<TextKey, Text>& texts() const { return texts_; }
  const Text* Find(const TextKey& key) const;
  void Complain(size_t line, const std::string& text) { faults_.push_back({path_, line, text}); }

 private:
  void onCatalogRecord(const std::wstring& section, const std::wstring& key,
                       const std::wstring& value) override;
  void onLineWithoutMeaning() override;
  void LookAtKeys();

  const std::string path_;
  const CatalogKind kind_;
  std::vector<CatalogFault>& faults_;
  std::map<TextKey, Text> texts_;
  orb::CatalogUtil::CatalogParser parser_{*this};
};

}  // namespace doctor

#endif  // TOOLS_DOCTOR_CATALOGFILE_H_
