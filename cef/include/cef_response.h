// An HTTP response.

#ifndef CEF_INCLUDE_CEF_RESPONSE_H_
#define CEF_INCLUDE_CEF_RESPONSE_H_

#include <map>

#include "include/cef_base.h"

// Implemented by the framework; for the thread of the callback that receives it.
class CefResponse : public virtual CefBaseRefCounted {
 public:
  typedef std::multimap<CefString, CefString> HeaderMap;

  virtual int GetStatus() = 0;

  // The type of the Content-Type header without parameters, in lower case.
  virtual CefString GetMimeType() = 0;
  // Replaces the contents of `headerMap`; a header that came several times is there several times.
  virtual void GetHeaderMap(HeaderMap& headerMap) = 0;
};

#endif  // CEF_INCLUDE_CEF_RESPONSE_H_
