// CefRequest: what a client sees of one request, or one that it makes itself.

#ifndef CEF_CHROMIUM_REQUEST_H_
#define CEF_CHROMIUM_REQUEST_H_

#include <mutex>
#include <string>

#include "cef/chromium/HttpHeaders.h"
#include "include/cef_request.h"

namespace engine {

// Any thread. Changes made by the client stay in this object: the request that Chromium sends is
// not altered.
class Request : public CefRequest {
 public:
  struct Data {
    std::string url;
    std::string method = "GET";
    std::string referrer;
    ReferrerPolicy referrer_policy = REFERRER_POLICY_DEFAULT;
    HeaderMap headers;
    int flags = 0;
    std::string first_party;
    ResourceType resource_type = RT_SUB_RESOURCE;
    TransitionType transition_type = TT_EXPLICIT;
    uint64 identifier = 0;
  };

  Request() = default;
  explicit Request(Data data) : data_(std::move(data)) {}

  bool IsReadOnly() override { return false; }
  CefString GetURL() override;
  void SetURL(const CefString& url) override;
  CefString GetMethod() override;
  void SetMethod(const CefString& method) override;
  void SetReferrer(const CefString& referrer_url, ReferrerPolicy policy) override;
  CefString GetReferrerURL() override;
  ReferrerPolicy GetReferrerPolicy() override;
  void GetHeaderMap(HeaderMap& headerMap) override;
  void SetHeaderMap(const HeaderMap& headerMap) override;
  CefString GetHeaderByName(const CefString& name) override;
  void SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) override;
  int GetFlags() override;
  void SetFlags(int flags) override;
  CefString GetFirstPartyForCookies() override;
  void SetFirstPartyForCookies(const CefString& url) override;
  ResourceType GetResourceType() override;
  TransitionType GetTransitionType() override;
  uint64 GetIdentifier() override;

 private:
  std::mutex mutex_;
  Data data_;  // guarded by mutex_

  IMPLEMENT_REFCOUNTING(Request);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_REQUEST_H_
