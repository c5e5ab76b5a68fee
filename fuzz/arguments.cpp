// Placeholders: any bytes for the list of arguments, any text to fill in.

#include "libs/catalogUtil/Arguments.h"

#include "fuzz/Fuzz.h"
#include "libs/kxaccess/utf8.h"

using orb::CatalogUtil::Arguments;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const size_t bytes = std::min<size_t>(data[0], size - 1);
  Arguments arguments;
  arguments.m_bytes.assign(data + 1, data + 1 + bytes);
  for (size_t index = 0; index <= bytes / 3; ++index) {
    std::wstring decimal, hexadecimal;
    const bool found = arguments.toString(index, decimal, Arguments::kDecimal);
    Require(found == arguments.toString(index, hexadecimal, Arguments::kHexadecimal));
    // A text with a placeholder of its own may fill itself in for ever, as the header says.
    if (decimal.find(L'{') != std::wstring::npos) return 0;
  }
  std::wstring text = Utf8ToWide(Text(data + 1 + bytes, size - 1 - bytes));
  Require(arguments.formatString(text) || text.empty());
  return 0;
}
