// Certificates.

#ifndef CEF_INCLUDE_CEF_X509_CERTIFICATE_H_
#define CEF_INCLUDE_CEF_X509_CERTIFICATE_H_

#include "include/cef_base.h"

// The issuer or subject of a certificate. Implemented by the framework.
class CefX509CertPrincipal : public virtual CefBaseRefCounted {
 public:
  // What a user would call it by: the common name, or else one of the other names.
  virtual CefString GetDisplayName() = 0;
  virtual CefString GetCommonName() = 0;
};

// Implemented by the framework.
class CefX509Certificate : public virtual CefBaseRefCounted {
 public:
  virtual CefRefPtr<CefX509CertPrincipal> GetSubject() = 0;
  virtual CefRefPtr<CefX509CertPrincipal> GetIssuer() = 0;
  virtual CefTime GetValidStart() = 0;
  virtual CefTime GetValidExpiry() = 0;
};

#endif  // CEF_INCLUDE_CEF_X509_CERTIFICATE_H_
