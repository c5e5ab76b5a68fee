// The objects of the fake framework: browsers with their parts, cookies, requests and the answers
// they wait for. Each call that has an effect leaves one line with its arguments; none calls back.

#ifndef TESTS_SUPPORT_FAKECEFOBJECTS_H_
#define TESTS_SUPPORT_FAKECEFOBJECTS_H_

#include <string>

#include "include/cef_browser.h"
#include "include/cef_command_line.h"
#include "include/cef_request.h"
#include "include/cef_request_callback.h"
#include "include/cef_request_context.h"
#include "include/cef_response.h"
#include "include/cef_ssl_info.h"

// Adds a line to the trace of the living FakeCef, if there is one.
void FakeTrace(const std::string& line);

class FakeCommandLine : public CefCommandLine {
 public:
  void AppendSwitch(const CefString& name) override {
    FakeTrace("AppendSwitch(" + name.ToString() + ")");
  }
  void AppendSwitchWithValue(const CefString& name, const CefString& value) override {
    FakeTrace("AppendSwitch(" + name.ToString() + "=" + value.ToString() + ")");
  }

  IMPLEMENT_REFCOUNTING(FakeCommandLine);
};

class FakeCookieManager : public CefCookieManager {
 public:
  bool VisitUrlCookies(const CefString& url, bool includeHttpOnly,
                       CefRefPtr<CefCookieVisitor>) override {
    FakeTrace("VisitUrlCookies(url=" + url.ToString() +
              ", includeHttpOnly=" + (includeHttpOnly ? "true" : "false") + ")");
    return true;
  }
  bool SetCookie(const CefString& url, const CefCookie& cookie,
                 CefRefPtr<CefSetCookieCallback>) override {
    const auto text = [](const cef_string_t& field) { return CefString(&field).ToString(); };
    FakeTrace("SetCookie(url=" + url.ToString() + ", name=" + text(cookie.name) +
              ", value=" + text(cookie.value) + ", domain=" + text(cookie.domain) +
              ", path=" + text(cookie.path) + ", secure=" + std::to_string(cookie.secure) +
              ", httponly=" + std::to_string(cookie.httponly) + ")");
    return true;
  }
  bool DeleteCookies(const CefString& url, const CefString& cookie_name,
                     CefRefPtr<CefDeleteCookiesCallback>) override {
    FakeTrace("DeleteCookies(url=" + url.ToString() + ", name=" + cookie_name.ToString() + ")");
    return true;
  }
  bool FlushStore(CefRefPtr<CefCompletionCallback>) override {
    FakeTrace("FlushStore()");
    return true;
  }

  IMPLEMENT_REFCOUNTING(FakeCookieManager);
};

class FakeRequestContext : public CefRequestContext {
 public:
  CefRefPtr<CefCookieManager> GetCookieManager(CefRefPtr<CefCompletionCallback>) override {
    return new FakeCookieManager;
  }
  void CloseAllConnections(CefRefPtr<CefCompletionCallback> callback) override {
    FakeTrace(std::string("CloseAllConnections(callback=") + (callback.get() ? "yes" : "no") + ")");
  }

  IMPLEMENT_REFCOUNTING(FakeRequestContext);
};

class FakeFrame : public CefFrame {
 public:
  explicit FakeFrame(int id) : id_(id) {}

  void LoadURL(const CefString& url) override {
    FakeTrace("LoadURL(id=" + std::to_string(id_) + ", url=" + url.ToString() + ")");
  }
  bool IsMain() override { return true; }

 private:
  const int id_;

  IMPLEMENT_REFCOUNTING(FakeFrame);
};

class FakeBrowserHost : public CefBrowserHost {
 public:
  explicit FakeBrowserHost(int id) : id_(id) {}

  void CloseBrowser(bool force_close) override {
    FakeTrace("CloseBrowser(id=" + std::to_string(id_) +
              ", force=" + (force_close ? "true" : "false") + ")");
  }
  CefWindowHandle GetWindowHandle() override { return nullptr; }
  CefRefPtr<CefRequestContext> GetRequestContext() override { return new FakeRequestContext; }

 private:
  const int id_;

  IMPLEMENT_REFCOUNTING(FakeBrowserHost);
};

class FakeBrowser : public CefBrowser {
 public:
  explicit FakeBrowser(int id) : id_(id) {}

  CefRefPtr<CefBrowserHost> GetHost() override { return new FakeBrowserHost(id_); }
  int GetIdentifier() override { return id_; }
  bool IsSame(CefRefPtr<CefBrowser> that) override { return that->GetIdentifier() == id_; }
  bool IsPopup() override { return false; }
  CefRefPtr<CefFrame> GetMainFrame() override { return new FakeFrame(id_ * 100); }

 private:
  const int id_;

  IMPLEMENT_REFCOUNTING(FakeBrowser);
};

class FakeRequest : public CefRequest {
 public:
  explicit FakeRequest(const CefString& url, const CefString& cookies = CefString()) : url_(url) {
    if (!cookies.empty()) headers_.emplace("Cookie", cookies);
  }

  CefString GetURL() override { return url_; }
  CefString GetReferrerURL() override { return CefString(); }
  void GetHeaderMap(HeaderMap& map) override { map = headers_; }
  void SetFlags(int value) override { FakeTrace("SetFlags(" + std::to_string(value) + ")"); }
  ResourceType GetResourceType() override { return RT_MAIN_FRAME; }

 private:
  const CefString url_;
  HeaderMap headers_;

  IMPLEMENT_REFCOUNTING(FakeRequest);
};

// Sets a cookie that would end a step, if it were asked for.
class FakeResponse : public CefResponse {
 public:
  int GetStatus() override { return 200; }
  CefString GetMimeType() override { return "text/html"; }
  void GetHeaderMap(HeaderMap& map) override { map = {{"Set-Cookie", "end=1"}}; }

  IMPLEMENT_REFCOUNTING(FakeResponse);
};

class FakeRequestCallback : public CefRequestCallback {
 public:
  void Continue(bool allow) override { FakeTrace(allow ? "Continue(true)" : "Continue(false)"); }
  void Cancel() override { FakeTrace("Cancel()"); }

  IMPLEMENT_REFCOUNTING(FakeRequestCallback);
};

class FakeSSLInfo : public CefSSLInfo {
 public:
  // `status` is a sum of cef_cert_status_t bits.
  explicit FakeSSLInfo(int status) : status_(static_cast<cef_cert_status_t>(status)) {}

  cef_cert_status_t GetCertStatus() override { return status_; }

 private:
  const cef_cert_status_t status_;

  IMPLEMENT_REFCOUNTING(FakeSSLInfo);
};

#endif  // TESTS_SUPPORT_FAKECEFOBJECTS_H_
