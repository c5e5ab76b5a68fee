#include "testing/support/FakeCefContext.h"

#include "include/base/cef_bind.h"
#include "testing/support/FakeCef.h"

namespace {

// Callbacks of the framework never run inside the call that they were given to.
void Later(const base::Closure& closure) {
  if (FakeCef* fake = FakeCef::Instance()) fake->Post(TID_UI, closure);
}

void CompleteLater(const CefRefPtr<CefCompletionCallback>& callback) {
  if (callback.get()) Later(base::Bind(&CefCompletionCallback::OnComplete, callback));
}

std::string Field(const cef_string_t& field) { return CefString(&field).ToString(); }

}  // namespace

void FakeCookieManager::SetSupportedSchemes(const std::vector<CefString>&, bool,
                                            CefRefPtr<CefCompletionCallback> callback) {
  FakeTrace("SetSupportedSchemes()");
  CompleteLater(callback);
}

bool FakeCookieManager::VisitAllCookies(CefRefPtr<CefCookieVisitor> visitor) {
  FakeTrace("VisitAllCookies()");
  if (!visitor.get()) return false;
  Later(base::Bind(&FakeCookieManager::ShowAll, this, visitor));
  return true;
}

bool FakeCookieManager::VisitUrlCookies(const CefString& url, bool includeHttpOnly,
                                        CefRefPtr<CefCookieVisitor> visitor) {
  FakeTrace("VisitUrlCookies(url=" + url.ToString() +
            ", includeHttpOnly=" + (includeHttpOnly ? "true" : "false") + ")");
  if (url.empty() || !visitor.get()) return false;
  Later(base::Bind(&FakeCookieManager::ShowAll, this, visitor));
  return true;
}

void FakeCookieManager::ShowAll(CefRefPtr<CefCookieVisitor> visitor) {
  const int total = static_cast<int>(cookies.size());
  for (int i = 0; i < total; ++i) {
    bool remove = false;
    if (!visitor->Visit(cookies[static_cast<size_t>(i)], i, total, remove)) return;
  }
}

bool FakeCookieManager::SetCookie(const CefString& url, const CefCookie& cookie,
                                  CefRefPtr<CefSetCookieCallback> callback) {
  FakeTrace("SetCookie(url=" + url.ToString() + ", name=" + Field(cookie.name) +
            ", value=" + Field(cookie.value) + ", domain=" + Field(cookie.domain) +
            ", path=" + Field(cookie.path) + ", secure=" + std::to_string(cookie.secure) +
            ", httponly=" + std::to_string(cookie.httponly) + ")");
  if (url.empty()) return false;
  if (callback.get()) {
    Later(base::Bind(&CefSetCookieCallback::OnComplete, callback, setCookieSucceeds));
  }
  return true;
}

bool FakeCookieManager::DeleteCookies(const CefString& url, const CefString& cookie_name,
                                      CefRefPtr<CefDeleteCookiesCallback> callback) {
  FakeTrace("DeleteCookies(url=" + url.ToString() + ", name=" + cookie_name.ToString() + ")");
  if (callback.get()) Later(base::Bind(&CefDeleteCookiesCallback::OnComplete, callback, 0));
  return true;
}

bool FakeCookieManager::FlushStore(CefRefPtr<CefCompletionCallback> callback) {
  FakeTrace("FlushStore()");
  CompleteLater(callback);
  return true;
}

CefRefPtr<CefCookieManager> FakeRequestContext::GetCookieManager(
    CefRefPtr<CefCompletionCallback> callback) {
  CompleteLater(callback);
  return cookieManager.get();
}

void FakeRequestContext::ClearCertificateExceptions(CefRefPtr<CefCompletionCallback> callback) {
  FakeTrace("ClearCertificateExceptions()");
  CompleteLater(callback);
}

void FakeRequestContext::ClearHttpAuthCredentials(CefRefPtr<CefCompletionCallback> callback) {
  FakeTrace("ClearHttpAuthCredentials()");
  CompleteLater(callback);
}

void FakeRequestContext::CloseAllConnections(CefRefPtr<CefCompletionCallback> callback) {
  FakeTrace(std::string("CloseAllConnections(callback=") + (callback.get() ? "yes" : "no") + ")");
  CompleteLater(callback);
}

CefRefPtr<CefCommandLine> FakeCommandLine::Copy() {
  const CefRefPtr<FakeCommandLine> copy = new FakeCommandLine;
  copy->program = program;
  copy->switches = switches;
  copy->arguments = arguments;
  return copy.get();
}

void FakeCommandLine::InitFromArgv(int argc, const char* const* argv) {
  Reset();
  if (argc > 0) program = argv[0];
  for (int i = 1; i < argc; ++i) arguments.push_back(argv[i]);
}

void FakeCommandLine::Reset() {
  program.clear();
  switches.clear();
  arguments.clear();
}

void FakeCommandLine::GetArgv(std::vector<CefString>& argv) {
  argv.assign(1, program);
  for (const auto& [name, value] : switches) {
    argv.push_back("--" + name.ToString() + (value.empty() ? "" : "=" + value.ToString()));
  }
  argv.insert(argv.end(), arguments.begin(), arguments.end());
}

CefString FakeCommandLine::GetCommandLineString() {
  std::vector<CefString> argv;
  GetArgv(argv);
  std::string text;
  for (const CefString& arg : argv) text += (text.empty() ? "" : " ") + arg.ToString();
  return text;
}

CefString FakeCommandLine::GetSwitchValue(const CefString& name) {
  const auto found = switches.find(name);
  return found == switches.end() ? CefString() : found->second;
}

void FakeCommandLine::AppendSwitch(const CefString& name) {
  FakeTrace("AppendSwitch(" + name.ToString() + ")");
  if (!name.empty()) switches[name] = CefString();
}

void FakeCommandLine::AppendSwitchWithValue(const CefString& name, const CefString& value) {
  FakeTrace("AppendSwitch(" + name.ToString() + "=" + value.ToString() + ")");
  if (!name.empty() && !value.empty()) switches[name] = value;
}
