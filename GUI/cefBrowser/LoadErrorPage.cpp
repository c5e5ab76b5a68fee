#include "GUI/cefBrowser/LoadErrorPage.h"

#include "GUI/newUI/CommonWebBrowser.h"
#include "libs/kxaccess/utf8.h"

std::string LoadErrorPage(const std::wstring& failedUrl, const std::string& errorText,
                          int errorCode) {
  return "<html><body bgcolor=\"white\"><h2>This site can not be reached </h2><br><h3>" +
         WideToUtf8(SiteOfAddress(failedUrl)) + "<br> Error : " + errorText + " (" +
         std::to_string(errorCode) + ").</h3></body></html>";
}
