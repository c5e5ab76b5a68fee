// The client of a browser: where its handlers are asked for.

#ifndef CEF_INCLUDE_CEF_CLIENT_H_
#define CEF_INCLUDE_CEF_CLIENT_H_

#include "include/cef_base.h"
#include "include/cef_context_menu_handler.h"
#include "include/cef_dialog_handler.h"
#include "include/cef_display_handler.h"
#include "include/cef_download_handler.h"
#include "include/cef_drag_handler.h"
#include "include/cef_find_handler.h"
#include "include/cef_focus_handler.h"
#include "include/cef_jsdialog_handler.h"
#include "include/cef_keyboard_handler.h"
#include "include/cef_life_span_handler.h"
#include "include/cef_load_handler.h"
#include "include/cef_process_message.h"
#include "include/cef_render_handler.h"
#include "include/cef_request_handler.h"

// Implemented by the client. The getters may be called at any time, on the UI and the IO thread;
// null leaves the subject to the framework.
class CefClient : public virtual CefBaseRefCounted {
 public:
  virtual CefRefPtr<CefContextMenuHandler> GetContextMenuHandler() { return nullptr; }
  virtual CefRefPtr<CefDialogHandler> GetDialogHandler() { return nullptr; }
  virtual CefRefPtr<CefDisplayHandler> GetDisplayHandler() { return nullptr; }
  virtual CefRefPtr<CefDownloadHandler> GetDownloadHandler() { return nullptr; }
  virtual CefRefPtr<CefDragHandler> GetDragHandler() { return nullptr; }
  virtual CefRefPtr<CefFindHandler> GetFindHandler() { return nullptr; }
  virtual CefRefPtr<CefFocusHandler> GetFocusHandler() { return nullptr; }
  virtual CefRefPtr<CefJSDialogHandler> GetJSDialogHandler() { return nullptr; }
  virtual CefRefPtr<CefKeyboardHandler> GetKeyboardHandler() { return nullptr; }
  virtual CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() { return nullptr; }
  virtual CefRefPtr<CefLoadHandler> GetLoadHandler() { return nullptr; }
  virtual CefRefPtr<CefRenderHandler> GetRenderHandler() { return nullptr; }
  virtual CefRefPtr<CefRequestHandler> GetRequestHandler() { return nullptr; }

  // UI thread. True when the message was dealt with.
  virtual bool OnProcessMessageReceived(CefRefPtr<CefBrowser> /*browser*/,
                                        CefRefPtr<CefFrame> /*frame*/,
                                        CefProcessId /*source_process*/,
                                        CefRefPtr<CefProcessMessage> /*message*/) {
    return false;
  }
};

#endif  // CEF_INCLUDE_CEF_CLIENT_H_
