// CefRequest: what a client sees of one request.

#ifndef CEF_CHROMIUM_NETWORK_REQUEST_H_
#define CEF_CHROMIUM_NETWORK_REQUEST_H_

#include <string>
#include <utility>

#include "include/cef_request.h"

namespace engine {

// IO thread: made there and lent to the callbacks that run there. Without a lock, since nothing in
// it changes.
class Request : public CefRequest {
 public:
  struct Data {
    std::string url;
    std::string referrer;
    HeaderMap headers;
    ResourceType resource_type = RT_SUB_RESOURCE;
  };

  explicit Request(Data data) : data_(std::move(data)) {}

  CefString GetURL() override { return data_.url; }
  CefString GetReferrerURL() override { return data_.referrer; }
  void GetHeaderMap(HeaderMap& headerMap) override { headerMap = data_.headers; }
  ResourceType GetResourceType() override { return data_.resource_type; }
  // Chromium sends the request as it is.
  void SetFlags(int) override {}

 private:
  const Data data_;

  IMPLEMENT_REFCOUNTING(Request);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_NETWORK_REQUEST_H_
