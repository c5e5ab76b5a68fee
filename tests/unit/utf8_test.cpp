#include "libs/kxaccess/utf8.h"

#include <gtest/gtest.h>

#include <clocale>
#include <random>

#include "libs/kxaccess/str.h"

namespace {

std::wstring Wide(std::initializer_list<std::uint32_t> codePoints) {
  std::wstring text;
  for (const std::uint32_t c : codePoints) text += static_cast<wchar_t>(c);
  return text;
}

TEST(Utf8, EncodesAndDecodesTheEdgesOfEveryForm) {
  const struct {
    std::uint32_t codePoint;
    std::string bytes;
  } cases[] = {{0x00, std::string(1, '\0')},
               {0x80, "\xC2\x80"},
               {0x800, "\xE0\xA0\x80"},
               {0xD800, "\xED\xA0\x80"},
               {0xFFFF, "\xEF\xBF\xBF"},
               {0x10000, "\xF0\x90\x80\x80"},
               {0x200000, "\xF8\x88\x80\x80\x80"},
               {0x4000000, "\xFC\x84\x80\x80\x80\x80"},
               {0x7FFFFFFF, "\xFD\xBF\xBF\xBF\xBF\xBF"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.codePoint);
    char buffer[6];
    // One byte too few: refused as a whole.
    _dcfUtf8RefOut narrow(buffer, buffer + c.bytes.size() - 1);
    EXPECT_EQ(narrow.Put(c.codePoint), 1);
    EXPECT_EQ(narrow.position(), buffer);
    _dcfUtf8RefOut out(buffer, buffer + c.bytes.size());
    EXPECT_EQ(out.Put(c.codePoint), 0);
    EXPECT_EQ(std::string(buffer, out.position()), c.bytes);

    std::uint32_t decoded = ~c.codePoint;
    const char* end = c.bytes.data() + c.bytes.size();
    _dcfUtf8RefIn in(c.bytes.data(), end);
    EXPECT_TRUE(in.Get(decoded));
    EXPECT_EQ(decoded, c.codePoint);
    EXPECT_FALSE(in.Get(decoded));
    EXPECT_EQ(in.position(), end);
  }
  char untouched = 'x';
  _dcfUtf8RefOut out(&untouched, &untouched + 1);
  EXPECT_EQ(out.Put(0x80000000u), 2);
  EXPECT_EQ(untouched, 'x');
}

TEST(Utf8, RefusesMalformedSequences) {
  const struct {
    std::string bytes;
    int taken;  // bytes behind which the cursor stands afterwards
  } cases[] = {{"\x80", 1},         {"\xFE", 1},
               {"\xC0\x80", 2},  // overlong, as are the next two
               {"\xE0\x9F\xBF", 3}, {"\xFC\x83\xBF\xBF\xBF\xBF", 6},
               {"\xE2\x82", 1},      // too few bytes left
               {"\xE2\x82\x28", 2},  // no continuation
               {"\xC3\xC3", 1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    std::uint32_t ignored;
    _dcfUtf8RefIn in(c.bytes.data(), c.bytes.data() + c.bytes.size());
    EXPECT_FALSE(in.Get(ignored));
    EXPECT_EQ(in.position() - c.bytes.data(), c.taken);
  }
  // Without a bound the terminator ends a cut sequence.
  const char cut[] = "\xE2\x82";
  std::uint32_t ignored;
  _dcfUtf8RefIn in(cut, nullptr);
  EXPECT_FALSE(in.Get(ignored));
  EXPECT_EQ(in.position(), cut + 2);
}

TEST(Utf8, ConvertsTexts) {
  EXPECT_EQ(WideToUtf8(Wide({'a', 0x20AC, 0x80000000, 0x1F600})), "a\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(WideToUtf8(std::wstring(L"a\0b", 3)), "a");
  EXPECT_EQ(Utf8ToWide("\xE2\x82\xAC\xFFz"), Wide({0x20AC}));
  EXPECT_EQ(Utf8ToWide(std::string("a\0b", 3)), L"a");
}

// Long texts are converted in blocks; what comes out is what Get and Put make of them.
TEST(Utf8, LongTextsAreTheSumOfTheirSequences) {
  const std::string pieces[] = {
      "0123456789abcdef",    "x", "\xC3\xBC", "\xE0\xA0\x80", "\xE2\x82\xAC", "\xF0\x90\x80\x80",
      "\xF8\x88\x80\x80\x80"};
  const std::string faults[] = {
      "",      "\xC1\xBF",  "\xE0\x9F\xBF",  "\xF0\x8F\xBF\xBF", "\x80",
      "\xC3x", "\xE2\x82x", "\xF0\x90\x80x", "\xE2\x82",         std::string(1, '\0')};
  std::minstd_rand random(7);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (size_t n = random() % 300; n > 0; --n) text += pieces[random() % std::size(pieces)];
    text.insert(random() % (text.size() + 1), faults[random() % std::size(faults)]);

    std::wstring wide;
    std::uint32_t codePoint;
    for (_dcfUtf8RefIn in(text.c_str(), nullptr); in.Get(codePoint) && codePoint != 0;) {
      wide += static_cast<wchar_t>(codePoint);
    }
    ASSERT_EQ(Utf8ToWide(text), wide);
    ASSERT_EQ((_dcfUtfString<wchar_t, 4, 1, 1>(text.c_str()).data()), wide);
    const std::string taken = text.substr(0, WideToUtf8(wide).size());
    ASSERT_EQ(WideToUtf8(wide), taken);
    ASSERT_EQ((_dcfUtfString<char, 1, 4, 6>(wide.c_str()).data()), taken);
  }
}

TEST(W2Astring, DependsOnTheLocale) {
  EXPECT_EQ(W2Astring(L"caf\u00E9"), "");
  ASSERT_TRUE(std::setlocale(LC_CTYPE, "C.UTF-8"));
  EXPECT_EQ(W2Astring(L"caf\u00E9"), "caf\xC3\xA9");
  std::setlocale(LC_CTYPE, "C");
}

}  // namespace
