// A frame of a page.

#ifndef CEF_INCLUDE_CEF_FRAME_H_
#define CEF_INCLUDE_CEF_FRAME_H_

#include "include/cef_base.h"

class CefBrowser;

// Implemented by the framework; from any thread of the browser process.
class CefFrame : public virtual CefBaseRefCounted {
 public:
  // False once the frame is gone.
  virtual bool IsValid() = 0;
  // Navigates. Nothing happens for an empty address.
  virtual void LoadURL(const CefString& url) = 0;
  virtual void ExecuteJavaScript(const CefString& code, const CefString& script_url,
                                 int start_line) = 0;
  virtual bool IsMain() = 0;
  virtual bool IsFocused() = 0;
  virtual CefString GetName() = 0;
  // Unique in the process; negative while it is not known yet.
  virtual int64 GetIdentifier() = 0;
  // Null for the main frame.
  virtual CefRefPtr<CefFrame> GetParent() = 0;
  virtual CefString GetURL() = 0;
  virtual CefRefPtr<CefBrowser> GetBrowser() = 0;
};

#endif  // CEF_INCLUDE_CEF_FRAME_H_
