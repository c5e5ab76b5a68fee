// What is known about a connection's certificate.

#ifndef CEF_INCLUDE_CEF_SSL_INFO_H_
#define CEF_INCLUDE_CEF_SSL_INFO_H_

#include "include/cef_base.h"

// Implemented by the framework.
class CefSSLInfo : public virtual CefBaseRefCounted {
 public:
  // Bits of cef_cert_status_t.
  virtual cef_cert_status_t GetCertStatus() = 0;
};

#endif  // CEF_INCLUDE_CEF_SSL_INFO_H_
