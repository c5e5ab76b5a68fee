#include "tests/engine/EngineTest.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "cef/wrapper/exports.h"
#include "include/cef_task.h"

namespace {

constexpr int kRunLimitMs = 25000;

// The address without scheme, host, port and query.
std::string PathOf(const std::string& url) {
  const size_t host = url.find("://");
  if (host == std::string::npos) return url;
  const size_t path = url.find('/', host + 3);
  return path == std::string::npos ? "/" : url.substr(path, url.find_first_of("?#", path) - path);
}

class TestApp : public CefApp {
 public:
  void OnBeforeCommandLineProcessing(const CefString&,
                                     CefRefPtr<CefCommandLine> command_line) override {
    command_line->AppendSwitch("disable-gpu");
    // A name that leads nowhere without asking anybody, and one for this machine.
    command_line->AppendSwitchWithValue("host-resolver-rules",
                                        "MAP gone.test ~NOTFOUND, MAP *.test 127.0.0.1");
  }

 private:
  IMPLEMENT_REFCOUNTING(TestApp);
};

// What all tests of the process share; given up when it exits.
struct Environment {
  TempDir folder;
  VirtualDisplay display{VirtualDisplay::WindowManager::kOpenbox};
};

Environment& SharedEnvironment() {
  static Environment environment;
  return environment;
}

bool environment_made = false;

bool StartFramework() {
  Environment& environment = SharedEnvironment();
  environment_made = true;
  static const CefFunctionTable table = CefLinkedFunctions();
  CefSetFunctionTable(&table);
  CefSettings settings;
  settings.no_sandbox = 1;
  CefString(&settings.cache_path).FromString(environment.folder.file("profile"));
  CefString(&settings.user_agent).FromASCII("Mozilla/5.0 EngineTest");
  return CefInitialize(CefMainArgs(0, nullptr), settings, new TestApp, nullptr);
}

}  // namespace

std::string RecordingClient::Number(const CefRefPtr<CefBrowser>& browser) const {
  const auto found = std::find(identifiers_.begin(), identifiers_.end(), browser->GetIdentifier());
  return std::to_string(found - identifiers_.begin() + 1);
}

void RecordingClient::Record(const std::string& line) {
  std::lock_guard<std::mutex> lock(mutex_);
  trace_.push_back(line);
}

std::vector<std::string> RecordingClient::trace() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return trace_;
}

std::vector<RecordingClient::Seen> RecordingClient::responses() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return responses_;
}

std::vector<RecordingClient::Seen> RecordingClient::ResponsesFor(const std::string& path) const {
  std::vector<Seen> matching;
  for (const Seen& seen : responses()) {
    if (PathOf(seen.url) == path) matching.push_back(seen);
  }
  return matching;
}

void RecordingClient::OnTitleChange(CefRefPtr<CefBrowser> browser, const CefString& title) {
  EXPECT_TRUE(CefCurrentlyOn(TID_UI));
  Record("title " + title.ToString());
  if (on_title) on_title(browser, title.ToString());
}

bool RecordingClient::OnConsoleMessage(CefRefPtr<CefBrowser>, cef_log_severity_t,
                                       const CefString& message, const CefString&, int) {
  EXPECT_TRUE(CefCurrentlyOn(TID_UI));
  Record("console " + message.ToString());
  return true;
}

void RecordingClient::OnAfterCreated(CefRefPtr<CefBrowser> browser) {
  EXPECT_TRUE(CefCurrentlyOn(TID_UI));
  browsers_.push_back(browser);
  {
    std::lock_guard<std::mutex> lock(mutex_);
    identifiers_.push_back(browser->GetIdentifier());
  }
  Record("created " + Number(browser) + (browser->IsPopup() ? " popup" : ""));
  if (on_created) on_created(browser);
}

bool RecordingClient::DoClose(CefRefPtr<CefBrowser> browser) {
  EXPECT_TRUE(CefCurrentlyOn(TID_UI));
  Record("do-close " + Number(browser));
  return false;
}

void RecordingClient::OnBeforeClose(CefRefPtr<CefBrowser> browser) {
  EXPECT_TRUE(CefCurrentlyOn(TID_UI));
  Record("before-close " + Number(browser));
  const auto same = [&](const CefRefPtr<CefBrowser>& other) { return other->IsSame(browser); };
  browsers_.erase(std::remove_if(browsers_.begin(), browsers_.end(), same), browsers_.end());
  if (browsers_.empty()) CefQuitMessageLoop();
}

void RecordingClient::OnLoadError(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                  ErrorCode errorCode, const CefString& errorText,
                                  const CefString& failedUrl) {
  EXPECT_TRUE(CefCurrentlyOn(TID_UI));
  Record("load-error " + std::to_string(errorCode) + " " + errorText.ToString() + " " +
         PathOf(failedUrl.ToString()) + (frame->IsMain() ? "" : " in subframe"));
  if (on_load_error) on_load_error(browser, frame, failedUrl.ToString());
}

CefRefPtr<CefResourceRequestHandler> RecordingClient::GetResourceRequestHandler(
    CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>, CefRefPtr<CefRequest>, bool, bool, const CefString&,
    bool&) {
  EXPECT_TRUE(CefCurrentlyOn(TID_IO));
  return this;
}

bool RecordingClient::OnCertificateError(CefRefPtr<CefBrowser> browser, cef_errorcode_t cert_error,
                                         const CefString& request_url,
                                         CefRefPtr<CefSSLInfo> ssl_info,
                                         CefRefPtr<CefRequestCallback> callback) {
  EXPECT_TRUE(CefCurrentlyOn(TID_UI));
  Record("certificate " + std::to_string(cert_error) + " bits " +
         std::to_string(ssl_info->GetCertStatus()) + " " + PathOf(request_url.ToString()));
  return on_certificate_error && on_certificate_error(browser, callback);
}

RecordingClient::ReturnValue RecordingClient::OnBeforeResourceLoad(CefRefPtr<CefBrowser> browser,
                                                                   CefRefPtr<CefFrame>,
                                                                   CefRefPtr<CefRequest> request,
                                                                   CefRefPtr<CefRequestCallback>) {
  EXPECT_TRUE(CefCurrentlyOn(TID_IO));
  const std::string url = request->GetURL().ToString();
  Record("before-load " + PathOf(url));
  return on_before_load ? on_before_load(browser, url) : RV_CONTINUE;
}

void RecordingClient::OnResourceRedirect(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>,
                                         CefRefPtr<CefRequest> request,
                                         CefRefPtr<CefResponse> response, CefString& new_url) {
  EXPECT_TRUE(CefCurrentlyOn(TID_IO));
  Record("redirect " + std::to_string(response->GetStatus()) + " " +
         PathOf(request->GetURL().ToString()) + " to " + PathOf(new_url.ToString()));
}

bool RecordingClient::OnResourceResponse(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                         CefRefPtr<CefRequest> request,
                                         CefRefPtr<CefResponse> response) {
  EXPECT_TRUE(CefCurrentlyOn(TID_IO));
  Seen seen;
  seen.url = request->GetURL().ToString();
  CefRequest::HeaderMap headers;
  request->GetHeaderMap(headers);
  const auto cookie = headers.find("Cookie");
  if (cookie != headers.end()) seen.cookie = cookie->second.ToString();
  seen.referrer = request->GetReferrerURL().ToString();
  seen.mime_type = response->GetMimeType().ToString();
  seen.status = response->GetStatus();
  seen.type = request->GetResourceType();
  seen.main_frame = frame->IsMain();
  {
    std::lock_guard<std::mutex> lock(mutex_);
    responses_.push_back(seen);
  }
  Record("response " + std::to_string(seen.status) + " " + PathOf(seen.url));
  return on_response && on_response(browser, seen);
}

void EngineTest::SetUp() {
  static const bool started = StartFramework();
  ASSERT_TRUE(started) << "the framework has not started";
}

void EngineTest::Open(const std::string& url) {
  ASSERT_TRUE(CefBrowserHost::CreateBrowser(CefWindowInfo(), client_.get(), url,
                                            CefBrowserSettings(), nullptr, nullptr));
}

void EngineTest::Run(const std::string& url) {
  Open(url);
  RunLoop();
}

void EngineTest::RunLoop() {
  enum class State { kRunning, kDone, kExpired };
  // Shared, since the task of a run that ended in time is still to come.
  const auto state = std::make_shared<State>(State::kRunning);
  Post(
      TID_UI,
      [state] {
        if (*state != State::kRunning) return;
        *state = State::kExpired;
        CefQuitMessageLoop();
      },
      kRunLimitMs);
  CefRunMessageLoop();
  EXPECT_EQ(*state, State::kRunning) << "the run did not end by itself; trace:\n"
                                     << ::testing::PrintToString(client_->trace());
  *state = State::kDone;
}

void Post(CefThreadId thread, std::function<void()> function, int64_t delay_ms) {
  class FunctionTask : public CefTask {
   public:
    explicit FunctionTask(std::function<void()> function) : function_(std::move(function)) {}
    void Execute() override { function_(); }

   private:
    const std::function<void()> function_;

    IMPLEMENT_REFCOUNTING(FunctionTask);
  };
  CefPostDelayedTask(thread, new FunctionTask(std::move(function)), delay_ms);
}

const VirtualDisplay* TestDisplay() {
  return environment_made ? &SharedEnvironment().display : nullptr;
}

std::vector<int> DescendantsRunning(const std::string& text) {
  std::map<int, int> parents;
  std::map<int, std::string> commands;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const int pid = std::atoi(entry.path().filename().c_str());
    if (pid <= 0) continue;
    const std::string stat = ReadFile(entry.path() / "stat");
    const size_t name_end = stat.rfind(')');
    if (name_end == std::string::npos || name_end + 4 >= stat.size()) continue;
    if (stat[name_end + 2] == 'Z') continue;
    parents[pid] = std::atoi(stat.c_str() + name_end + 4);
    commands[pid] = ReadFile(entry.path() / "cmdline");
  }
  std::vector<int> found;
  for (const auto& [pid, command] : commands) {
    if (command.find(text) == std::string::npos) continue;
    int ancestor = pid;
    while (ancestor > 1 && ancestor != getpid()) ancestor = parents[ancestor];
    if (ancestor == getpid() && pid != getpid()) found.push_back(pid);
  }
  return found;
}
