// The functions that the framework exports by name.

#include "cef/wrapper/exports.h"

#include "cef/chromium/Engine.h"
#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/base/MessageLoop.h"

using engine::Engine;
using engine::IoThread;
using engine::MessageLoop;

extern "C" {

const char* cef_api_hash(int) { return CEF_API_HASH_PLATFORM; }

bool cef_initialize(const CefMainArgs&, const CefSettings& settings, CefRefPtr<CefApp> application,
                    void*) {
  return Engine::Get().Initialize(settings, application);
}

void cef_run_message_loop() { Engine::Get().RunMessageLoop(); }

void cef_quit_message_loop() { MessageLoop::Get().Quit(); }

bool cef_currently_on(CefThreadId thread_id) {
  switch (thread_id) {
    case TID_UI:
      return MessageLoop::Get().OnUiThread();
    case TID_IO:
      return IoThread::Get().OnIoThread();
    default:
      return false;
  }
}

bool cef_post_task(CefThreadId thread_id, CefRefPtr<CefTask> task) {
  const auto run = [task] { task->Execute(); };
  switch (thread_id) {
    case TID_UI:
      return MessageLoop::Get().PostTask(run);
    case TID_IO:
      return IoThread::Get().PostTask(run);
    default:
      return false;
  }
}

bool cef_post_delayed_task(CefThreadId thread_id, CefRefPtr<CefTask> task, int64 delay_ms) {
  const auto run = [task] { task->Execute(); };
  switch (thread_id) {
    case TID_UI:
      return MessageLoop::Get().PostDelayedTask(run, delay_ms);
    case TID_IO:
      return IoThread::Get().PostDelayedTask(run, delay_ms);
    default:
      return false;
  }
}

bool cef_browser_host_create_browser(const CefWindowInfo&, CefRefPtr<CefClient> client,
                                     const CefString& url, const CefBrowserSettings& settings,
                                     CefRefPtr<CefDictionaryValue>,
                                     CefRefPtr<CefRequestContext> request_context) {
  // A client that was built with other headers than these would be misread.
  if (settings.size != sizeof(cef_browser_settings_t)) return false;
  return Engine::Get().CreateBrowser({client, request_context, url.ToString()});
}

CefRefPtr<CefCommandLine> cef_command_line_get_global() { return Engine::Get().command_line(); }

CefRefPtr<CefRequestContext> cef_request_context_get_global_context() {
  return Engine::Get().global_context();
}

CefRefPtr<CefRequestContext> cef_request_context_create_context_shared(
    CefRefPtr<CefRequestContext> other, CefRefPtr<CefRequestContextHandler> handler) {
  return Engine::Get().ShareContext(other, handler);
}

// Every browser has a plain window.
CefRefPtr<CefBrowserView> cef_browser_view_get_for_browser(CefRefPtr<CefBrowser>) {
  return nullptr;
}

}  // extern "C"
