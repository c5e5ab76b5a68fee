// Strings, structures with strings in them and text encodings of the CEF API.

#include <gtest/gtest.h>

#include "include/cef_base.h"
#include "include/cef_parser.h"

namespace {

base::string16 Units(std::initializer_list<char16> units) { return base::string16(units); }

TEST(CefStringTest, ConvertsValidTextBothWaysWithoutLoss) {
  const struct {
    std::string utf8;
    std::wstring wide;
    base::string16 utf16;
  } conversions[] = {
      {"", L"", {}},
      {std::string("a\0~", 3), std::wstring(L"a\0~", 3), Units({0x61, 0, 0x7E})},
      {"\xE0\xA0\x80\xEF\xBF\xBF", L"\u0800\uFFFF", Units({0x800, 0xFFFF})},
      {"\xED\x9F\xBF\xEE\x80\x80", L"\uD7FF\uE000", Units({0xD7FF, 0xE000})},
      {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\U00010000\U0010FFFF",
       Units({0xD800, 0xDC00, 0xDBFF, 0xDFFF})},
  };
  for (const auto& c : conversions) {
    for (const CefString& string : {CefString(c.utf8), CefString(c.wide), CefString(c.utf16)}) {
      EXPECT_EQ(string.ToString(), c.utf8);
      EXPECT_EQ(string.ToWString(), c.wide);
      EXPECT_TRUE(string.ToString16() == c.utf16) << c.utf8;
    }
  }
}

TEST(CefStringTest, ReplacesWhatIsNoTextAndSaysSo) {
  const struct {
    std::string utf8;
    base::string16 utf16;
  } cases[] = {
      {"a\x80z", Units({'a', 0xFFFD, 'z'})},
      {"\xE2\x82z\xF0\x9F\x98", Units({0xFFFD, 'z', 0xFFFD})},
      {"\xED\xA0\x80", Units({0xFFFD, 0xFFFD, 0xFFFD})},
      {"\xF4\x90\x80\x80", Units({0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD})},
  };
  for (const auto& c : cases) {
    CefString string;
    EXPECT_FALSE(string.FromString(c.utf8));
    EXPECT_TRUE(string.ToString16() == c.utf16) << string.ToString();
  }
  EXPECT_EQ(CefString(Units({0xDC00, 'a', 0xD800})).ToWString(), L"\uFFFDa\uFFFD");
  EXPECT_EQ(CefString(std::wstring(1, static_cast<wchar_t>(0xD800))).ToWString(), L"\uFFFD");
  EXPECT_EQ(CefString(Units({0xD800, 0xD800, 0xDC00})).ToString(), "\xEF\xBF\xBD\xF0\x90\x80\x80");
}

TEST(CefStructTest, CopiesHaveTheirOwnTexts) {
  CefCookie cookie, assigned;
  CefString(&cookie.name) = L"old";
  CefString(&cookie.name) = "n";
  cookie.secure = 1;
  CefString(&assigned.domain) = "gone";
  assigned = cookie;
  assigned = *&assigned;
  const CefCookie copy(cookie);
  cookie.Reset();
  EXPECT_EQ(cookie.name.str, nullptr);
  for (const CefCookie& c : {copy, assigned}) {
    EXPECT_EQ(CefString(&c.name).ToString(), "n");
    EXPECT_EQ(c.domain.str, nullptr);
    EXPECT_EQ(c.secure, 1);
  }
}

TEST(CefParserTest, EncodesForAddresses) {
  EXPECT_EQ(CefURIEncode("a +/=", true).ToString(), "a+%2B%2F%3D");
  EXPECT_EQ(CefURIEncode("AZaz09!'()*-._~ +<\"#%&?@[]^`{|}\xC3\xA4\x01\x7F", false).ToString(),
            "AZaz09!'()*-._~%20%2B%3C%22%23%25%26%3F%40%5B%5D%5E%60%7B%7C%7D%C3%A4%01%7F");
}

}  // namespace
