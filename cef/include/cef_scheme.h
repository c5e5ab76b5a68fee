// Registration of further URL schemes.

#ifndef CEF_INCLUDE_CEF_SCHEME_H_
#define CEF_INCLUDE_CEF_SCHEME_H_

#include "include/cef_base.h"

// Implemented by the framework.
class CefSchemeRegistrar : public CefBaseScoped {
 public:
  // False when the scheme exists already. `options` are bits; 0 for a plain scheme.
  virtual bool AddCustomScheme(const CefString& scheme_name, int options) = 0;
};

#endif  // CEF_INCLUDE_CEF_SCHEME_H_
