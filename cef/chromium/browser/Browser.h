// CefBrowser: one window with its page.

#ifndef CEF_CHROMIUM_BROWSER_BROWSER_H_
#define CEF_CHROMIUM_BROWSER_BROWSER_H_

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "include/cef_browser.h"
#include "include/cef_client.h"

namespace engine {

class DevToolsConnection;

// What a window shows, as far as it tells why a step has not come to its end.
struct Shown {
  std::string host;   // of the page, or of the first one while that is loaded; "" before
  std::string error;  // why the page could not be had, as "net::ERR_..."; "" for one that was
  bool loading = false;
};

// Any thread, where nothing else is said. The object outlives its window; what is asked of it then
// does nothing.
class Browser : public CefBrowser {
 public:
  // The session that speaks for a frame; "" for an unknown frame.
  using SessionOfFrame = std::function<std::string(const std::string& frame_id)>;

  // `target_id` and `session`: the page's target and the session attached to it. `client` may be
  // null. The connection must live as long as the process.
  Browser(DevToolsConnection& connection, SessionOfFrame session_of_frame,
          const std::string& target_id, const std::string& session, CefRefPtr<CefClient> client,
          CefRefPtr<CefRequestContext> context, bool popup);

  const std::string& target_id() const { return target_id_; }
  const std::string& session() const { return session_; }
  // Null once OnBeforeClose has been called, and when the browser was made without one.
  CefRefPtr<CefClient> client() const;
  CefRefPtr<CefRequestContext> context() const { return context_; }
  // The page is being closed without being asked.
  bool IsForcedToClose() const { return forced_; }

  // Tells the client of the new window. UI thread.
  void NotifyCreated();
  // Tells the client that the window is gone; the last word of this browser. UI thread.
  void NotifyGone();

  // The page's set-up is in force from now on. Before that a document must not begin. IO thread.
  void SetUpIsDone();
  // Calls back when it is: at once, or from SetUpIsDone(). What has waited longest among very many
  // is dropped, since a later navigation has taken its place. IO thread.
  void WhenSetUp(std::function<void()> done);

  // Closes the window; repeated calls do no harm. See CefBrowserHost::CloseBrowser.
  void Close(bool force);

  // Navigates a frame. An address without a scheme is taken for one of HTTP, as when it is typed;
  // for one that is no address the client gets OnLoadError. Does nothing for an empty one.
  void Navigate(const std::string& frame_id, const std::string& url);

  CefRefPtr<CefFrame> FrameById(const std::string& frame_id);
  // Reports a failed navigation to the client, unless it is being closed by force. With `document`,
  // an HTML page that the client loads in return is shown at the address that failed. UI thread.
  void NotifyLoadError(const std::string& frame_id, const std::string& error_text,
                       const std::string& url, bool document = false);

  void Shows(const Shown& shown);
  Shown shown() const;

  CefRefPtr<CefBrowserHost> GetHost() override;
  int GetIdentifier() override { return identifier_; }
  bool IsSame(CefRefPtr<CefBrowser> that) override;
  bool IsPopup() override { return popup_; }
  CefRefPtr<CefFrame> GetMainFrame() override;

 private:
  void CloseOnUi(bool force);
  void CloseTarget(int attempts);

  DevToolsConnection& connection_;
  const SessionOfFrame session_of_frame_;
  const std::string target_id_;
  const std::string session_;
  const CefRefPtr<CefRequestContext> context_;
  const bool popup_;
  const int identifier_;

  std::atomic<bool> forced_{false};
  mutable std::mutex mutex_;
  CefRefPtr<CefClient> client_;  // guarded by mutex_
  Shown shown_;                  // guarded by mutex_

  // IO thread only.
  bool set_up_ = false;
  std::vector<std::function<void()>> awaiting_set_up_;

  // UI thread only.
  bool did_do_close_ = false;
  bool asked_page_ = false;
  std::string to_fill_;  // the frame whose failure the client is told of

  IMPLEMENT_REFCOUNTING(Browser);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_BROWSER_H_
