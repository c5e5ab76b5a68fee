// Strings, structures with strings in them, moments and text encodings of the CEF API.

#include <gtest/gtest.h>

#include "include/cef_base.h"
#include "include/cef_parser.h"

namespace {

base::string16 Units(std::initializer_list<char16> units) { return base::string16(units); }

struct Conversion {
  const char* what;
  std::string utf8;
  std::wstring wide;
  base::string16 utf16;
};

TEST(CefStringTest, ConvertsValidTextBothWaysWithoutLoss) {
  const Conversion conversions[] = {
      {"empty", "", L"", {}},
      {"ASCII", "Az~", L"Az~", Units({0x41, 0x7A, 0x7E})},
      {"embedded zero", std::string("a\0b", 3), std::wstring(L"a\0b", 3), Units({0x61, 0, 0x62})},
      {"two bytes, borders", "\xC2\x80\xDF\xBF", L"\u0080\u07FF", Units({0x80, 0x7FF})},
      {"three bytes, borders", "\xE0\xA0\x80\xEF\xBF\xBF", L"\u0800\uFFFF", Units({0x800, 0xFFFF})},
      {"around the surrogates", "\xED\x9F\xBF\xEE\x80\x80", L"\uD7FF\uE000",
       Units({0xD7FF, 0xE000})},
      {"four bytes, borders", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\U00010000\U0010FFFF",
       Units({0xD800, 0xDC00, 0xDBFF, 0xDFFF})},
  };
  for (const Conversion& c : conversions) {
    SCOPED_TRACE(c.what);
    const CefString strings[] = {CefString(c.utf8), CefString(c.wide), CefString(c.utf16)};
    for (const CefString& string : strings) {
      EXPECT_EQ(string.ToString(), c.utf8);
      EXPECT_EQ(string.ToWString(), c.wide);
      EXPECT_TRUE(string.ToString16() == c.utf16);
      EXPECT_EQ(string.length(), c.utf16.length());
    }
  }
}

TEST(CefStringTest, ReplacesWhatIsNoTextAndSaysSo) {
  const struct {
    std::string utf8;
    base::string16 utf16;
  } cases[] = {
      {"a\x80z", Units({'a', 0xFFFD, 'z'})},
      {"\xC0\xAF", Units({0xFFFD, 0xFFFD})},
      {"\xE2\x82", Units({0xFFFD})},
      {"\xE2\x82z", Units({0xFFFD, 'z'})},
      {"\xED\xA0\x80", Units({0xFFFD, 0xFFFD, 0xFFFD})},
      {"\xF4\x90\x80\x80", Units({0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD})},
      {"\xF0\x9F\x98", Units({0xFFFD})},
      {"\xFF", Units({0xFFFD})},
  };
  for (const auto& c : cases) {
    CefString string;
    EXPECT_FALSE(string.FromString(c.utf8));
    EXPECT_TRUE(string.ToString16() == c.utf16) << string.ToString();
  }
  EXPECT_EQ(CefString(Units({'a', 0xD800})).ToString(), "a\xEF\xBF\xBD");
  EXPECT_EQ(CefString(Units({0xDC00, 'a'})).ToWString(), L"\uFFFDa");
  EXPECT_EQ(CefString(Units({0xD800, 0xD800, 0xDC00})).ToString(), "\xEF\xBF\xBD\xF0\x90\x80\x80");
  CefString wide;
  EXPECT_FALSE(wide.FromWString(std::wstring(1, static_cast<wchar_t>(0xD800))));
  EXPECT_EQ(wide.ToWString(), L"\uFFFD");
}

TEST(CefStringTest, TakesNullAndEmptyForEmpty) {
  const CefString strings[] = {CefString(),
                               CefString(static_cast<const char*>(nullptr)),
                               CefString(static_cast<const wchar_t*>(nullptr)),
                               CefString(static_cast<const char16*>(nullptr)),
                               CefString(static_cast<const cef_string_t*>(nullptr)),
                               CefString(nullptr, 3, true),
                               CefString("")};
  for (const CefString& string : strings) {
    EXPECT_TRUE(string.empty());
    EXPECT_TRUE(string == CefString());
    EXPECT_EQ(string.ToString(), "");
  }
  CefString text("text");
  EXPECT_TRUE(text.FromASCII(""));
  EXPECT_TRUE(text.empty());
}

TEST(CefStringTest, OrdersByUnitsAndThenByLength) {
  // Not by characters: U+FF5E is below U+10000, its unit above the surrogates.
  const CefString ascending[] = {"", "B", "a", "aa", "b", "\xF0\x90\x80\x80", "\xEF\xBD\x9E"};
  for (size_t i = 0; i < std::size(ascending); ++i) {
    for (size_t j = 0; j < std::size(ascending); ++j) {
      EXPECT_EQ(ascending[i] < ascending[j], i < j) << i << ' ' << j;
      EXPECT_EQ(ascending[i] == ascending[j], i == j) << i << ' ' << j;
      EXPECT_EQ(ascending[i] >= ascending[j], i >= j) << i << ' ' << j;
    }
  }
}

TEST(CefStringTest, CopiesAreIndependentUnlessAskedOtherwise) {
  CefString original("text");
  CefString copy(original);
  original = L"other";
  EXPECT_EQ(copy.ToString(), "text");
  copy = copy;
  EXPECT_EQ(copy.ToString(), "text");

  base::string16 units = Units({'a', 'b'});
  const CefString reference(units.data(), units.size(), false);
  EXPECT_EQ(reference.c_str(), units.data());
  units[0] = 'x';
  EXPECT_EQ(reference.ToString(), "xb");
}

TEST(CefStringTest, HandsTextOverToWhoeverFreesIt) {
  CefString string("text");
  const char16* const text = string.c_str();
  const cef_string_userfree_t free_me = string.DetachToUserFree();
  ASSERT_NE(free_me, nullptr);
  EXPECT_TRUE(string.empty());
  EXPECT_EQ(free_me->str, text);
  CefString receiver("old");
  receiver.AttachToUserFree(free_me);
  EXPECT_EQ(receiver.c_str(), text);
  EXPECT_EQ(receiver.ToString(), "text");
  EXPECT_EQ(CefString().DetachToUserFree(), nullptr);
}

TEST(CefStructTest, AttachedStringsWriteIntoTheStructure) {
  CefSettings settings;
  EXPECT_EQ(settings.size, sizeof(cef_settings_t));
  EXPECT_EQ(settings.log_file.str, nullptr);

  CefString(&settings.log_file) = "/tmp/a.log";
  CefString(&settings.user_agent).FromASCII("agent");
  CefString(&settings.cache_path) = L"/tmp/cef";
  CefString(&settings.cache_path) = std::string("/tmp/other");
  EXPECT_EQ(CefString(&settings.log_file).ToString(), "/tmp/a.log");
  EXPECT_EQ(CefString(&settings.user_agent).ToString(), "agent");
  EXPECT_EQ(CefString(&settings.cache_path).ToString(), "/tmp/other");
  CefString(&settings.user_agent).clear();
  EXPECT_EQ(settings.user_agent.str, nullptr);
}

TEST(CefStructTest, CopiesHaveTheirOwnTexts) {
  CefCookie cookie;
  CefString(&cookie.name) = "n";
  CefString(&cookie.value) = "v";
  cookie.secure = 1;
  cookie.expires.year = 2030;

  CefCookie copy(cookie);
  CefCookie assigned;
  CefString(&assigned.name) = "replaced";
  CefString(&assigned.domain) = "gone";
  assigned = cookie;
  assigned = *&assigned;
  cookie.Reset();
  for (const CefCookie* c : {&copy, &assigned}) {
    EXPECT_EQ(CefString(&c->name).ToString(), "n");
    EXPECT_EQ(CefString(&c->value).ToString(), "v");
    EXPECT_EQ(c->domain.str, nullptr);
    EXPECT_EQ(c->secure, 1);
    EXPECT_EQ(c->expires.year, 2030);
  }
  EXPECT_EQ(cookie.name.str, nullptr);
  EXPECT_EQ(cookie.secure, 0);

  CefBrowserSettings browser;
  EXPECT_EQ(browser.size, sizeof(cef_browser_settings_t));
  EXPECT_EQ(browser.webgl, STATE_DEFAULT);
}

TEST(CefTimeTest, ConvertsMomentsAndRefusesImpossibleOnes) {
  const struct {
    double seconds;
    cef_time_t fields;
  } cases[] = {
      {0, {1970, 1, 4, 1, 0, 0, 0, 0}},
      {-0.25, {1969, 12, 3, 31, 23, 59, 59, 750}},
      {951782400.5, {2000, 2, 2, 29, 0, 0, 0, 500}},
      {4102444799, {2099, 12, 4, 31, 23, 59, 59, 0}},
  };
  for (const auto& c : cases) {
    const CefTime time(c.seconds);
    EXPECT_EQ(time.year, c.fields.year);
    EXPECT_EQ(time.month, c.fields.month);
    EXPECT_EQ(time.day_of_week, c.fields.day_of_week);
    EXPECT_EQ(time.day_of_month, c.fields.day_of_month);
    EXPECT_EQ(time.hour, c.fields.hour);
    EXPECT_EQ(time.second, c.fields.second);
    EXPECT_EQ(time.millisecond, c.fields.millisecond);
    EXPECT_EQ(CefTime(c.fields).GetDoubleT(), c.seconds);
  }
  EXPECT_EQ(CefTime(-0.25).GetTimeT(), -1);
  EXPECT_EQ(CefTime(time_t{10}).Delta(CefTime(11.5)), 1500);
  time_t ignored = 0;
  const cef_time_t none = {};
  const cef_time_t february31 = {2021, 2, 0, 31, 0, 0, 0, 0};
  EXPECT_FALSE(cef_time_to_timet(&none, &ignored));
  EXPECT_FALSE(cef_time_to_timet(&february31, &ignored));
}

TEST(CefParserTest, EncodesBase64) {
  const struct {
    std::string bytes;
    const char* text;
  } cases[] = {
      {"", ""},        {"f", "Zg=="},          {"fo", "Zm8="},
      {"foo", "Zm9v"}, {"foobar", "Zm9vYmFy"}, {std::string("\0\xFF\xFE\xFB", 4), "AP/++w=="}};
  for (const auto& c : cases) {
    EXPECT_EQ(CefBase64Encode(c.bytes.data(), c.bytes.size()).ToString(), c.text);
  }
  EXPECT_TRUE(CefBase64Encode(nullptr, 3).empty());
}

TEST(CefParserTest, EncodesForAddresses) {
  const struct {
    std::string text;
    bool plus;
    const char* encoded;
  } cases[] = {
      {"", false, ""},
      {"AZaz09!'()*-._~", false, "AZaz09!'()*-._~"},
      {"+/=", true, "%2B%2F%3D"},
      {"a b", false, "a%20b"},
      {"a b", true, "a+b"},
      {"<\"#%&?@[]^`{|}", false, "%3C%22%23%25%26%3F%40%5B%5D%5E%60%7B%7C%7D"},
      {"\xC3\xA4\xE2\x82\xAC", false, "%C3%A4%E2%82%AC"},
      {std::string("\x01\x7F\0", 3), false, "%01%7F%00"},
  };
  for (const auto& c : cases) EXPECT_EQ(CefURIEncode(c.text, c.plus).ToString(), c.encoded);
}

}  // namespace
