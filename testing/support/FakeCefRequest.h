// Requests, responses and the answers they wait for.

#ifndef TESTING_SUPPORT_FAKECEFREQUEST_H_
#define TESTING_SUPPORT_FAKECEFREQUEST_H_

#include <string>

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

  bool IsReadOnly() override { return false; }
  CefString GetURL() override { return url; }
  void SetURL(const CefString& value) override { url = value; }
  CefString GetMethod() override { return method; }
  void SetMethod(const CefString& value) override { method = value; }
  void SetReferrer(const CefString& address, ReferrerPolicy) override { referrer = address; }
  CefString GetReferrerURL() override { return referrer; }
  ReferrerPolicy GetReferrerPolicy() override { return REFERRER_POLICY_DEFAULT; }
  void GetHeaderMap(HeaderMap& map) override { map = headers; }
  void SetHeaderMap(const HeaderMap& map) override { headers = map; }
  CefString GetHeaderByName(const CefString& name) override;
  void SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) override;
  int GetFlags() override { return flags; }
  void SetFlags(int value) override;
  CefString GetFirstPartyForCookies() override { return CefString(); }
  void SetFirstPartyForCookies(const CefString&) override {}
  ResourceType GetResourceType() override { return type; }
  TransitionType GetTransitionType() override { return TT_LINK; }
  uint64 GetIdentifier() override { return 1; }

  CefString url;
  CefString method = "GET";
  CefString referrer;
  HeaderMap headers;
  ResourceType type = RT_MAIN_FRAME;
  int flags = 0;

  IMPLEMENT_REFCOUNTING(FakeRequest);
};

class FakeResponse : public CefResponse {
 public:
  bool IsReadOnly() override { return false; }
  cef_errorcode_t GetError() override { return ERR_NONE; }
  void SetError(cef_errorcode_t) override {}
  int GetStatus() override { return status; }
  void SetStatus(int value) override { status = value; }
  CefString GetStatusText() override { return "OK"; }
  void SetStatusText(const CefString&) override {}
  CefString GetMimeType() override { return mimeType; }
  void SetMimeType(const CefString& value) override { mimeType = value; }
  CefString GetCharset() override { return CefString(); }
  void SetCharset(const CefString&) override {}
  CefString GetHeaderByName(const CefString& name) override;
  void SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) override;
  void GetHeaderMap(HeaderMap& map) override { map = headers; }
  void SetHeaderMap(const HeaderMap& map) override { headers = map; }
  CefString GetURL() override { return url; }
  void SetURL(const CefString& value) override { url = value; }

  int status = 200;
  CefString mimeType = "text/html";
  CefString url;
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

// A certificate of which nothing is known.
class FakeCertificate : public CefX509Certificate {
 public:
  CefRefPtr<CefX509CertPrincipal> GetSubject() override { return nullptr; }
  CefRefPtr<CefX509CertPrincipal> GetIssuer() override { return nullptr; }
  CefTime GetValidStart() override { return CefTime(); }
  CefTime GetValidExpiry() override { return CefTime(); }

  IMPLEMENT_REFCOUNTING(FakeCertificate);
};

class FakeSSLInfo : public CefSSLInfo {
 public:
  // `status` is a sum of cef_cert_status_t bits.
  explicit FakeSSLInfo(int status) : status_(static_cast<cef_cert_status_t>(status)) {}

  cef_cert_status_t GetCertStatus() override { return status_; }
  CefRefPtr<CefX509Certificate> GetX509Certificate() override { return nullptr; }

 private:
  const cef_cert_status_t status_;

  IMPLEMENT_REFCOUNTING(FakeSSLInfo);
};

#endif  // TESTING_SUPPORT_FAKECEFREQUEST_H_
