// An HTTP response.

#ifndef CEF_INCLUDE_CEF_RESPONSE_H_
#define CEF_INCLUDE_CEF_RESPONSE_H_

#include <map>

#include "include/cef_base.h"

// Implemented by the framework; read-only where a handler receives it.
class CefResponse : public virtual CefBaseRefCounted {
 public:
  typedef std::multimap<CefString, CefString> HeaderMap;

  // A new, empty, writable response; null when the framework is not loaded.
  static CefRefPtr<CefResponse> Create();

  virtual bool IsReadOnly() = 0;

  virtual cef_errorcode_t GetError() = 0;
  virtual void SetError(cef_errorcode_t error) = 0;
  virtual int GetStatus() = 0;
  virtual void SetStatus(int status) = 0;
  virtual CefString GetStatusText() = 0;
  virtual void SetStatusText(const CefString& statusText) = 0;

  // The type of the Content-Type header without parameters, in lower case.
  virtual CefString GetMimeType() = 0;
  virtual void SetMimeType(const CefString& mimeType) = 0;
  virtual CefString GetCharset() = 0;
  virtual void SetCharset(const CefString& charset) = 0;

  // Empty for an empty or missing name; letter case does not matter.
  virtual CefString GetHeaderByName(const CefString& name) = 0;
  virtual void SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) = 0;
  // Replaces the contents of `headerMap`; a header that came several times is there several times.
  virtual void GetHeaderMap(HeaderMap& headerMap) = 0;
  virtual void SetHeaderMap(const HeaderMap& headerMap) = 0;

  virtual CefString GetURL() = 0;
  virtual void SetURL(const CefString& url) = 0;
};

#endif  // CEF_INCLUDE_CEF_RESPONSE_H_
