#include "tools/doctor/CatalogFaults.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <list>
#include <regex>
#include <set>

#include "libs/catalogUtil/Arguments.h"
#include "libs/catalogUtil/ResourceIds.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxaccess/utf8.h"
#include "tools/starter/Messages.h"

namespace doctor {

namespace {

constexpr char kEnglish[] = "EN";

// One catalog: a file for each language, by the language's code in capitals.
struct Catalog {
  std::string name;
  CatalogKind kind;
  bool branding;
  std::map<std::string, CatalogFile*> files;

  CatalogFile* In(const std::string& language) const {
    const auto found = files.find(language);
    return found == files.end() ? nullptr : found->second;
  }
  // A region without a file of its own has the language's.
  CatalogFile* BestFor(const std::string& language) const {
    CatalogFile* const file = In(language);
    return file ? file : In(language.substr(0, language.find('-')));
  }
};

std::set<unsigned int> AskedFor(CatalogKind kind) {
  std::set<unsigned int> numbers;
  if (kind == CatalogKind::kResources) {
    numbers.insert(std::begin(kResourceTexts), std::end(kResourceTexts));
  } else {
    for (const auto id : ebStarter::kMessages) numbers.insert(static_cast<unsigned int>(id));
  }
  return numbers;
}

// Each placeholder once, as it is written.
std::set<std::wstring> PlaceholdersOf(const std::wstring& text) {
  std::set<std::wstring> found;
  orb::CatalogUtil::Placeholder place;
  for (size_t from = 0; FindPlaceholder(text, from, place); from = place.begin + place.size) {
    found.insert(text.substr(place.begin, place.size));
  }
  return found;
}

std::string Listed(const std::set<std::wstring>& placeholders) {
  std::string list;
  for (const std::wstring& one : placeholders) list += (list.empty() ? "" : " ") + WideToUtf8(one);
  return list.empty() ? "none" : list;
}

class Comparison {
 public:
  explicit Comparison(const std::vector<std::string>& folders) {
    for (const std::string& folder : folders) Collect(folder);
    for (const Catalog& catalog : catalogs_) {
      if (catalog.branding) continue;
      for (const auto& [language, file] : catalog.files) languages_.insert(language);
    }
    languages_.erase(kEnglish);
    for (const Catalog& catalog : catalogs_) Compare(catalog);
    std::sort(faults_.begin(), faults_.end());
  }

  std::vector<CatalogFault> Take() { return std::move(faults_); }

 private:
  void Collect(const std::string& folder) {
    static const std::regex name("(.+)_([A-Za-z]{2,3}(-[A-Za-z0-9]+)?)\\.txt");
    size_t count = 0;
    std::error_code error;
    // Not walked: what is below a folder that cannot be read.
    for (const auto& entry : std::filesystem::recursive_directory_iterator(
             folder, std::filesystem::directory_options::skip_permission_denied, error)) {
      const std::string file = entry.path().filename().string();
      std::smatch parts;
      if (!std::regex_match(file, parts, name)) continue;
      ++count;
      AddFile(entry.path().string(), parts[1], parts[2]);
    }
    if (count == 0) faults_.push_back({folder, 1, "no catalogs here"});
  }

  void AddFile(const std::string& path, const std::string& name, const std::string& language) {
    const CatalogKind kind =
        name.find("Resource") == name.npos ? CatalogKind::kMessages : CatalogKind::kResources;
    if (std::any_of(language.begin(), language.end(),
                    [](unsigned char c) { return std::islower(c); })) {
      faults_.push_back({path, 1, "never read: a name ends with the language in capitals"});
      return;
    }
    auto catalog = std::find_if(catalogs_.begin(), catalogs_.end(),
                                [&](const Catalog& known) { return known.name == name; });
    if (catalog == catalogs_.end()) {
      catalogs_.push_back({name, kind, name.rfind("Branding", 0) == 0, {}});
      catalog = std::prev(catalogs_.end());
    }
    files_.emplace_back(path, kind, faults_);
    catalog->files[language] = &files_.back();
  }

  void Compare(const Catalog& catalog) {
    CatalogFile* const base = catalog.In(kEnglish);
    if (base == nullptr) {
      catalog.files.begin()->second->Complain(1, "no " + catalog.name + "_EN.txt beside it");
      return;
    }
    LookForUnused(catalog, *base);
    if (!catalog.branding) LookForMissing(AskedFor(catalog.kind), catalog.kind, *base);
    for (const std::string& language : languages_) {
      const bool needed = !catalog.branding || !base->texts().empty();
      if (needed && !catalog.BestFor(language)) {
        base->Complain(1, "no " + catalog.name + "_" + language + ".txt beside it");
      }
    }
    for (const auto& [language, file] : catalog.files) {
      if (catalog.branding) CompareWithProduct(catalog, *file);
      if (file != base) CompareWithBase(catalog, *base, *file);
    }
  }

  static void LookForUnused(const Catalog& catalog, CatalogFile& base) {
    const std::set<unsigned int> asked = AskedFor(catalog.kind);
    for (const auto& [key, text] : base.texts()) {
      if (asked.count(key.first) == 0)
        base.Complain(text.line, KeyText(key) + ": nobody asks for it");
    }
  }

  static void LookForMissing(const std::set<unsigned int>& numbers, CatalogKind kind,
                             CatalogFile& file) {
    for (const unsigned int number : numbers) {
      for (const std::wstring& field : FieldsOf(kind)) {
        if (!file.Find({number, field})) file.Complain(1, KeyText({number, field}) + " is missing");
      }
    }
  }

  // A variant has what the English file has, and nothing else.
  static void CompareWithBase(const Catalog& catalog, CatalogFile& base, CatalogFile& file) {
    for (const auto& [key, text] : base.texts()) {
      if (!file.Find(key)) file.Complain(1, KeyText(key) + " is missing");
    }
    for (const auto& [key, text] : file.texts()) {
      const CatalogFile::Text* const english = base.Find(key);
      if (english == nullptr) {
        if (!catalog.branding) file.Complain(text.line, KeyText(key) + ": not in the English file");
        continue;
      }
      const auto wanted = PlaceholdersOf(english->value), found = PlaceholdersOf(text.value);
      if (wanted != found) {
        file.Complain(text.line, KeyText(key) + " has the placeholders " + Listed(found) +
                                     ", the English text " + Listed(wanted));
      }
      const bool marked = text.value.find(L'&') != std::wstring::npos;
      if (catalog.kind == CatalogKind::kResources &&
          marked != (english->value.find(L'&') != std::wstring::npos)) {
        file.Complain(text.line, KeyText(key) + (marked ? " has an &, the English text has none"
                                                        : " lacks the & before its key"));
      }
    }
  }

  // What brands a product may leave a placeholder out, but gets no other values.
  void CompareWithProduct(const Catalog& branding, CatalogFile& file) const {
    for (const Catalog& product : catalogs_) {
      const CatalogFile* const base = product.In(kEnglish);
      if (product.branding || product.kind != branding.kind || base == nullptr) continue;
      for (const auto& [key, text] : file.texts()) {
        const CatalogFile::Text* const own = base->Find(key);
        const auto wanted = own ? PlaceholdersOf(own->value) : std::set<std::wstring>();
        const auto found = PlaceholdersOf(text.value);
        if (own && !std::includes(wanted.begin(), wanted.end(), found.begin(), found.end())) {
          file.Complain(text.line, KeyText(key) + " has the placeholders " + Listed(found) +
                                       ", the product's text " + Listed(wanted));
        }
      }
    }
  }

  std::vector<CatalogFault> faults_;
  std::list<CatalogFile> files_;
  std::list<Catalog> catalogs_;
  std::set<std::string> languages_;
};

}  // namespace

std::vector<CatalogFault> FindCatalogFaults(const std::vector<std::string>& folders) {
  return Comparison(folders).Take();
}

int PrintCatalogFaults(const std::string& folder) {
  std::vector<std::string> folders = {folder};
  if (folder.empty()) {
    folders = {std::filesystem::path(WideToUtf8(InstallPaths::kResourceCatalog)).parent_path(),
               WideToUtf8(InstallPaths::kBrandingFolder)};
  }
  const std::vector<CatalogFault> faults = FindCatalogFaults(folders);
  for (const CatalogFault& fault : faults) {
    std::printf("%s:%zu: %s\n", fault.file.c_str(), fault.line, fault.text.c_str());
  }
  return faults.empty() ? 0 : 1;
}

}  // namespace doctor
