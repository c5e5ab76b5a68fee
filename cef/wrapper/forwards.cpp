// The functions and static methods of the API: each goes through the function table, and returns
// the neutral value when no framework is loaded.

#include <cstdio>
#include <cstring>
#include <utility>

#include "cef/wrapper/function_table.h"
#include "include/cef_api_hash.h"

namespace {

template <typename R, typename... Params, typename... Args>
R Forward(R (*function)(Params...), Args&&... args) {
  if (!function) return R();
  return function(std::forward<Args>(args)...);
}

// A framework of another version has other vtables: nothing of it may be called.
bool FrameworkMatchesHeaders() {
  if (!CefFunctions().cef_api_hash) return false;
  const char* hash = CefFunctions().cef_api_hash(0);
  if (hash && strcmp(hash, CEF_API_HASH_PLATFORM) == 0) return true;
  fprintf(stderr, "The CEF framework is of version %s, not %s\n", hash ? hash : "unknown",
          CEF_API_HASH_PLATFORM);
  fflush(stderr);
  return false;
}

}  // namespace

bool CefInitialize(const CefMainArgs& args, const CefSettings& settings,
                   CefRefPtr<CefApp> application, void* windows_sandbox_info) {
  if (!FrameworkMatchesHeaders()) return false;
  return Forward(CefFunctions().cef_initialize, args, settings, application, windows_sandbox_info);
}

void CefRunMessageLoop() { Forward(CefFunctions().cef_run_message_loop); }

void CefQuitMessageLoop() { Forward(CefFunctions().cef_quit_message_loop); }

bool CefCurrentlyOn(CefThreadId threadId) {
  return Forward(CefFunctions().cef_currently_on, threadId);
}

bool CefPostTask(CefThreadId threadId, CefRefPtr<CefTask> task) {
  return task.get() && Forward(CefFunctions().cef_post_task, threadId, task);
}

bool CefPostDelayedTask(CefThreadId threadId, CefRefPtr<CefTask> task, int64 delay_ms) {
  return task.get() && Forward(CefFunctions().cef_post_delayed_task, threadId, task, delay_ms);
}

bool CefBrowserHost::CreateBrowser(const CefWindowInfo& windowInfo, CefRefPtr<CefClient> client,
                                   const CefString& url, const CefBrowserSettings& settings,
                                   CefRefPtr<CefDictionaryValue> extra_info,
                                   CefRefPtr<CefRequestContext> request_context) {
  return Forward(CefFunctions().cef_browser_host_create_browser, windowInfo, client, url, settings,
                 extra_info, request_context);
}

CefRefPtr<CefCommandLine> CefCommandLine::GetGlobalCommandLine() {
  return Forward(CefFunctions().cef_command_line_get_global);
}

CefRefPtr<CefRequestContext> CefRequestContext::GetGlobalContext() {
  return Forward(CefFunctions().cef_request_context_get_global_context);
}

CefRefPtr<CefRequestContext> CefRequestContext::CreateContext(
    CefRefPtr<CefRequestContext> other, CefRefPtr<CefRequestContextHandler> handler) {
  if (!other.get()) return nullptr;
  return Forward(CefFunctions().cef_request_context_create_context_shared, other, handler);
}

CefRefPtr<CefBrowserView> CefBrowserView::GetForBrowser(CefRefPtr<CefBrowser> browser) {
  if (!browser.get()) return nullptr;
  return Forward(CefFunctions().cef_browser_view_get_for_browser, browser);
}
