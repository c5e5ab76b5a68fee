// Navigations that failed, for CefLoadHandler.

#ifndef CEF_CHROMIUM_LOADERRORS_H_
#define CEF_CHROMIUM_LOADERRORS_H_

#include <map>
#include <string>

#include "cef/chromium/BrowserTable.h"
#include "cef/chromium/DevToolsConnection.h"

namespace engine {

// Reports a failed navigation of any frame: with the error's name as Chromium gives it
// ("net::ERR_..."), and the address that failed, after redirects. Data addresses are left out,
// since clients use them to show their own error page.
class LoadErrors {
 public:
  // Both must live as long as the process.
  LoadErrors(DevToolsConnection& connection, BrowserTable& table);

  // Before the connection is opened.
  void Subscribe();

  // Forgets the navigations of a browser. IO thread.
  void BrowserGone(const std::string& target_id);

 private:
  struct Navigation {
    std::string target_id;
    std::string frame_id;
    std::string url;
  };

  void OnRequest(const std::string& session, const JsonValue& params);
  void OnFailed(const std::string& session, const JsonValue& params);

  DevToolsConnection& connection_;
  BrowserTable& table_;
  std::map<std::string, Navigation> navigations_;  // by request id; IO thread only
};

}  // namespace engine

#endif  // CEF_CHROMIUM_LOADERRORS_H_
