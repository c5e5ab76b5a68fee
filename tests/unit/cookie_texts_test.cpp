#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GUI/newUI/CommonWebBrowser.h"
#include "tests/support/LogTrace.h"

namespace {

using testing::ElementsAre;

TEST(CookieTexts, FindAnItemByItsKey) {
  const struct {
    const char* cookies;
    const char* key;
    const char* item;
    const char* value;
  } cases[] = {{"a=1; sid=xyz; b=2", "sid=", "sid=xyz", "xyz"},
               {"k=v=w;x", "k", "k=v=w", "v=w"},
               {"xsid=1;sid=2", "sid", "sid=1", "1"},  // not anchored
               {"sid=;a=1", "sid", "sid=", ""},
               {"sid;a=1", "sid", "sid", ""},
               {"a=1; b = 2 ;", "b", "b = 2 ", " 2 "},
               {"a=1;b=2", "", "a=1", "1"},
               {"a=1;b=2", "1;b", "1", ""},  // the key may hold the separator, the item ends there
               {"", "k", "", ""}};
  for (const auto& c : cases) {
    std::string item = "old", value = "old";
    GetCookieforKey(c.cookies, c.key, item);
    GetCookieValueforKey(c.cookies, c.key, value);
    EXPECT_EQ(item, c.item) << c.cookies;
    EXPECT_EQ(value, c.value) << c.cookies;
  }
}

TEST(CookieTexts, ListAllItemsWithAKey) {
  std::vector<std::string> items = {"old"};
  GetCookieListforKey("x=1; y=2; xx=3", "x", items);
  EXPECT_THAT(items, ElementsAre("x=1", "xx=3"));
  GetCookieListforKey(" a = 1;;\tb=x x; a=1;", "", items);
  EXPECT_THAT(items, ElementsAre("a=1", "", "\tb=xx", "a=1"));
  GetCookieListforKey("", "", items);
  EXPECT_THAT(items, ElementsAre());
}

TEST(CookieTexts, SplitBundles) {
  LogTrace log;
  std::set<std::wstring> wide;
  ParseCookies(L"b=2;; a=1;;b=2", wide);
  EXPECT_EQ(log.Take().back(), "4 'OrbUI' Parsed 2 cookies");
  ParseCookies(L"c=3;;;d", wide);  // what was there is kept and counted
  EXPECT_THAT(wide, ElementsAre(L";d", L"a=1", L"b=2", L"c=3"));
  EXPECT_EQ(log.Take().back(), "4 'OrbUI' Parsed 4 cookies");
  std::set<std::wstring> pieces;
  ParseCookies(L";;", pieces);
  EXPECT_THAT(pieces, ElementsAre(L""));
  log.Take();

  std::set<std::string> narrow = {"kept"};
  ParseCookies("n=\xC3\xA9 \xE2\x82\xAC;;m=1; path=/;;bad=\xFF;;lost", narrow);
  EXPECT_THAT(narrow, ElementsAre("bad=", "kept", "m=1;path=/", "n=\xC3\xA9\xE2\x82\xAC"));
  EXPECT_THAT(log.Take(),
              ElementsAre("4 'OrbUI' Retrieved cookie of length: 4",
                          "4 'OrbUI' Retrieved cookie of length: 10",
                          "4 'OrbUI' Retrieved cookie of length: 4", "4 'OrbUI' Parsed 3 cookies"));
}

TEST(Addresses, AreReducedToTheHost) {
  const char* const cases[][2] = {{"https://Host:8443/x", "host:8443"},
                                  {"http://a?x=1", "a?x=1"},
                                  {"HTTPS://Host/x", "https:"},
                                  {"AZ.Case", "az.case"},
                                  {"https://", ""},
                                  {"https:///x", "/x"},
                                  {"https://user@Host#f/x", "user@host#f"},
                                  // The scheme counts wherever it is found, the start is what goes.
                                  {"gateway.example/?to=http://b/", ".example"},
                                  {"http://g/?to=https://b", "/?to=https://b"},
                                  {"\xC3\x89T/", "\xC3\x89t"}};
  for (const auto& c : cases) {
    std::string domain = "old";
    GetDomainFromUrl(c[0], domain);
    EXPECT_EQ(domain, c[1]) << c[0];
  }
}

TEST(Addresses, HoldDataInBase64) {
  EXPECT_EQ(GetDataURI(std::string("\0\xFF\xFE?", 4), "a/b"), "data:a/b;base64,AP%2F%2BPw%3D%3D");
}

}  // namespace
