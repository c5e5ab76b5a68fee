// Which of our environment variables Chromium gets.

#ifndef CEF_CHROMIUM_PROCESS_CHILDENVIRONMENT_H_
#define CEF_CHROMIUM_PROCESS_CHILDENVIRONMENT_H_

#include <string>
#include <utility>
#include <vector>

namespace engine {

// True for what a browser on a desktop may need: the user, the language, the display, the desktop
// and its input methods, proxies, Kerberos, certificates and smart cards, fonts, sound, printers.
// What else a caller's environment holds (access keys and tokens, code to be preloaded, a file for
// the keys of all TLS connections) is none of a browser's business.
bool MayInherit(const std::string& name);

// The "NAME=value" of our own environment that may be inherited, and the changes, which may be
// variables of any name. Not while another thread changes the environment.
std::vector<std::string> ChildEnvironment(
    const std::vector<std::pair<std::string, std::string>>& changes);

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_CHILDENVIRONMENT_H_
