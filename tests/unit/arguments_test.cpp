#include "libs/catalogUtil/Arguments.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace {

using orb::CatalogUtil::Arguments;

template <typename Value>
void Add(Arguments& arguments, int type, Value value) {
  const unsigned char length[] = {sizeof value, 0};
  unsigned char bytes[sizeof value];
  std::memcpy(bytes, &value, sizeof value);
  arguments.addArgument(static_cast<Arguments::ArgTypes>(type), length, bytes, sizeof value);
}

TEST(Arguments, RendersEveryType) {
  Arguments arguments;
  Add<std::uint16_t>(arguments, 0, 0xFFFF);
  Add<std::uint64_t>(arguments, 2, UINT64_MAX);
  Add<char>(arguments, 9, 'x');  // unknown types are passed over and not counted
  arguments << L"disk";
  Add<std::uint8_t>(arguments, 4, 200);
  Add<std::int8_t>(arguments, 5, -1);
  Add<std::int16_t>(arguments, 6, -2);
  Add<std::int32_t>(arguments, 7, INT32_MIN);
  Add<std::int64_t>(arguments, 8, INT64_MIN);
  arguments << 4000000000u << L"";

  const wchar_t* const expected[][2] = {{L"65535", L"0x0000FFFF"},
                                        {L"18446744073709551615", L"0xFFFFFFFFFFFFFFFF"},
                                        {L"disk", L"disk"},
                                        {L"200", L"0x000000C8"},
                                        {L"-1", L"0xFFFFFFFF"},
                                        {L"-2", L"0xFFFFFFFE"},
                                        {L"-2147483648", L"0x80000000"},
                                        {L"-9223372036854775808", L"0x8000000000000000"},
                                        {L"4000000000", L"0xEE6B2800"},
                                        {L"", L""}};
  size_t index = 0;
  for (const auto& texts : expected) {
    SCOPED_TRACE(index);
    std::wstring out = L"old";
    EXPECT_TRUE(arguments.toString(index, out, Arguments::kDecimal));
    EXPECT_EQ(out, texts[0]);
    EXPECT_TRUE(arguments.toString(index++, out, Arguments::kHexadecimal));
    EXPECT_EQ(out, texts[1]);
  }
  std::wstring out;
  EXPECT_FALSE(arguments.toString(index, out, Arguments::kDecimal));
}

TEST(Arguments, WalkStopsAtWhatIsBroken) {
  Arguments arguments;
  arguments << 1u;
  const unsigned char none[] = {0, 0};
  arguments.addArgument(Arguments::kUnsigned32, none, none, 0);
  arguments << L"ab";
  size_t offset = 0, size = 0;
  EXPECT_FALSE(arguments.getArgumentBytesAt(1, offset, size));  // a number without bytes
  EXPECT_TRUE(arguments.getArgumentBytesAt(2, offset, size));   // but it counts
  EXPECT_EQ(offset, 10u);
  EXPECT_EQ(size, 11u);
  // Cut anywhere, the last entry is gone.
  for (; arguments.m_bytes.size() > 10; arguments.m_bytes.pop_back()) {
    EXPECT_EQ(arguments.getArgumentBytesAt(2, offset, size), arguments.m_bytes.size() == 21);
  }

  // Fewer bytes than the type needs are not read past the end.
  Arguments cut;
  Add<std::uint8_t>(cut, Arguments::kUnsigned64, 1);
  std::wstring out;
  EXPECT_FALSE(cut.toString(0, out, Arguments::kDecimal));
}

TEST(Arguments, FillsPlaceholders) {
  Arguments arguments;
  arguments << 5u << L"disk" << L"<{0:h}>" << L"" << L"0";
  const struct {
    const wchar_t* text;
    const wchar_t* expected;
  } cases[] = {{L"{1} full: {0:h} blocks", L"disk full: 0x00000005 blocks"},
               {L"{00}{0:H}{0:x}{0:hh}{0:}{0:h:h}", L"50x000000055555"},
               {L"{x{0}}", L"{x5}"},
               {L"{9} [{3}]", L"{9} []"},
               {L"{2} {{4}}", L"<0x00000005> 5"},  // what a filled-in text completes is seen too
               {L"{} { 0} {-1} {a} {0", L"{} { 0} {-1} {a} {0"},
               {L"{0\\} {0}", L"{0\\} 5"},
               {L"{0:\\{}", L"{0:\\{}"},
               {L"{1:\\}} x", L"disk x"},
               {L"}\\{{0}\\}{", L"}\\{5\\}{"}};
  for (const auto& c : cases) {
    std::wstring text = c.text;
    EXPECT_TRUE(arguments.formatString(text));
    EXPECT_EQ(text, c.expected);
  }
}

}  // namespace
