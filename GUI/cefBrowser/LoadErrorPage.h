// The page that is shown in place of one that could not be loaded.

#ifndef GUI_CEFBROWSER_LOADERRORPAGE_H_
#define GUI_CEFBROWSER_LOADERRORPAGE_H_

#include <string>

// `failedUrl`: the whole address, of which only scheme and host are shown. `errorText`: the network
// error's name, UTF-8. Returns HTML in UTF-8.
std::string LoadErrorPage(const std::wstring& failedUrl, const std::string& errorText,
                          int errorCode);

#endif  // GUI_CEFBROWSER_LOADERRORPAGE_H_
