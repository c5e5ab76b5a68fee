// The border between a program and the browser framework: the functions that the framework exports
// by name, and the table through which the client calls them.
//
// C++ objects cross the border, so both sides are built by one compiler from the same headers;
// CEF_API_HASH_PLATFORM (include/cef_api_hash.h) has to change with any of them.

#ifndef CEF_WRAPPER_FUNCTION_TABLE_H_
#define CEF_WRAPPER_FUNCTION_TABLE_H_

#include "include/cef_app.h"
#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "include/cef_command_line.h"
#include "include/cef_request_context.h"
#include "include/cef_request_context_handler.h"
#include "include/cef_task.h"
#include "include/views/cef_browser_view.h"
#include "include/views/cef_window.h"

// CEF_FUNCTION(return type, name, (parameters)) for each of them.
#define CEF_FUNCTIONS(CEF_FUNCTION)                                                               \
  CEF_FUNCTION(const char*, cef_api_hash, (int entry))                                            \
  CEF_FUNCTION(bool, cef_initialize,                                                              \
               (const CefMainArgs& args, const CefSettings& settings,                             \
                CefRefPtr<CefApp> application, void* windows_sandbox_info))                       \
  CEF_FUNCTION(void, cef_run_message_loop, ())                                                    \
  CEF_FUNCTION(void, cef_quit_message_loop, ())                                                   \
  CEF_FUNCTION(bool, cef_currently_on, (CefThreadId thread_id))                                   \
  CEF_FUNCTION(bool, cef_post_task, (CefThreadId thread_id, CefRefPtr<CefTask> task))             \
  CEF_FUNCTION(bool, cef_post_delayed_task,                                                       \
               (CefThreadId thread_id, CefRefPtr<CefTask> task, int64 delay_ms))                  \
  CEF_FUNCTION(                                                                                   \
      bool, cef_browser_host_create_browser,                                                      \
      (const CefWindowInfo& window_info, CefRefPtr<CefClient> client, const CefString& url,       \
       const CefBrowserSettings& settings, CefRefPtr<CefDictionaryValue> extra_info,              \
       CefRefPtr<CefRequestContext> request_context))                                             \
  CEF_FUNCTION(CefRefPtr<CefCommandLine>, cef_command_line_get_global, ())                        \
  CEF_FUNCTION(CefRefPtr<CefRequestContext>, cef_request_context_get_global_context, ())          \
  CEF_FUNCTION(CefRefPtr<CefRequestContext>, cef_request_context_create_context_shared,           \
               (CefRefPtr<CefRequestContext> other, CefRefPtr<CefRequestContextHandler> handler)) \
  CEF_FUNCTION(CefRefPtr<CefBrowserView>, cef_browser_view_get_for_browser,                       \
               (CefRefPtr<CefBrowser> browser))

// One pointer for each function, all null while no framework is loaded.
struct CefFunctionTable {
#define CEF_FUNCTION(result, name, parameters) result(*name) parameters = nullptr;
  CEF_FUNCTIONS(CEF_FUNCTION)
#undef CEF_FUNCTION
};

// The table in use. Calls of the API through a null pointer of it return the neutral value.
const CefFunctionTable& CefFunctions();

// Puts a copy of `table` in use; null empties it. For the loader, and for tests that stand in for
// the framework. Not while another thread calls the API.
void CefSetFunctionTable(const CefFunctionTable* table);

#endif  // CEF_WRAPPER_FUNCTION_TABLE_H_
