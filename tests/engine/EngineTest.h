// Tests of the framework with a real Chromium: the fixture, and a client that records what it is
// told.

#ifndef TESTS_ENGINE_ENGINETEST_H_
#define TESTS_ENGINE_ENGINETEST_H_

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "include/cef_app.h"
#include "include/cef_client.h"
#include "include/cef_task.h"
#include "tests/support/LocalServer.h"
#include "tests/support/TempDir.h"
#include "tests/support/VirtualDisplay.h"

// Records every callback as one line of a trace, and quits the loop with the last browser.
class RecordingClient : public CefClient,
                        public CefDisplayHandler,
                        public CefLifeSpanHandler,
                        public CefLoadHandler,
                        public CefRequestHandler,
                        public CefResourceRequestHandler {
 public:
  // A request as OnResourceResponse saw it.
  struct Seen {
    std::string url;
    std::string cookie;
    std::string referrer;
    std::string mime_type;
    int status = 0;
    cef_resource_type_t type = RT_SUB_RESOURCE;
    bool main_frame = false;
  };

  // What the test does in a callback; all may be empty.
  std::function<void(CefRefPtr<CefBrowser>)> on_created;
  std::function<ReturnValue(CefRefPtr<CefBrowser>, const std::string& url)> on_before_load;
  std::function<bool(CefRefPtr<CefBrowser>, const Seen&)> on_response;
  std::function<void(CefRefPtr<CefBrowser>, const std::string& title)> on_title;
  std::function<void(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>, const std::string& url)>
      on_load_error;
  std::function<bool(CefRefPtr<CefBrowser>, CefRefPtr<CefRequestCallback>)> on_certificate_error;

  std::vector<std::string> trace() const;
  std::vector<Seen> responses() const;
  // The responses of one path, query ignored.
  std::vector<Seen> ResponsesFor(const std::string& path) const;
  void Record(const std::string& line);

  CefRefPtr<CefDisplayHandler> GetDisplayHandler() override { return this; }
  CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override { return this; }
  CefRefPtr<CefLoadHandler> GetLoadHandler() override { return this; }
  CefRefPtr<CefRequestHandler> GetRequestHandler() override { return this; }

  void OnTitleChange(CefRefPtr<CefBrowser> browser, const CefString& title) override;
  bool OnConsoleMessage(CefRefPtr<CefBrowser> browser, cef_log_severity_t level,
                        const CefString& message, const CefString& source, int line) override;
  void OnAfterCreated(CefRefPtr<CefBrowser> browser) override;
  bool DoClose(CefRefPtr<CefBrowser> browser) override;
  void OnBeforeClose(CefRefPtr<CefBrowser> browser) override;
  void OnLoadError(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, ErrorCode errorCode,
                   const CefString& errorText, const CefString& failedUrl) override;
  CefRefPtr<CefResourceRequestHandler> GetResourceRequestHandler(
      CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, CefRefPtr<CefRequest> request,
      bool is_navigation, bool is_download, const CefString& request_initiator,
      bool& disable_default_handling) override;
  bool OnCertificateError(CefRefPtr<CefBrowser> browser, cef_errorcode_t cert_error,
                          const CefString& request_url, CefRefPtr<CefSSLInfo> ssl_info,
                          CefRefPtr<CefRequestCallback> callback) override;
  ReturnValue OnBeforeResourceLoad(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                   CefRefPtr<CefRequest> request,
                                   CefRefPtr<CefRequestCallback> callback) override;
  void OnResourceRedirect(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                          CefRefPtr<CefRequest> request, CefRefPtr<CefResponse> response,
                          CefString& new_url) override;
  bool OnResourceResponse(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                          CefRefPtr<CefRequest> request, CefRefPtr<CefResponse> response) override;

 private:
  // Which browser a line is about: 1 for the first one.
  std::string Number(const CefRefPtr<CefBrowser>& browser) const;

  mutable std::mutex mutex_;
  std::vector<std::string> trace_;               // guarded by mutex_
  std::vector<Seen> responses_;                  // guarded by mutex_
  std::vector<int> identifiers_;                 // guarded by mutex_
  std::vector<CefRefPtr<CefBrowser>> browsers_;  // UI thread

  IMPLEMENT_REFCOUNTING(RecordingClient);
};

// Starts the framework once per process, on a display and in a profile of its own.
class EngineTest : public ::testing::Test {
 protected:
  void SetUp() override;

  // Opens a browser and serves the loop until it is quit; a failure when that takes too long.
  void Run(const std::string& url);
  // The same without opening one.
  void RunLoop();
  // Opens a browser, as Run() does, without serving the loop.
  void Open(const std::string& url);

  LocalServer server_;
  CefRefPtr<RecordingClient> client_ = new RecordingClient;
};

// Runs a function on one of the framework's threads, later.
void Post(CefThreadId thread, std::function<void()> function, int64_t delay_ms = 0);

// The display that the tests of this process use; null before the fixture's first test.
const VirtualDisplay* TestDisplay();

// The process ids of this process's children and their children whose command line contains `text`.
std::vector<int> DescendantsRunning(const std::string& text);

#endif  // TESTS_ENGINE_ENGINETEST_H_
