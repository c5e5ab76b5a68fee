// An HTTP request.

#ifndef CEF_INCLUDE_CEF_REQUEST_H_
#define CEF_INCLUDE_CEF_REQUEST_H_

#include <map>

#include "include/cef_base.h"

// Implemented by the framework; for the thread of the callback that receives it.
class CefRequest : public virtual CefBaseRefCounted {
 public:
  typedef std::multimap<CefString, CefString> HeaderMap;
  typedef cef_resource_type_t ResourceType;

  // With the fragment, if there is one.
  virtual CefString GetURL() = 0;
  virtual CefString GetReferrerURL() = 0;

  // Replaces the contents of `headerMap`. The referrer is not part of the headers; cookies that
  // are sent with the request stand under the name Cookie.
  virtual void GetHeaderMap(HeaderMap& headerMap) = 0;

  // Bits of cef_urlrequest_flags_t; in OnBeforeResourceLoad only.
  virtual void SetFlags(int flags) = 0;

  virtual ResourceType GetResourceType() = 0;
};

#endif  // CEF_INCLUDE_CEF_REQUEST_H_
