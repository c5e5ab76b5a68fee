// Addresses.

#ifndef CEF_CHROMIUM_BASE_URL_H_
#define CEF_CHROMIUM_BASE_URL_H_

#include <string>

namespace engine {

// The parts of an address. scheme and host are in lower case; IPv6 hosts keep their brackets; path
// is the escaped path without query, at least "/".
struct Url {
  std::string scheme;
  std::string host;
  std::string path;
};

// Takes an absolute address apart. False if it has no scheme, or if a scheme with hosts (http,
// https, ws, wss, ftp) has an impossible host or port. Host names outside ASCII are not converted.
bool ParseUrl(const std::string& text, Url* url);

// Whether the text begins with a scheme, as far as ParseUrl() is concerned.
bool HasScheme(const std::string& text);

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_URL_H_
