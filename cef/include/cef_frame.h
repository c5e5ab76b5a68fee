// A frame of a page.

#ifndef CEF_INCLUDE_CEF_FRAME_H_
#define CEF_INCLUDE_CEF_FRAME_H_

#include "include/cef_base.h"

// Implemented by the framework; from any thread of the browser process.
class CefFrame : public virtual CefBaseRefCounted {
 public:
  // Navigates. Nothing happens for an empty address.
  virtual void LoadURL(const CefString& url) = 0;
  virtual bool IsMain() = 0;
};

#endif  // CEF_INCLUDE_CEF_FRAME_H_
