// The requests of a browser, and the questions they raise.

#ifndef CEF_INCLUDE_CEF_REQUEST_HANDLER_H_
#define CEF_INCLUDE_CEF_REQUEST_HANDLER_H_

#include <vector>

#include "include/cef_auth_callback.h"
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
  typedef cef_termination_status_t TerminationStatus;
  typedef cef_window_open_disposition_t WindowOpenDisposition;
  typedef std::vector<CefRefPtr<CefX509Certificate>> X509CertificateList;

  // UI thread. True cancels the navigation.
  virtual bool OnBeforeBrowse(CefRefPtr<CefBrowser> /*browser*/, CefRefPtr<CefFrame> /*frame*/,
                              CefRefPtr<CefRequest> /*request*/, bool /*user_gesture*/,
                              bool /*is_redirect*/) {
    return false;
  }
  // UI thread. True cancels the navigation.
  virtual bool OnOpenURLFromTab(CefRefPtr<CefBrowser> /*browser*/, CefRefPtr<CefFrame> /*frame*/,
                                const CefString& /*target_url*/,
                                WindowOpenDisposition /*target_disposition*/,
                                bool /*user_gesture*/) {
    return false;
  }
  // IO thread, before each request. Null: no callbacks for this request. `request_initiator` is
  // an origin, "null" or empty.
  virtual CefRefPtr<CefResourceRequestHandler> GetResourceRequestHandler(
      CefRefPtr<CefBrowser> /*browser*/, CefRefPtr<CefFrame> /*frame*/,
      CefRefPtr<CefRequest> /*request*/, bool /*is_navigation*/, bool /*is_download*/,
      const CefString& /*request_initiator*/, bool& /*disable_default_handling*/) {
    return nullptr;
  }
  // IO thread. False: the request goes on without credentials.
  virtual bool GetAuthCredentials(CefRefPtr<CefBrowser> /*browser*/,
                                  const CefString& /*origin_url*/, bool /*isProxy*/,
                                  const CefString& /*host*/, int /*port*/,
                                  const CefString& /*realm*/, const CefString& /*scheme*/,
                                  CefRefPtr<CefAuthCallback> /*callback*/) {
    return false;
  }
  // IO thread.
  virtual bool OnQuotaRequest(CefRefPtr<CefBrowser> /*browser*/, const CefString& /*origin_url*/,
                              int64 /*new_size*/, CefRefPtr<CefRequestCallback> /*callback*/) {
    return false;
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
  // UI thread, like the following.
  virtual void OnPluginCrashed(CefRefPtr<CefBrowser> /*browser*/,
                               const CefString& /*plugin_path*/) {}
  virtual void OnRenderViewReady(CefRefPtr<CefBrowser> /*browser*/) {}
  virtual void OnRenderProcessTerminated(CefRefPtr<CefBrowser> /*browser*/,
                                         TerminationStatus /*status*/) {}
};

#endif  // CEF_INCLUDE_CEF_REQUEST_HANDLER_H_
