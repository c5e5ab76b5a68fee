// A certificate that a user could sign in with. Nothing here looks into one: the class exists
// because signatures name it.

#ifndef CEF_INCLUDE_CEF_X509_CERTIFICATE_H_
#define CEF_INCLUDE_CEF_X509_CERTIFICATE_H_

#include "include/cef_base.h"

class CefX509Certificate : public virtual CefBaseRefCounted {};

#endif  // CEF_INCLUDE_CEF_X509_CERTIFICATE_H_
