// A framework made of fakes behind the API's function table, for tests of what calls the API. While
// a FakeCef lives, every call that goes into it or into one of its objects adds a line to one
// trace; questions without effect (CefCurrentlyOn, getters) add none. Nothing runs by itself:
// posted tasks wait for RunTasks.

#ifndef TESTS_SUPPORT_FAKECEF_H_
#define TESTS_SUPPORT_FAKECEF_H_

#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "include/cef_app.h"
#include "include/cef_task.h"
#include "tests/support/FakeCefBrowser.h"
#include "tests/support/FakeCefContext.h"
#include "tests/support/FakeCefRequest.h"
#include "tests/support/FakeTrace.h"

class FakeCef {
 public:
  // Puts the fake table in use; one at a time.
  FakeCef();
  // Empties the table again. Tasks that never ran are dropped.
  ~FakeCef();
  FakeCef(const FakeCef&) = delete;
  FakeCef& operator=(const FakeCef&) = delete;

  // The living one, null when there is none.
  static FakeCef* Instance();

  // Adds `line` to the trace; tests add the calls of their own callbacks here.
  void Add(const std::string& line);
  std::vector<std::string> Trace() const;
  // Only the lines that begin with one of `beginnings`.
  std::vector<std::string> Trace(const std::vector<std::string>& beginnings) const;
  void ClearTrace();

  void Post(CefThreadId thread, CefRefPtr<CefTask> task);
  // Runs what is queued for `thread`, and what that queues, with `thread` as the current one.
  // Returns how many ran; it stops at `limit`, so that tasks which post themselves end.
  size_t RunTasks(CefThreadId thread, size_t limit = 1000);

  // A browser that is open, in no queue and known to nobody; its number is the next free one.
  CefRefPtr<FakeBrowser> MakeBrowser(CefRefPtr<CefClient> client);

  // The thread that the caller counts as; none for a foreign one. UI at the start.
  std::optional<CefThreadId> currentThread = TID_UI;
  bool acceptTasks = true;

  // With true, what is ordered happens: CreateBrowser queues OnAfterCreated, CloseBrowser asks
  // DoClose and queues OnBeforeClose. Otherwise both only leave a line.
  bool callsBack = false;

  // What the last CefInitialize was given.
  CefSettings settings;
  // What CreateBrowser was given last, and the browsers that came of it.
  CefBrowserSettings createdSettings;
  CefRefPtr<CefRequestContext> createdContext;
  std::vector<CefRefPtr<FakeBrowser>> browsers;

  CefRefPtr<FakeCommandLine> commandLine = new FakeCommandLine;
  CefRefPtr<FakeRequestContext> globalContext = new FakeRequestContext;
  // Given to every browser that is asked for its view; null: no view.
  CefRefPtr<FakeBrowserView> browserView;

 private:
  bool TakeTask(CefThreadId thread, CefRefPtr<CefTask>& task);

  mutable std::mutex mutex_;
  std::vector<std::string> trace_;
  std::map<CefThreadId, std::deque<CefRefPtr<CefTask>>> tasks_;
  int nextBrowser_ = 1;
};

#endif  // TESTS_SUPPORT_FAKECEF_H_
