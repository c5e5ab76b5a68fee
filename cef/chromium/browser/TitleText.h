// What a window is called: there is no address bar, so its title is what tells the user where a
// password goes.

#ifndef CEF_CHROMIUM_BROWSER_TITLETEXT_H_
#define CEF_CHROMIUM_BROWSER_TITLETEXT_H_

#include <string>

namespace engine {

// Host and port of an address of the web, as addresses that Chromium reports have them: names
// outside of ASCII as punycode, the port where it is not the usual one. "" for other addresses.
std::string HostToShow(const std::string& url);

// "HOST – page title"; just the host if the page has no title. All texts are UTF-8. Of the page's
// title nothing is left that has no picture or changes the direction of others; it is cut to 100
// characters.
std::string TitleText(const std::string& host, const std::string& page_title);

// For a page that has failed.
std::string FailedTitle(const std::string& host);

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_TITLETEXT_H_
