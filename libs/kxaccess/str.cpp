#include "libs/kxaccess/str.h"

#include <cstdlib>
#include <memory>
#include <new>

std::string W2Astring(const wchar_t* text) {
  if (!text) return {};
  const size_t length = std::wcstombs(nullptr, text, 0);
  if (length == static_cast<size_t>(-1)) return {};
  const std::unique_ptr<char[]> buffer(new (std::nothrow) char[length + 1]());
  if (!buffer) return {};
  std::wcstombs(buffer.get(), text, length);
  return buffer.get();
}
