// An HTTP request.

#ifndef CEF_INCLUDE_CEF_REQUEST_H_
#define CEF_INCLUDE_CEF_REQUEST_H_

#include <map>

#include "include/cef_base.h"

// Implemented by the framework. Writable only in the callbacks that say so; otherwise the setters
// do nothing.
class CefRequest : public virtual CefBaseRefCounted {
 public:
  typedef std::multimap<CefString, CefString> HeaderMap;
  typedef cef_referrer_policy_t ReferrerPolicy;
  typedef cef_resource_type_t ResourceType;
  typedef cef_transition_type_t TransitionType;

  // A new, empty, writable request; null when the framework is not loaded.
  static CefRefPtr<CefRequest> Create();

  virtual bool IsReadOnly() = 0;

  // With the fragment, if there is one.
  virtual CefString GetURL() = 0;
  // Nothing happens for an empty address.
  virtual void SetURL(const CefString& url) = 0;
  virtual CefString GetMethod() = 0;
  virtual void SetMethod(const CefString& method) = 0;

  virtual void SetReferrer(const CefString& referrer_url, ReferrerPolicy policy) = 0;
  virtual CefString GetReferrerURL() = 0;
  virtual ReferrerPolicy GetReferrerPolicy() = 0;

  // Replaces the contents of `headerMap`. The referrer is not part of the headers; cookies that
  // are sent with the request stand under the name Cookie.
  virtual void GetHeaderMap(HeaderMap& headerMap) = 0;
  virtual void SetHeaderMap(const HeaderMap& headerMap) = 0;
  // Empty for an empty or missing name; letter case does not matter.
  virtual CefString GetHeaderByName(const CefString& name) = 0;
  virtual void SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) = 0;

  // Bits of cef_urlrequest_flags_t.
  virtual int GetFlags() = 0;
  virtual void SetFlags(int flags) = 0;

  virtual CefString GetFirstPartyForCookies() = 0;
  virtual void SetFirstPartyForCookies(const CefString& url) = 0;

  virtual ResourceType GetResourceType() = 0;
  virtual TransitionType GetTransitionType() = 0;
  // The same for all hops of a redirected request; 0 for a request made by Create.
  virtual uint64 GetIdentifier() = 0;
};

#endif  // CEF_INCLUDE_CEF_REQUEST_H_
