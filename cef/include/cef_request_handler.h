// The requests of a browser, and the questions they raise.

#ifndef CEF_INCLUDE_CEF_REQUEST_HANDLER_H_
#define CEF_INCLUDE_CEF_REQUEST_HANDLER_H_

#include <vector>

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_request.h"
#include "include/cef_request_callback.h"
#include "include/cef_resource_request_handler.h"
#include "include/cef_ssl_info.h"
#include "include/cef_x509_certificate.h"

// The answer of OnSelectClientCertificate. Implemented by the framework; to be used once.
class CefSelectClientCertificateCallback : public virtual CefBaseRefCounted {
 public:
  // Null goes on without a certificate.
  virtual void Select(CefRefPtr<CefX509Certificate> cert) = 0;
};

// Implemented by the client.
class CefRequestHandler : public virtual CefBaseRefCounted {
 public:
  typedef std::vector<CefRefPtr<CefX509Certificate>> X509CertificateList;

  // IO thread, before each request. Null: no callbacks for this request. `request_initiator` is
  // an origin, "null" or empty.
  virtual CefRefPtr<CefResourceRequestHandler> GetResourceRequestHandler(
      CefRefPtr<CefBrowser> /*browser*/, CefRefPtr<CefFrame> /*frame*/,
      CefRefPtr<CefRequest> /*request*/, bool /*is_navigation*/, bool /*is_download*/,
      const CefString& /*request_initiator*/, bool& /*disable_default_handling*/) {
    return nullptr;
  }
  // UI thread, for main frames. False refuses; with true the callback decides, now or later.
  virtual bool OnCertificateError(CefRefPtr<CefBrowser> /*browser*/, cef_errorcode_t /*cert_error*/,
                                  const CefString& /*request_url*/,
                                  CefRefPtr<CefSSLInfo> /*ssl_info*/,
                                  CefRefPtr<CefRequestCallback> /*callback*/) {
    return false;
  }
  // UI thread. False: the framework chooses.
  virtual bool OnSelectClientCertificate(
      CefRefPtr<CefBrowser> /*browser*/, bool /*isProxy*/, const CefString& /*host*/, int /*port*/,
      const X509CertificateList& /*certificates*/,
      CefRefPtr<CefSelectClientCertificateCallback> /*callback*/) {
    return false;
  }
};

#endif  // CEF_INCLUDE_CEF_REQUEST_HANDLER_H_
