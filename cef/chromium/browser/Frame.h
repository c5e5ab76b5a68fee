// CefFrame: one document of a page.

#ifndef CEF_CHROMIUM_BROWSER_FRAME_H_
#define CEF_CHROMIUM_BROWSER_FRAME_H_

#include <string>

#include "cef/chromium/browser/Browser.h"
#include "include/cef_frame.h"

namespace engine {

// Any thread. A name for the frame rather than the frame itself: it may be held for as long as one
// likes.
class Frame : public CefFrame {
 public:
  Frame(CefRefPtr<Browser> browser, const std::string& frame_id)
      : browser_(browser), frame_id_(frame_id) {}

  void LoadURL(const CefString& url) override { browser_->Navigate(frame_id_, url.ToString()); }
  bool IsMain() override { return frame_id_ == browser_->target_id(); }

 private:
  const CefRefPtr<Browser> browser_;
  const std::string frame_id_;

  IMPLEMENT_REFCOUNTING(Frame);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_FRAME_H_
