// Requests, responses and the answers they wait for.

#ifndef TESTS_SUPPORT_FAKECEFREQUEST_H_
#define TESTS_SUPPORT_FAKECEFREQUEST_H_

#include "include/cef_request.h"
#include "include/cef_request_callback.h"
#include "include/cef_request_handler.h"
#include "include/cef_response.h"
#include "include/cef_ssl_info.h"

// Plain values; SetFlags leaves "SetFlags(…)".
class FakeRequest : public CefRequest {
 public:
  explicit FakeRequest(const CefString& address = CefString(),
                       const CefString& cookies = CefString());

  CefString GetURL() override { return url; }
  CefString GetReferrerURL() override { return referrer; }
  void GetHeaderMap(HeaderMap& map) override { map = headers; }
  void SetFlags(int value) override;
  ResourceType GetResourceType() override { return type; }

  CefString url;
  CefString referrer;
  HeaderMap headers;
  ResourceType type = RT_MAIN_FRAME;

  IMPLEMENT_REFCOUNTING(FakeRequest);
};

class FakeResponse : public CefResponse {
 public:
  int GetStatus() override { return status; }
  CefString GetMimeType() override { return mimeType; }
  void GetHeaderMap(HeaderMap& map) override { map = headers; }

  int status = 200;
  CefString mimeType = "text/html";
  HeaderMap headers;

  IMPLEMENT_REFCOUNTING(FakeResponse);
};

// Leaves "Continue(true)", "Continue(false)" or "Cancel()".
class FakeRequestCallback : public CefRequestCallback {
 public:
  void Continue(bool allow) override;
  void Cancel() override;

  IMPLEMENT_REFCOUNTING(FakeRequestCallback);
};

// Leaves "Select(none)" or "Select(certificate)".
class FakeSelectClientCertificateCallback : public CefSelectClientCertificateCallback {
 public:
  void Select(CefRefPtr<CefX509Certificate> cert) override;

  IMPLEMENT_REFCOUNTING(FakeSelectClientCertificateCallback);
};

class FakeSSLInfo : public CefSSLInfo {
 public:
  // `status` is a sum of cef_cert_status_t bits.
  explicit FakeSSLInfo(int status) : status_(static_cast<cef_cert_status_t>(status)) {}

  cef_cert_status_t GetCertStatus() override { return status_; }

 private:
  const cef_cert_status_t status_;

  IMPLEMENT_REFCOUNTING(FakeSSLInfo);
};

#endif  // TESTS_SUPPORT_FAKECEFREQUEST_H_
