// Small operations on wide text that the catalogs share. Plain functions without state.

#ifndef LIBS_CATALOGUTIL_UTILS_H_
#define LIBS_CATALOGUTIL_UTILS_H_

#include <string>
#include <string_view>

namespace orb::CatalogUtil {

// The text without spaces and tabs, and only these, at both ends; points into `text`.
std::wstring_view Trimmed(std::wstring_view text);

// Removes them from a text in place.
void trimWhitespacesAtBeginAndEnd(std::wstring& text);

// Reads a number of decimal digits and nothing else: no sign, no blanks. A value that does not fit
// is cut to its low 32 bits. False, with `out` unchanged, for any other text and for an empty one.
bool convertStringToNumber(const std::wstring& text, unsigned int& out);

// Replaces every occurrence of `what` by `with`, going on behind each replacement. An empty `what`
// changes nothing.
void findAndReplace(std::wstring& text, const std::wstring& what, const std::wstring& with);

}  // namespace orb::CatalogUtil

#endif  // LIBS_CATALOGUTIL_UTILS_H_
