// CefResponse: what a client sees of one answer, or one that it makes itself.

#ifndef CEF_CHROMIUM_RESPONSE_H_
#define CEF_CHROMIUM_RESPONSE_H_

#include <mutex>
#include <string>

#include "cef/chromium/HttpHeaders.h"
#include "include/cef_response.h"

namespace engine {

// Any thread. Changes made by the client stay in this object.
class Response : public CefResponse {
 public:
  struct Data {
    cef_errorcode_t error = ERR_NONE;
    int status = 0;
    CefString status_text;
    CefString mime_type;
    CefString charset;
    CefString url;
    HeaderMap headers;
  };

  Response() = default;
  explicit Response(Data data) : data_(std::move(data)) {}

  bool IsReadOnly() override { return false; }
  cef_errorcode_t GetError() override;
  void SetError(cef_errorcode_t error) override;
  int GetStatus() override;
  void SetStatus(int status) override;
  CefString GetStatusText() override;
  void SetStatusText(const CefString& statusText) override;
  CefString GetMimeType() override;
  void SetMimeType(const CefString& mimeType) override;
  CefString GetCharset() override;
  void SetCharset(const CefString& charset) override;
  CefString GetURL() override;
  void SetURL(const CefString& url) override;
  CefString GetHeaderByName(const CefString& name) override;
  void SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) override;
  void GetHeaderMap(HeaderMap& headerMap) override;
  void SetHeaderMap(const HeaderMap& headerMap) override;

 private:
  std::mutex mutex_;
  Data data_;  // guarded by mutex_

  IMPLEMENT_REFCOUNTING(Response);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_RESPONSE_H_
