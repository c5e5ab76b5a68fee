// Resource and message catalogs. This program has install paths of its own, so that its access.ini
// is nobody else's.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>

#include "libs/catalogUtil/GlobalCatalogs.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxaccess/utf8.h"
#include "tests/support/LogTrace.h"

namespace {

using namespace orb::CatalogUtil;
using testing::ElementsAre;

class CatalogsTest : public testing::Test {
 protected:
  std::wstring Write(const std::string& name, const std::string& content) const {
    return Utf8ToWide(folder_.write(name, "\xEF\xBB\xBF" + content));
  }

  // The records of the levels that report failures.
  std::vector<std::string> Failures() {
    std::vector<std::string> failures;
    for (const std::string& record : log_.Take()) {
      if (record[0] <= '2') failures.push_back(record);
    }
    return failures;
  }

  TempDir folder_;
  LogTrace log_;
  const std::wstring missing_ = Utf8ToWide(folder_.file("missing_EN.txt"));
};

TEST_F(CatalogsTest, ResourcesAreOverriddenInOrder) {
  const std::wstring base = Write("r_EN.txt",
                                  "[1]\nValue=first\nValue=one\n[02]\nValue=two\n[3]\nvalue=x\n"
                                  "[x]\nValue=x\n[5]\nValue=\n[4294967302]\nValue=six {0}\n"
                                  "[7]\nValue=seven\n[8]\nValue=eight\n");
  Write("r_FR.txt", "[2]\nValue=deux\n[7]\nValue=sept\n");
  const std::wstring branding = Write("b_EN.txt", "[7]\nValue=brand\n[8]\nValue=brand\n");
  Write("b_FR-CA.txt", "[8]\nValue=marque\n");
  ResourceCatalog catalog;
  catalog.setBrandingFilePath(branding.c_str());
  catalog.setBrandingFilePath(L"");  // changes nothing
  ASSERT_TRUE(catalog.load(base.c_str(), L"fr-ca"));
  EXPECT_THAT(Failures(), ElementsAre());

  const wchar_t* const texts[] = {L"one",
                                  L"deux",
                                  L"<<3: UNKNOWN RESOURCE ID>>",
                                  L"<<4: UNKNOWN RESOURCE ID>>",
                                  L"",
                                  L"six {0}",
                                  L"brand",
                                  L"marque"};
  for (unsigned int id = 1; id <= 8; ++id) EXPECT_EQ(catalog.getString(id), texts[id - 1]);
  std::wstring out = L"old";
  EXPECT_FALSE(catalog.getString(3, out));
  EXPECT_EQ(out, L"");
  ResourceStringArguments six(6), empty(5), unknown(99);
  six.arguments << 9u;
  EXPECT_TRUE(catalog.getString(six, out));
  EXPECT_EQ(out, L"six 9");
  EXPECT_FALSE(catalog.getString(empty, out));
  EXPECT_EQ(catalog.getString(unknown), L"<<99: UNKNOWN RESOURCE ID>>");
}

TEST_F(CatalogsTest, ResourceFailuresAreLogged) {
  const std::string text = "Error loading resource catalog file ";
  const std::string path = WideToUtf8(missing_);
  ResourceCatalog catalog;
  EXPECT_FALSE(catalog.load(missing_.c_str(), L"en-US"));
  // The second record shows the language's first letter in place of the module.
  EXPECT_THAT(Failures(), ElementsAre("1 'CatalogUtil' " + text + path, "1 'e' " + text + path));
  catalog.setBrandingFilePath(missing_.c_str());
  EXPECT_TRUE(catalog.load(Write("r_EN.txt", "[1]\nValue=one").c_str(), L"en-US"));
  EXPECT_THAT(Failures(),
              ElementsAre("1 'CatalogUtil' " + text + path, "1 'CatalogUtil' " + text + path));
  EXPECT_EQ(catalog.getString(1), L"one");
}

TEST_F(CatalogsTest, MessagesHaveTwoDescriptions) {
  const std::wstring base = Write("m_EN.txt",
                                  "[0042]\nShort-desc=s\nLong-desc=l\n[42]\nLong-desc=later\n"
                                  "[9999]\nshort-desc=x\n[10000]\nShort-desc=x\n[y]\nLong-desc=x");
  Write("m_DE.txt", "[42]\nShort-desc=kurz\n");
  MessageCatalog catalog;
  ASSERT_TRUE(catalog.load(base.c_str(), L"de"));
  ASSERT_EQ(catalog.m_records.size(), 2u);
  EXPECT_EQ(catalog.m_records.at(42).id, L"0042");
  EXPECT_EQ(catalog.m_records.at(42).shortDesc, L"kurz");
  EXPECT_EQ(catalog.m_records.at(42).longDesc, L"later");
  EXPECT_EQ(catalog.m_records.at(9999).shortDesc, L"");
  const std::string line =
      "1 'CatalogUtil' Error loading message catalog file " + WideToUtf8(missing_);
  EXPECT_FALSE(catalog.load(missing_.c_str(), L"de"));
  EXPECT_THAT(Failures(), ElementsAre(line, line));
  catalog.setBrandingFilePath(missing_.c_str());
  EXPECT_FALSE(catalog.load(base.c_str(), L"de"));  // unlike with the resources
  EXPECT_THAT(Failures(), ElementsAre(line));
}

TEST_F(CatalogsTest, MessagesComeFromTheFilesThatAccessIniLists) {
  const std::filesystem::path ini = WideToUtf8(InstallPaths::kAccessIni);
  std::filesystem::remove(ini);
  std::filesystem::create_directories(ini.parent_path());
  const std::string none =
      "2 'CatalogUtil' Can't retrieve any message-catelog filepaths             "
      "using VELD access.ini.";
  const std::string failed = "1 'CatalogUtil' Error loading message catalog file (null)";
  MessageCatalog catalog;
  EXPECT_FALSE(catalog.load(nullptr, L"en-US"));
  EXPECT_THAT(Failures(), ElementsAre(none, failed));

  const std::string a = WideToUtf8(Write("a_EN.txt", "[1]\nShort-desc=a\n"));
  const std::string b = WideToUtf8(Write("b_EN.txt", "[1]\nShort-desc=b\n"));
  Write("b_FR.txt", "[2]\nShort-desc=f\n");
  const std::string lost = folder_.file("lost_EN.txt");
  std::ofstream(ini) << "[MessageCatalogFiles]\nFile=" << a << "\nFile=" << lost << "\nAny = " << b
                     << "\n[Other]\nFile=/x\n";

  // The file that is missing does not keep the one behind it from being loaded.
  EXPECT_FALSE(catalog.load(nullptr, L"fr"));
  EXPECT_THAT(Failures(),
              ElementsAre("2 'CatalogUtil' Error loading message catalog file " + lost, failed));
  EXPECT_EQ(catalog.m_records.at(1).shortDesc, L"b");
  EXPECT_EQ(catalog.m_records.at(2).shortDesc, L"f");
  std::ofstream(ini) << "[MessageCatalogFiles]\nFile=" << a << "\n";
  EXPECT_TRUE(catalog.load(nullptr, L"fr"));
}

TEST(CatalogLock, IsRecursiveAndKeepsOthersOut) {
  os_mutex& mutex = g_oResCatalog.m_mutex;
  mutex.lock();
  ASSERT_TRUE(mutex.try_lock());
  mutex.unlock();
  EXPECT_FALSE(std::async(std::launch::async, [&] { return mutex.try_lock(); }).get());
  mutex.unlock();
}

}  // namespace
