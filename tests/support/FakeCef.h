// A framework made of fakes behind the API's function table, for tests of what calls the API. While
// a FakeCef lives, every call that goes into it or into one of its objects adds a line to one
// trace; questions without effect (CefCurrentlyOn, getters) add none. Nothing runs by itself:
// posted tasks wait for RunTasks. For one thread.

#ifndef TESTS_SUPPORT_FAKECEF_H_
#define TESTS_SUPPORT_FAKECEF_H_

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "include/cef_app.h"
#include "include/cef_task.h"
#include "tests/support/FakeCefObjects.h"

class FakeCef {
 public:
  // Puts the fake table in use; one at a time.
  FakeCef();
  // Empties the table again. Tasks that never ran are dropped.
  ~FakeCef();
  FakeCef(const FakeCef&) = delete;
  FakeCef& operator=(const FakeCef&) = delete;

  // The lines that begin with one of `beginnings`; without any, all.
  std::vector<std::string> Trace(const std::vector<std::string>& beginnings = {""}) const;
  void ClearTrace() { trace.clear(); }

  // Runs what is queued for `thread`, and what that queues, with `thread` as the current one.
  void RunTasks(CefThreadId thread);

  // A browser that is open, in no queue and known to nobody; its number is the next free one.
  CefRefPtr<FakeBrowser> MakeBrowser() { return new FakeBrowser(nextBrowser_++); }

  std::vector<std::string> trace;
  std::map<CefThreadId, std::deque<CefRefPtr<CefTask>>> tasks;

  // The thread that the caller counts as; none for a foreign one. UI at the start.
  std::optional<CefThreadId> currentThread = TID_UI;
  bool acceptTasks = true;
  // What happens while the message loop runs.
  std::function<void()> whileRunning = [] {};

  // What the last CefInitialize and the last CreateBrowser were given.
  CefSettings settings;
  CefBrowserSettings createdSettings;

 private:
  int nextBrowser_ = 1;
};

#endif  // TESTS_SUPPORT_FAKECEF_H_
