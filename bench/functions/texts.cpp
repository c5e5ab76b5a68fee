// UTF-8 and wide text, and the catalogs that are read as such.

#include <iconv.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "bench/functions/Pairs.h"
#include "libs/catalogUtil/ResourceCatalog.h"
#include "libs/kxaccess/utf8.h"
#include "tests/support/TempDir.h"

namespace {

using orb::CatalogUtil::ResourceCatalog;

constexpr size_t kMebibyte = 1 << 20;

std::string Repeated(const std::string& piece) {
  std::string text;
  while (text.size() + piece.size() <= kMebibyte) text += piece;
  return text;
}

std::wstring CLibraryToWide(const std::string& text) {
  std::wstring wide(text.size(), L'\0');
  wide.resize(mbstowcs(wide.data(), text.c_str(), wide.size()));
  return wide;
}

std::string CLibraryToUtf8(const std::wstring& text) {
  std::string narrow(text.size() * 4, '\0');
  narrow.resize(wcstombs(narrow.data(), text.c_str(), narrow.size()));
  return narrow;
}

// `most`: how many units of the result one of the source can give.
template <typename To, typename From>
To Iconv(iconv_t converter, const From& text, size_t most) {
  To result(text.size() * most, 0);
  char* from = reinterpret_cast<char*>(const_cast<typename From::value_type*>(text.data()));
  char* to = reinterpret_cast<char*>(result.data());
  size_t from_left = text.size() * sizeof(text[0]);
  size_t to_left = result.size() * sizeof(result[0]);
  if (iconv(converter, &from, &from_left, &to, &to_left) != 0) abort();
  result.resize(result.size() - to_left / sizeof(result[0]));
  return result;
}

void AddConversions(const std::string& kind, const std::string& text, bool in_short) {
  static const iconv_t to_wide = iconv_open("WCHAR_T", "UTF-8");
  static const iconv_t to_utf8 = iconv_open("UTF-8", "WCHAR_T");
  const std::wstring wide = Utf8ToWide(text);
  if (CLibraryToWide(text) != wide || Iconv<std::wstring>(to_wide, text, 1) != wide ||
      WideToUtf8(wide) != text || CLibraryToUtf8(wide) != text ||
      Iconv<std::string>(to_utf8, wide, 4) != text) {
    abort();
  }
  const Body ours_wide = Repeat([text] { return Utf8ToWide(text); });
  const Body ours_utf8 = Repeat([wide] { return WideToUtf8(wide); });
  AddPair({"UTF-8 to wide, 1 MiB " + kind, "mbstowcs", 0.5, ours_wide,
           Repeat([text] { return CLibraryToWide(text); }), 0, 0, in_short});
  AddPair({"UTF-8 to wide, 1 MiB " + kind, "iconv", 0.5, ours_wide,
           Repeat([text] { return Iconv<std::wstring>(to_wide, text, 1); }), 0, 0, in_short});
  AddPair({"wide to UTF-8, 1 MiB " + kind, "wcstombs", 0.5, ours_utf8,
           Repeat([wide] { return CLibraryToUtf8(wide); }), 0, 0, in_short});
  AddPair({"wide to UTF-8, 1 MiB " + kind, "iconv", 0.5, ours_utf8,
           Repeat([wide] { return Iconv<std::string>(to_utf8, wide, 4); }), 0, 0, in_short});
}

// Catalogs of so many records, for English and German; the path of the English one.
std::wstring WriteCatalogs(int records) {
  static const TempDir folder;
  const std::string stem = "Resource" + std::to_string(records);
  for (const auto& [language, text] : {std::pair("_EN", "Sign in to continue, step "),
                                       std::pair("_DE", "Zum Fortfahren anmelden für ")}) {
    std::string content = "\xEF\xBB\xBF";
    for (int id = 1; id <= records; ++id) {
      const std::string number = std::to_string(id);
      content += "[" + number + "]\nValue = " + text + number + "\n";
    }
    folder.write(stem + language + ".txt", content);
  }
  return Utf8ToWide(folder.file(stem + "_EN.txt"));
}

// Catalogs live as long as the process, so that taking one down does not count.
Body LoadCatalog(const std::wstring& path) {
  return [path](benchmark::State& state) {
    for ([[maybe_unused]] auto step : state) {
      auto catalog = std::make_unique<ResourceCatalog>();
      if (!catalog->load(path.c_str(), L"de")) abort();
      state.PauseTiming();
      catalog.reset();
      state.ResumeTiming();
    }
  };
}

std::string ReadAtOnce(const std::string& path) {
  std::string content(std::filesystem::file_size(path), '\0');
  FILE* file = fopen(path.c_str(), "rb");
  if (!file || fread(content.data(), 1, content.size(), file) != content.size()) abort();
  fclose(file);
  return content;
}

size_t ReadAndConvert(const std::wstring& path) {
  std::string german = WideToUtf8(path);
  german.replace(german.rfind("_EN"), 3, "_DE");
  return CLibraryToWide(ReadAtOnce(WideToUtf8(path))).size() +
         CLibraryToWide(ReadAtOnce(german)).size();
}

}  // namespace

void AddTexts() {
  AddConversions("ASCII", Repeated("Sign in to continue; then close this window. "), true);
  AddConversions("mixed",
                 Repeated("Zum Fortfahren anmelden für Größe, Ελληνικά, войти в систему, "
                          "サインインして続行, 登录以继续 \xF0\x9F\x94\x92 OK. "),
                 false);

  const std::wstring path = WriteCatalogs(20000);
  AddPair({"catalog of 20,000 records with a variant", "reading both files, and mbstowcs", 2.0,
           LoadCatalog(path), Repeat([path] { return ReadAndConvert(path); }), 0, 0, false});
  AddCurve({"catalog with a variant", "records", {1000, 3000, 10000, 30000, 100000}, [](int x) {
              return LoadCatalog(WriteCatalogs(x));
            }});
}
