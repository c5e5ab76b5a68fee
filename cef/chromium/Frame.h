// CefFrame: one document of a page.

#ifndef CEF_CHROMIUM_FRAME_H_
#define CEF_CHROMIUM_FRAME_H_

#include <string>

#include "cef/chromium/Browser.h"
#include "cef/chromium/BrowserTable.h"
#include "include/cef_frame.h"

namespace engine {

// Any thread. A name for the frame rather than the frame itself: it may be held for as long as one
// likes.
class Frame : public CefFrame {
 public:
  Frame(CefRefPtr<Browser> browser, const std::string& frame_id)
      : browser_(browser), frame_id_(frame_id) {}

  bool IsValid() override;
  void LoadURL(const CefString& url) override;
  void ExecuteJavaScript(const CefString& code, const CefString& script_url,
                         int start_line) override;
  bool IsMain() override { return frame_id_ == browser_->target_id(); }
  bool IsFocused() override { return IsMain(); }
  CefString GetName() override { return Record().name; }
  int64 GetIdentifier() override;
  CefRefPtr<CefFrame> GetParent() override;
  CefString GetURL() override { return Record().url; }
  CefRefPtr<CefBrowser> GetBrowser() override { return browser_.get(); }

 private:
  FrameRecord Record() const;

  const CefRefPtr<Browser> browser_;
  const std::string frame_id_;

  IMPLEMENT_REFCOUNTING(Frame);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_FRAME_H_
