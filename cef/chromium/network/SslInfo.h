// CefSSLInfo: what is known of a certificate that was refused.

#ifndef CEF_CHROMIUM_NETWORK_SSLINFO_H_
#define CEF_CHROMIUM_NETWORK_SSLINFO_H_

#include "include/cef_ssl_info.h"

namespace engine {

// The status bits only: Chromium does not show the certificate before the user has decided.
class SslInfo : public CefSSLInfo {
 public:
  explicit SslInfo(cef_cert_status_t status) : status_(status) {}

  cef_cert_status_t GetCertStatus() override { return status_; }

 private:
  const cef_cert_status_t status_;

  IMPLEMENT_REFCOUNTING(SslInfo);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_NETWORK_SSLINFO_H_
