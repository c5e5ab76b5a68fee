// Typed arguments for the placeholders of catalog texts.

#ifndef LIBS_CATALOGUTIL_ARGUMENTS_H_
#define LIBS_CATALOGUTIL_ARGUMENTS_H_

#include <cstddef>
#include <string>
#include <vector>

namespace orb::CatalogUtil {

// A placeholder in a text: "{index}" or, for hexadecimal, "{index:h}".
struct Placeholder {
  size_t begin = 0;
  size_t size = 0;  // in characters, with the braces
  unsigned int index = 0;
  bool hexadecimal = false;
};

// Finds the first placeholder that begins at or behind `from`. "\{" and "\}" neither open nor close
// one. False, with `found` unchanged, when there is none.
bool FindPlaceholder(const std::wstring& text, size_t from, Placeholder& found);

// A list of arguments in encoded form: for each one byte of type, two of length (little-endian),
// then the value's bytes in the machine's order. No lock; not for several threads at once.
class Arguments {
 public:
  enum ArgTypes : unsigned char {
    kUnsigned16 = 0,
    kUnsigned32 = 1,
    kUnsigned64 = 2,
    kWideString = 3,  // four bytes a character, no terminator
    kUnsigned8 = 4,
    kSigned8 = 5,
    kSigned16 = 6,
    kSigned32 = 7,
    kSigned64 = 8,
  };
  enum ArgFormatSpecifiers { kDecimal = 0, kHexadecimal = 1 };

  // Appends an argument as it is given: type, the two bytes at `length2`, the `n` bytes at `bytes`.
  Arguments& addArgument(ArgTypes type, const unsigned char* length2, const unsigned char* bytes,
                         size_t n);

  Arguments& operator<<(unsigned int value);
  // A null pointer ends the process. Only the part whose length in bytes fits 16 bits is kept, that
  // is the length modulo 65,536: pass texts below 16,384 characters.
  Arguments& operator<<(const wchar_t* text);

  // Finds the argument at `index`, counted from 0; entries of unknown type are passed over. Gives
  // the place of its first header byte and its whole size, header included. False when there is
  // none, when its value is empty and it is not a text, and when the entries end in the middle.
  bool getArgumentBytesAt(size_t index, size_t& offset, size_t& size) const;

  // Replaces `out` by an argument's rendering. Hexadecimal is "0x" and 8 digits (16 for 64-bit
  // values), with signs extended; texts stay as they are. False, with `out` unchanged, when there
  // is no such argument or it has fewer bytes than its type.
  bool toString(size_t index, std::wstring& out, ArgFormatSpecifiers spec) const;

  // Fills in the placeholders of `text`. "\{" and "\}" keep their backslash. A placeholder without
  // an argument stays.
  // Texts filled in are filled in themselves, so one that holds a placeholder for itself makes this
  // endless: never pass foreign text with "{" in it. False only for an empty `text`.
  bool formatString(std::wstring& text) const;

  std::vector<unsigned char> m_bytes;
};

// What a text of the resource catalog needs: its number, and the arguments of its placeholders.
struct ResourceStringArguments {
  explicit ResourceStringArguments(unsigned int id) : id(id) {}

  unsigned int id;
  Arguments arguments;
};

}  // namespace orb::CatalogUtil

#endif  // LIBS_CATALOGUTIL_ARGUMENTS_H_
