// A request context with its cookie jar, and a command line.

#ifndef TESTING_SUPPORT_FAKECEFCONTEXT_H_
#define TESTING_SUPPORT_FAKECEFCONTEXT_H_

#include <string>
#include <utility>
#include <vector>

#include "include/cef_command_line.h"
#include "include/cef_request_context.h"
#include "include/cef_request_context_handler.h"

// Every operation leaves a line with its arguments, as in
// "SetCookie(url=https://a/, name=n, value=v, domain=, path=/, secure=1, httponly=0)", and queues
// its callback for the UI thread.
class FakeCookieManager : public CefCookieManager {
 public:
  void SetSupportedSchemes(const std::vector<CefString>& schemes, bool include_defaults,
                           CefRefPtr<CefCompletionCallback> callback) override;
  bool VisitAllCookies(CefRefPtr<CefCookieVisitor> visitor) override;
  bool VisitUrlCookies(const CefString& url, bool includeHttpOnly,
                       CefRefPtr<CefCookieVisitor> visitor) override;
  bool SetCookie(const CefString& url, const CefCookie& cookie,
                 CefRefPtr<CefSetCookieCallback> callback) override;
  bool DeleteCookies(const CefString& url, const CefString& cookie_name,
                     CefRefPtr<CefDeleteCookiesCallback> callback) override;
  bool FlushStore(CefRefPtr<CefCompletionCallback> callback) override;

  // What a visitor is shown, whatever the address.
  std::vector<CefCookie> cookies;
  // What SetCookie tells its callback.
  bool setCookieSucceeds = true;

 private:
  void ShowAll(CefRefPtr<CefCookieVisitor> visitor);

  IMPLEMENT_REFCOUNTING(FakeCookieManager);
};

// CloseAllConnections leaves "CloseAllConnections(callback=…)".
class FakeRequestContext : public CefRequestContext {
 public:
  FakeRequestContext(const std::string& name, CefRefPtr<CefRequestContextHandler> handler)
      : name(name), handler_(handler) {}

  bool IsSame(CefRefPtr<CefRequestContext> other) override { return other.get() == this; }
  bool IsSharingWith(CefRefPtr<CefRequestContext> other) override { return other.get(); }
  bool IsGlobal() override { return name == "global"; }
  CefRefPtr<CefRequestContextHandler> GetHandler() override { return handler_; }
  CefString GetCachePath() override { return CefString(); }
  CefRefPtr<CefCookieManager> GetCookieManager(CefRefPtr<CefCompletionCallback> callback) override;
  void ClearCertificateExceptions(CefRefPtr<CefCompletionCallback> callback) override;
  void ClearHttpAuthCredentials(CefRefPtr<CefCompletionCallback> callback) override;
  void CloseAllConnections(CefRefPtr<CefCompletionCallback> callback) override;

  const std::string name;
  // Null stands for a jar that is not available. Shared contexts share it.
  CefRefPtr<FakeCookieManager> cookieManager = new FakeCookieManager;

 private:
  CefRefPtr<CefRequestContextHandler> handler_;

  IMPLEMENT_REFCOUNTING(FakeRequestContext);
};

// Added switches leave "AppendSwitch(name)" or "AppendSwitch(name=value)".
class FakeCommandLine : public CefCommandLine {
 public:
  bool IsValid() override { return true; }
  bool IsReadOnly() override { return false; }
  CefRefPtr<CefCommandLine> Copy() override;
  void InitFromArgv(int argc, const char* const* argv) override;
  void Reset() override;
  void GetArgv(std::vector<CefString>& argv) override;
  CefString GetCommandLineString() override;
  CefString GetProgram() override { return program; }
  void SetProgram(const CefString& value) override { program = value; }
  bool HasSwitches() override { return !switches.empty(); }
  bool HasSwitch(const CefString& name) override { return switches.count(name) != 0; }
  CefString GetSwitchValue(const CefString& name) override;
  void GetSwitches(SwitchMap& map) override { map = switches; }
  void AppendSwitch(const CefString& name) override;
  void AppendSwitchWithValue(const CefString& name, const CefString& value) override;
  bool HasArguments() override { return !arguments.empty(); }
  void GetArguments(ArgumentList& list) override { list = arguments; }
  void AppendArgument(const CefString& argument) override { arguments.push_back(argument); }

  CefString program;
  SwitchMap switches;
  ArgumentList arguments;

  IMPLEMENT_REFCOUNTING(FakeCommandLine);
};

#endif  // TESTING_SUPPORT_FAKECEFCONTEXT_H_
