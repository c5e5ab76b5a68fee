#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "libs/catalogUtil/BaseCatalog.h"
#include "libs/kxaccess/utf8.h"
#include "tests/support/LogTrace.h"

namespace {

using namespace orb::CatalogUtil;
using testing::ElementsAre;

// Keeps the records as "section|key|value".
class Records : public BaseCatalog {
 public:
  void onCatalogRecord(const std::wstring& section, const std::wstring& key,
                       const std::wstring& value) override {
    list.push_back(WideToUtf8(section + L"|" + key + L"|" + value));
  }
  std::vector<std::string> list;
};

constexpr char kMark[] = "\xEF\xBB\xBF";

TEST(CatalogParser, ReadsTheSyntax) {
  const struct {
    std::string content;
    std::vector<std::string> records;
  } cases[] = {{"[1]\nValue=a", {"1|Value|a"}},
               {"x=early\n[ 12 ]\n \tValue \t=\t a b \t\n", {"12|Value|a b"}},
               {"[1]\n;a=1\n ;b=2", {"1|;b|2"}},         // a comment starts in column one only
               {"[1]\n[\t]\na=1\n[2]\nb=2", {"2|b|2"}},  // a nameless section is none
               {"[1]\n=a\n  =b\nnothing\nk=\n\tk2 =\t", {"1|k|", "1|k2|"}},
               {"[1]\nk=a\\tb\\nc\\rd\\\\x\\\\n\n", {"1|k|a\tb\nc\rd\\\\x\\\n"}},
               {"[2]\r\na=1\n[1]\nk=v\r\n", {"1|k|v\r"}},  // a CR is part of the line
               {"[1]\nk=a\xFFz\nl=b\xC3\nm=\xC3\xA9\n", {"1|k|a", "1|l|b", "1|m|\xC3\xA9"}},
               {std::string("[1]\nk=a\0b\nl=2", 13), {"1|k|a", "1|l|2"}},
               {"; comment\n\n[1]\n[2\nk=v=w\n3]", {"1|k|v=w"}}};
  TempDir folder;
  for (const auto& c : cases) {
    // The same with and without the mark that the encoding asks for.
    for (const FileEncoding encoding : {kAnyBytes, kUtf8WithMark}) {
      const std::string text = encoding == kUtf8WithMark ? kMark + c.content : c.content;
      Records records;
      const std::wstring path = Utf8ToWide(folder.write("caf\xC3\xA9.txt", text));
      EXPECT_TRUE(CatalogParser(records).loadCatalogFile(path.c_str(), encoding));
      EXPECT_EQ(records.list, c.records) << text;
    }
  }
}

TEST(CatalogParser, ChecksTheEncodingAtTheFirstLine) {
  TempDir folder;
  LogTrace log;
  const std::string path = folder.file("c.txt");
  const std::string loaded = "4 'CatalogUtil' Loaded catalog file: " + path + ".";
  const std::string invalid = "2 'CatalogUtil' Error, invalid UTF-8 catalog file: " + path + ".";
  const std::string unsupported =
      "2 'CatalogUtil' Error, unsupported file-encoding for catalog file: " + path + ".";
  const struct {
    std::string content;
    int encoding;
    std::string log;
    size_t records;
  } cases[] = {
      {"[1]\na=1", 1, invalid, 0},
      {"", 1, loaded, 0},
      {"[1]\na=1", 2, unsupported, 0},
      {std::string("\n") + kMark + "\n[1]\na=1", 1, loaded, 1},
      {std::string(kMark) + "[1]\na=1", 0, loaded, 0},  // the mark is then part of the line
  };
  for (const auto& c : cases) {
    folder.write("c.txt", c.content);
    Records records;
    EXPECT_EQ(CatalogParser(records).loadCatalogFile(Utf8ToWide(path).c_str(),
                                                     static_cast<FileEncoding>(c.encoding)),
              c.log == loaded);
    EXPECT_THAT(log.Take(), ElementsAre(c.log)) << c.content;
    EXPECT_EQ(records.list.size(), c.records) << c.content;
  }
}

TEST(BaseCatalog, LoadsTheBestVariant) {
  TempDir folder;
  for (const char* code : {"EN", "PT-BR", "PT"}) {
    folder.write(std::string("r_") + code + ".txt", std::string(kMark) + "[v]\nk=" + code);
  }
  const auto error = [&](const char* code) {
    return "5 'CatalogUtil' Error loading catalog file: " + folder.file("r_") + code + ".txt";
  };
  const struct {
    const char* language;
    std::vector<std::string> records;
    std::vector<std::string> errors;
  } cases[] = {{"en-us", {}, {}},
               {"en", {"v|k|EN"}, {}},  // the base file once more
               {"en-GB", {}, {error("EN-GB")}},
               {"pt-br", {"v|k|PT-BR"}, {}},
               {"pt-pt-x", {"v|k|PT"}, {error("PT-PT-X")}},
               {"de-CH", {}, {error("DE-CH"), error("DE")}},
               {"", {}, {}}};
  LogTrace log;
  const std::wstring base = Utf8ToWide(folder.file("r_EN.txt"));
  for (const auto& c : cases) {
    Records records;
    records.loadLocalized(base.c_str(), Utf8ToWide(c.language).c_str());
    EXPECT_EQ(records.list, c.records) << c.language;
    std::vector<std::string> errors = log.Take();
    ASSERT_EQ(errors.size(), c.errors.size() + c.records.size()) << c.language;
    errors.resize(c.errors.size());  // without the "Loaded" at the end
    EXPECT_EQ(errors, c.errors) << c.language;
  }
  Records records;
  records.loadLocalized(base.c_str(), nullptr);
  records.loadLocalized(L"/nowhere/r_DE.txt", L"fr");
  EXPECT_THAT(log.Take(), ElementsAre());

  // The first "_EN" is the one replaced, be it in a folder's name.
  records.loadLocalized(L"/a_ENv/r_EN.txt", L"fr");
  EXPECT_THAT(log.Take(),
              ElementsAre("5 'CatalogUtil' Error loading catalog file: /a_FRv/r_EN.txt"));
}

}  // namespace
