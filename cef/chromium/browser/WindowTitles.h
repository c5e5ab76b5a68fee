// Which window belongs to which page, and what it is called.

#ifndef CEF_CHROMIUM_BROWSER_WINDOWTITLES_H_
#define CEF_CHROMIUM_BROWSER_WINDOWTITLES_H_

#include <map>
#include <string>
#include <vector>

#include "cef/chromium/base/Json.h"
#include "cef/chromium/browser/FrameEvents.h"
#include "cef/chromium/devtools/DevToolsConnection.h"
#include "cef/chromium/process/WindowServer.h"

namespace engine {

// A window goes by the host of the document that its page shows, never of one that is on its way.
// One whose page is not known beyond doubt says so. IO thread only.
class WindowTitles {
 public:
  // Both must live as long as the process.
  WindowTitles(DevToolsConnection& connection, WindowServer& server);

  // A page has been attached to. `opener` is the target of the page that has opened it, `host` the
  // one that an ordered page is to load first; one of them is empty.
  void Opened(const std::string& target, const std::string& opener, const std::string& host);
  void Gone(const std::string& target);
  // The page's top frame shows another document; `frame` as DevTools describes it.
  void Shows(const std::string& target, const JsonValue& frame, Arrival arrival);
  // The address cannot be had; the client's own page about it takes its place, or follows.
  void Failed(const std::string& target, const std::string& url);
  void Titled(const std::string& target, const std::string& title);

 private:
  struct Page {
    std::string opener;
    std::string first_host;
    std::string host;
    std::string failed_host;
    std::string title;
    WindowServer::Window window = XCB_NONE;
    bool first = false;  // shows the first page
    bool failed = false;
    bool renaming = false;  // a moment later
  };

  void OnWindow(WindowServer::Window window);
  void OnWindowGone(WindowServer::Window window);
  void Match();
  void Belongs(const std::vector<std::string>& targets);
  void RenameSoon(const std::string& target);
  void Rename(const Page& page);

  DevToolsConnection& connection_;
  WindowServer& server_;
  std::map<std::string, Page> pages_;  // by target
  std::vector<WindowServer::Window> strays_;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_WINDOWTITLES_H_
