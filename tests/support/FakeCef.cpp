#include "tests/support/FakeCef.h"

#include "cef/wrapper/function_table.h"
#include "include/cef_api_hash.h"

namespace {

FakeCef* g_fake = nullptr;

const char* FakeApiHash(int) { return CEF_API_HASH_PLATFORM; }

CefRefPtr<CefCommandLine> FakeGlobalCommandLine() { return new FakeCommandLine; }

bool FakeInitialize(const CefMainArgs&, const CefSettings& settings, CefRefPtr<CefApp> app, void*) {
  g_fake->settings = settings;
  app->OnBeforeCommandLineProcessing(CefString(), FakeGlobalCommandLine());
  app->GetBrowserProcessHandler()->OnContextInitialized();
  return true;
}

void FakeRunMessageLoop() { g_fake->whileRunning(); }

void FakeQuitMessageLoop() { FakeTrace("QuitMessageLoop()"); }

bool FakeCurrentlyOn(CefThreadId thread) { return g_fake->currentThread == thread; }

bool FakeCreateBrowser(const CefWindowInfo&, CefRefPtr<CefClient>, const CefString& url,
                       const CefBrowserSettings& settings, CefRefPtr<CefDictionaryValue>,
                       CefRefPtr<CefRequestContext>) {
  FakeTrace("CreateBrowser(url=" + url.ToString() + ")");
  g_fake->createdSettings = settings;
  return true;
}

CefRefPtr<CefRequestContext> FakeGlobalContext() { return new FakeRequestContext; }

CefRefPtr<CefRequestContext> FakeCreateContext(CefRefPtr<CefRequestContext> other,
                                               CefRefPtr<CefRequestContextHandler> handler) {
  FakeTrace(std::string("CreateContext(handler=") + (handler.get() ? "yes" : "no") + ")");
  return other;
}

bool FakePostTask(CefThreadId thread, CefRefPtr<CefTask> task) {
  FakeTrace(thread == TID_UI ? "PostTask(UI)" : "PostTask(other)");
  if (g_fake->acceptTasks) g_fake->tasks[thread].push_back(task);
  return g_fake->acceptTasks;
}

// The delay is not waited for.
bool FakePostDelayedTask(CefThreadId thread, CefRefPtr<CefTask> task, int64) {
  return FakePostTask(thread, task);
}

}  // namespace

FakeCef::FakeCef() {
  g_fake = this;
  CefFunctionTable table;
  table.cef_api_hash = &FakeApiHash;
  table.cef_initialize = &FakeInitialize;
  table.cef_run_message_loop = &FakeRunMessageLoop;
  table.cef_quit_message_loop = &FakeQuitMessageLoop;
  table.cef_currently_on = &FakeCurrentlyOn;
  table.cef_post_task = &FakePostTask;
  table.cef_post_delayed_task = &FakePostDelayedTask;
  table.cef_browser_host_create_browser = &FakeCreateBrowser;
  table.cef_command_line_get_global = &FakeGlobalCommandLine;
  table.cef_request_context_get_global_context = &FakeGlobalContext;
  table.cef_request_context_create_context_shared = &FakeCreateContext;
  CefSetFunctionTable(&table);
}

FakeCef::~FakeCef() {
  CefSetFunctionTable(nullptr);
  g_fake = nullptr;
}

std::vector<std::string> FakeCef::Trace(const std::vector<std::string>& beginnings) const {
  std::vector<std::string> chosen;
  for (const std::string& line : trace) {
    for (const std::string& beginning : beginnings) {
      if (line.rfind(beginning, 0) == 0) chosen.push_back(line);
    }
  }
  return chosen;
}

void FakeCef::RunTasks(CefThreadId thread) {
  const std::optional<CefThreadId> caller = currentThread;
  currentThread = thread;
  while (!tasks[thread].empty()) {
    const CefRefPtr<CefTask> task = tasks[thread].front();
    tasks[thread].pop_front();
    task->Execute();
  }
  currentThread = caller;
}

void FakeTrace(const std::string& line) {
  if (g_fake) g_fake->trace.push_back(line);
}
