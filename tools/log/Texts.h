// How times, hosts and foreign texts are shown to people.

#ifndef TOOLS_LOG_TEXTS_H_
#define TOOLS_LOG_TEXTS_H_

#include <string>
#include <string_view>

namespace log_reader {

// Host and port of an address in lower case, as sign-ins compare them; the whole text when it has
// no "://".
std::string HostOf(std::string_view address);

// "https://" or "http://" of an address, else empty.
std::string SchemeOf(std::string_view address);

// The path of an address without query and fragment, which may hold secrets; shortened in its
// middle to about `most` bytes.
std::string PathOf(std::string_view address, size_t most = 60);

// A text of any bytes as one line of valid UTF-8 without control characters, cut to `most` bytes.
std::string Printable(std::string_view text, size_t most = 200);

// What pages, servers and users have written, without what looks like a secret; else as above.
std::string Foreign(std::string_view text, size_t most = 200);

// "0.042 s", "12.3 s", "2 min 5 s", "1 h 3 min"
std::string Duration(long long milliseconds);

// "a, b and c"
template <class List>
std::string Enumeration(const List& parts) {
  std::string text;
  size_t left = parts.size();
  for (const std::string& part : parts) {
    text += part;
    --left;
    if (left > 0) text += left == 1 ? " and " : ", ";
  }
  return text;
}

}  // namespace log_reader

#endif  // TOOLS_LOG_TEXTS_H_
