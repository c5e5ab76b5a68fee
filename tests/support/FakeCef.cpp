#include "tests/support/FakeCef.h"

#include "cef/wrapper/function_table.h"
#include "include/base/cef_bind.h"
#include "include/cef_api_hash.h"
#include "include/wrapper/cef_closure_task.h"

namespace {

FakeCef* g_fake = nullptr;

const char* NameOf(CefThreadId thread) {
  switch (thread) {
    case TID_UI:
      return "UI";
    case TID_IO:
      return "IO";
    default:
      return "other";
  }
}

const char* FakeApiHash(int) { return CEF_API_HASH_PLATFORM; }

bool FakeInitialize(const CefMainArgs&, const CefSettings& settings, CefRefPtr<CefApp> app, void*) {
  g_fake->settings = settings;
  app->OnBeforeCommandLineProcessing(CefString(), g_fake->commandLine.get());
  app->GetBrowserProcessHandler()->OnContextInitialized();
  return true;
}

void FakeRunMessageLoop() {
  while (g_fake->RunTasks(TID_UI) + g_fake->RunTasks(TID_IO) != 0) {
  }
}

void FakeQuitMessageLoop() { g_fake->Add("QuitMessageLoop()"); }

bool FakeCurrentlyOn(CefThreadId thread) { return g_fake->currentThread == thread; }

void OpenBrowser(CefRefPtr<FakeBrowser> browser) {
  g_fake->browsers.push_back(browser);
  browser->client->GetLifeSpanHandler()->OnAfterCreated(browser.get());
}

bool FakeCreateBrowser(const CefWindowInfo&, CefRefPtr<CefClient> client, const CefString& url,
                       const CefBrowserSettings& settings, CefRefPtr<CefDictionaryValue>,
                       CefRefPtr<CefRequestContext> context) {
  g_fake->Add("CreateBrowser(url=" + url.ToString() + ")");
  g_fake->createdSettings = settings;
  g_fake->createdContext = context;
  if (g_fake->callsBack) {
    g_fake->Post(TID_UI,
                 CefCreateClosureTask(base::Bind(&OpenBrowser, g_fake->MakeBrowser(client))));
  }
  return true;
}

CefRefPtr<CefCommandLine> FakeGlobalCommandLine() { return g_fake->commandLine.get(); }

CefRefPtr<CefRequestContext> FakeGlobalContext() { return g_fake->globalContext.get(); }

CefRefPtr<CefRequestContext> FakeCreateContext(CefRefPtr<CefRequestContext> other,
                                               CefRefPtr<CefRequestContextHandler> handler) {
  g_fake->Add(std::string("CreateContext(handler=") + (handler.get() ? "yes" : "no") + ")");
  const CefRefPtr<FakeRequestContext> context = new FakeRequestContext;
  context->cookieManager = static_cast<FakeRequestContext*>(other.get())->cookieManager;
  return context.get();
}

CefRefPtr<CefBrowserView> FakeViewOf(CefRefPtr<CefBrowser>) { return g_fake->browserView.get(); }

bool FakePostTask(CefThreadId thread, CefRefPtr<CefTask> task) {
  g_fake->Add(std::string("PostTask(") + NameOf(thread) + ")");
  if (!g_fake->acceptTasks) return false;
  g_fake->Post(thread, task);
  return true;
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
  table.cef_browser_view_get_for_browser = &FakeViewOf;
  CefSetFunctionTable(&table);
}

FakeCef::~FakeCef() {
  CefSetFunctionTable(nullptr);
  g_fake = nullptr;
}

FakeCef* FakeCef::Instance() { return g_fake; }

void FakeCef::Add(const std::string& line) {
  const std::lock_guard<std::mutex> lock(mutex_);
  trace_.push_back(line);
}

std::vector<std::string> FakeCef::Trace() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return trace_;
}

std::vector<std::string> FakeCef::Trace(const std::vector<std::string>& beginnings) const {
  std::vector<std::string> chosen;
  for (const std::string& line : Trace()) {
    for (const std::string& beginning : beginnings) {
      if (line.compare(0, beginning.size(), beginning) == 0) {
        chosen.push_back(line);
        break;
      }
    }
  }
  return chosen;
}

void FakeCef::ClearTrace() {
  const std::lock_guard<std::mutex> lock(mutex_);
  trace_.clear();
}

void FakeCef::Post(CefThreadId thread, CefRefPtr<CefTask> task) {
  const std::lock_guard<std::mutex> lock(mutex_);
  tasks_[thread].push_back(task);
}

bool FakeCef::TakeTask(CefThreadId thread, CefRefPtr<CefTask>& task) {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::deque<CefRefPtr<CefTask>>& queue = tasks_[thread];
  if (queue.empty()) return false;
  task = queue.front();
  queue.pop_front();
  return true;
}

size_t FakeCef::RunTasks(CefThreadId thread, size_t limit) {
  const std::optional<CefThreadId> caller = currentThread;
  currentThread = thread;
  size_t count = 0;
  CefRefPtr<CefTask> task;
  for (; count < limit && TakeTask(thread, task); ++count) task->Execute();
  task = nullptr;
  currentThread = caller;
  return count;
}

CefRefPtr<FakeBrowser> FakeCef::MakeBrowser(CefRefPtr<CefClient> client) {
  return new FakeBrowser(nextBrowser_++, client, globalContext.get());
}

void FakeTrace(const std::string& line) {
  if (g_fake) g_fake->Add(line);
}
