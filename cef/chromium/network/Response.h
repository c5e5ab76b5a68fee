// CefResponse: what a client sees of one answer.

#ifndef CEF_CHROMIUM_NETWORK_RESPONSE_H_
#define CEF_CHROMIUM_NETWORK_RESPONSE_H_

#include <string>
#include <utility>

#include "include/cef_response.h"

namespace engine {

// IO thread, like Request; nothing in it changes.
class Response : public CefResponse {
 public:
  struct Data {
    int status = 0;
    std::string mime_type;
    HeaderMap headers;
  };

  explicit Response(Data data) : data_(std::move(data)) {}

  int GetStatus() override { return data_.status; }
  CefString GetMimeType() override { return data_.mime_type; }
  void GetHeaderMap(HeaderMap& headerMap) override { headerMap = data_.headers; }

 private:
  const Data data_;

  IMPLEMENT_REFCOUNTING(Response);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_NETWORK_RESPONSE_H_
