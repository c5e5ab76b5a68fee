// A browser and its window.

#ifndef CEF_INCLUDE_CEF_BROWSER_H_
#define CEF_INCLUDE_CEF_BROWSER_H_

#include "include/cef_base.h"
#include "include/cef_frame.h"
#include "include/cef_request_context.h"
#include "include/cef_values.h"

class CefBrowserHost;
class CefClient;

// One browser. Implemented by the framework; from any thread of the browser process. Two pointers
// may stand for one browser: compare with IsSame.
class CefBrowser : public virtual CefBaseRefCounted {
 public:
  virtual CefRefPtr<CefBrowserHost> GetHost() = 0;

  // Unique in the process, from 1.
  virtual int GetIdentifier() = 0;
  // False for null.
  virtual bool IsSame(CefRefPtr<CefBrowser> that) = 0;
  // True for a window that a page has opened.
  virtual bool IsPopup() = 0;

  virtual CefRefPtr<CefFrame> GetMainFrame() = 0;
};

// The part of a browser that belongs to the browser process: its window and its life.
class CefBrowserHost : public virtual CefBaseRefCounted {
 public:
  // Orders a browser; it is created on the UI thread, never inside this call, and announces itself
  // with CefLifeSpanHandler::OnAfterCreated. `client`, `extra_info` and `request_context` may be
  // null (the global context is taken), `url` may be empty. False when CEF is not initialised or
  // the settings have a wrong size. From any thread.
  static bool CreateBrowser(const CefWindowInfo& windowInfo, CefRefPtr<CefClient> client,
                            const CefString& url, const CefBrowserSettings& settings,
                            CefRefPtr<CefDictionaryValue> extra_info,
                            CefRefPtr<CefRequestContext> request_context);

  // Starts to close; repeated calls do no harm. With `force_close` the page is not asked. DoClose
  // may run inside the call, OnBeforeClose comes later. From any thread.
  virtual void CloseBrowser(bool force_close) = 0;
  virtual CefWindowHandle GetWindowHandle() = 0;
  virtual CefRefPtr<CefRequestContext> GetRequestContext() = 0;
};

#endif  // CEF_INCLUDE_CEF_BROWSER_H_
