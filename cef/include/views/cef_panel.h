// A view that holds views.

#ifndef CEF_INCLUDE_VIEWS_CEF_PANEL_H_
#define CEF_INCLUDE_VIEWS_CEF_PANEL_H_

#include "include/views/cef_view.h"

// Implemented by the framework; UI thread.
class CefPanel : public CefView {};

#endif  // CEF_INCLUDE_VIEWS_CEF_PANEL_H_
