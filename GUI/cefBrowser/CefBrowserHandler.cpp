#include "GUI/cefBrowser/CefBrowserHandler.h"

#include "GUI/cefBrowser/CefBrowserHelper.h"
#include "GUI/cefBrowser/CertificateTexts.h"
#include "GUI/cefBrowser/CertificateWarning.h"
#include "GUI/cefBrowser/CookieStandIns.h"
#include "GUI/cefBrowser/LoadErrorPage.h"
#include "GUI/cefBrowser/MacAppDelegate.h"
#include "GUI/newUI/CommonWebBrowser.h"
#include "GUI/newUI/ModuleNames.h"
#include "include/base/cef_bind.h"
#include "include/cef_task.h"
#include "include/views/cef_browser_view.h"
#include "include/views/cef_window.h"
#include "include/wrapper/cef_closure_task.h"
#include "include/wrapper/cef_helpers.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "platform/TerminationSignals.h"

EmbBrowserHandler* EmbBrowserHandler::s_instance = nullptr;

EmbBrowserHandler::EmbBrowserHandler(bool useViews, const CefRefPtr<CefEmbBrowserLogin>& session)
    : m_UseViews_(useViews), m_ResourceManager_(new CefResourceManager), m_Session_(session) {
  s_instance = this;
}

EmbBrowserHandler::~EmbBrowserHandler() {
  s_instance = nullptr;
  m_Session_ = nullptr;
  m_ResourceManager_ = nullptr;
}

EmbBrowserHandler* EmbBrowserHandler::GetInstance() { return s_instance; }

void EmbBrowserHandler::CloseAllBrowsers(bool forceClose) {
  KXLOG(4, kCefModule, "EmbBrowserHandler::CloseAllBrowsers");
  if (!CefCurrentlyOn(TID_UI)) {
    // The bound receiver holds a reference to the handler until the task has run.
    CefPostTask(TID_UI, base::Bind(&EmbBrowserHandler::CloseAllBrowsers, this, forceClose));
    return;
  }
  if (forceClose) m_IsForced_ = true;
  if (m_BrowserList_.empty()) return;

  // A close may come back at once and shorten the list.
  const std::list<CefRefPtr<CefBrowser>> open = m_BrowserList_;
  for (const CefRefPtr<CefBrowser>& browser : open) browser->GetHost()->CloseBrowser(forceClose);

  if (!m_BrowserList_.empty()) {
    KXLOG(3, kCefModule, " m_BrowserList_ is not empty, so can't close browser now");
    return;
  }
  CefQuitMessageLoop();
}

void EmbBrowserHandler::OnTitleChange(CefRefPtr<CefBrowser> browser, const CefString& title) {
  CEF_REQUIRE_UI_THREAD();
  KXLOG(4, kCefModule, "EmbBrowserHandler::OnTitleChange %s", title.ToString().c_str());
  if (!m_UseViews_) return;
  CefRefPtr<CefBrowserView> view = CefBrowserView::GetForBrowser(browser);
  if (!view.get()) return;
  CefRefPtr<CefWindow> window = view->GetWindow();
  if (window.get()) window->SetTitle(title);
}

bool EmbBrowserHandler::OnConsoleMessage(CefRefPtr<CefBrowser>, cef_log_severity_t,
                                         const CefString& message, const CefString& source, int) {
  CEF_REQUIRE_UI_THREAD();
  KXLOG(4, "EmbBrowserHandler", "Message: %s Source: %s", message.ToString().c_str(),
        source.ToString().c_str());
  return true;
}

void EmbBrowserHandler::OnAfterCreated(CefRefPtr<CefBrowser> browser) {
  CEF_REQUIRE_UI_THREAD();
  KXLOG(4, kCefModule, "EmbBrowserHandler::OnAfterCreated");
  m_HasOpened_ = true;
  m_BrowserList_.push_back(browser);
  // Now there is something that a signal can close.
  DeliverTerminationSignals();
  if (RunIsOver()) {
    browser->GetHost()->CloseBrowser(true);
    return;
  }
  BringToFront(browser->GetHost()->GetWindowHandle());
}

bool EmbBrowserHandler::DoClose(CefRefPtr<CefBrowser>) {
  CEF_REQUIRE_UI_THREAD();
  KXLOG(3, kCefModule, "EmbBrowserHandler::DoClose");
  if (m_BrowserList_.size() == 1) m_IsClosing_ = true;
  return false;
}

void EmbBrowserHandler::OnBeforeClose(CefRefPtr<CefBrowser> browser) {
  CEF_REQUIRE_UI_THREAD();
  KXLOG(3, kCefModule, "EmbBrowserHandler::OnBeforeClose");
  for (auto entry = m_BrowserList_.begin(); entry != m_BrowserList_.end(); ++entry) {
    if ((*entry)->IsSame(browser)) {
      m_BrowserList_.erase(entry);
      break;
    }
  }
  if (!m_BrowserList_.empty()) {
    // The user would take the window that is left for one that still has a purpose.
    if (RunIsOver()) CloseAllBrowsers(true);
    return;
  }

  KXLOG(3, kCefModule, "Calling CefQuitMessageLoop");
  CefQuitMessageLoop();
  // The quit comes first; connections are closed while the loop unwinds.
  CefRefPtr<CefCompletionCallback> done = new AuthCompletionCallback;
  browser->GetHost()->GetRequestContext()->CloseAllConnections(done);
}

void EmbBrowserHandler::OnLoadError(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame> frame,
                                    ErrorCode errorCode, const CefString& errorText,
                                    const CefString& failedUrl) {
  CEF_REQUIRE_UI_THREAD();
  KXLOG(1, kCefModule, "EmbBrowserHandler::OnLoadError error = %d", static_cast<int>(errorCode));
  if (errorCode == ERR_ABORTED) {
    KXLOG(1, kCefModule, "ERR_ABORTED ....");
    return;
  }
  const std::string page =
      LoadErrorPage(failedUrl.ToWString(), errorText.ToString(), static_cast<int>(errorCode));
  KXLOG(1, kCefModule, "Failed to laod URL (%s), with error (%s) errorCode (%d)",
        failedUrl.ToString().c_str(), errorText.ToString().c_str(), static_cast<int>(errorCode));
  frame->LoadURL(GetDataURI(page, "text/html"));
}

CefRefPtr<CefResourceRequestHandler> EmbBrowserHandler::GetResourceRequestHandler(
    CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>, CefRefPtr<CefRequest>, bool, bool, const CefString&,
    bool&) {
  CEF_REQUIRE_IO_THREAD();
  return this;
}

bool EmbBrowserHandler::OnCertificateError(CefRefPtr<CefBrowser> browser, cef_errorcode_t certError,
                                           const CefString& requestUrl,
                                           CefRefPtr<CefSSLInfo> sslInfo,
                                           CefRefPtr<CefRequestCallback> callback) {
  CEF_REQUIRE_UI_THREAD();
  KXLOG(3, kCefModule, "inside OnCertificateError");
  const std::string url = requestUrl.ToString();
  KXLOG(5, kCefModule, "OnCertificateError(%s) = %d", url.c_str(), static_cast<int>(certError));
  std::wstring first;
  std::wstring second;
  GetCertDialogMsgs(sslInfo, certError, requestUrl.ToWString(), first, second);
  const bool accepted =
      !RunIsOver() && DisplayCertWarning(L"Corvane Secure", first + L"\n" + second);
  KXLOG(5, kCefModule, "OnCertificateError(%s) answered %d", url.c_str(), accepted ? 1 : 0);
  callback->Continue(accepted);
  if (!accepted) {
    KXLOG(3, kCefModule,
          "inside OnCertificateError() closing the browser because of certificate warning");
    CloseFinished(browser);
  }
  return true;
}

bool EmbBrowserHandler::OnSelectClientCertificate(CefRefPtr<CefBrowser>, bool, const CefString&,
                                                  int, const X509CertificateList&,
                                                  CefRefPtr<CefSelectClientCertificateCallback>) {
  CEF_REQUIRE_UI_THREAD();
  return true;
}

CefRefPtr<CefCookieAccessFilter> EmbBrowserHandler::GetCookieAccessFilter(CefRefPtr<CefBrowser>,
                                                                          CefRefPtr<CefFrame>,
                                                                          CefRefPtr<CefRequest>) {
  CEF_REQUIRE_IO_THREAD();
  return this;
}

EmbBrowserHandler::ReturnValue EmbBrowserHandler::OnBeforeResourceLoad(
    CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, CefRefPtr<CefRequest> request,
    CefRefPtr<CefRequestCallback> callback) {
  CEF_REQUIRE_IO_THREAD();
  request->SetFlags(UR_FLAG_ALLOW_STORED_CREDENTIALS);
  const std::wstring url = request->GetURL().ToWString();
  // Names the other hook and lacks its closing parenthesis; kept on purpose.
  KXLOG(4, kCefModule, "EmbBrowserHandler::OnResourceResponse(URL:%ls, Media type = %d",
        url.c_str(), static_cast<int>(request->GetResourceType()));
  if (!AskSession(request, [&] {
        const bool finished = m_Session_->CheckIfCompleted(url);
        KXLOG(5, kCefModule, "CheckIfCompleted(%ls) = %d", url.c_str(), finished ? 1 : 0);
        return finished;
      })) {
    return m_ResourceManager_->OnBeforeResourceLoad(browser, frame, request, callback);
  }
  CloseFinished(browser);
  return RV_CANCEL;
}

CefRefPtr<CefResourceHandler> EmbBrowserHandler::GetResourceHandler(CefRefPtr<CefBrowser> browser,
                                                                    CefRefPtr<CefFrame> frame,
                                                                    CefRefPtr<CefRequest> request) {
  CEF_REQUIRE_IO_THREAD();
  return m_ResourceManager_->GetResourceHandler(browser, frame, request);
}

// Nothing but a record: where a redirect leads shows nowhere else.
void EmbBrowserHandler::OnResourceRedirect(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>,
                                           CefRefPtr<CefRequest> request,
                                           CefRefPtr<CefResponse> response, CefString& newUrl) {
  CEF_REQUIRE_IO_THREAD();
  KXLOG(5, kCefModule, "OnResourceRedirect(%s) = %d to %s", request->GetURL().ToString().c_str(),
        response->GetStatus(), newUrl.ToString().c_str());
}

bool EmbBrowserHandler::OnResourceResponse(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame>,
                                           CefRefPtr<CefRequest> request,
                                           CefRefPtr<CefResponse> response) {
  CEF_REQUIRE_IO_THREAD();
  KXLOG(4, kCefModule, "EmbBrowserHandler::OnResourceResponse(URL:%s)= %s",
        request->GetReferrerURL().ToString().c_str(), response->GetMimeType().ToString().c_str());
  // One map for both; CEF's second call replaces what the first one filled in.
  CefRequest::HeaderMap headers;
  response->GetHeaderMap(headers);
  request->GetHeaderMap(headers);

  KXLOG(4, kCefModule, "EmbBrowserHandler::OnResourceResponse Invoking process cookies");
  std::string cookies;
  const auto cookie_header = headers.find("Cookie");
  if (cookie_header != headers.end()) cookies = cookie_header->second.ToString();
  const std::string url = request->GetURL().ToString();
  KXLOG(5, kCefModule, "OnResourceResponse(%s) = %d", url.c_str(), response->GetStatus());
  if (!AskSession(request, [&] {
        const bool finished = m_Session_->ProcessCookieResponse(url, cookies);
        KXLOG(5, kCefModule, "ProcessCookieResponse(%s) = %d cookies [%s]", url.c_str(),
              finished ? 1 : 0, CookieStandIns(cookies).c_str());
        return finished;
      })) {
    return false;
  }
  CloseFinished(browser);
  return true;
}

void EmbBrowserHandler::CutOffHooks() {
  const std::lock_guard<std::mutex> lock(m_HookLock_);
  m_HooksCutOff_ = true;
}

template <class Hook>
bool EmbBrowserHandler::AskSession(const CefRefPtr<CefRequest>& request, Hook hook) {
  // CEF asks about data addresses too, among them the error page above. They lie on no host: taken
  // for an address off the gateway, one would become the identity provider or its logout address.
  constexpr char kData[] = "data:";
  if (request->GetURL().ToString().compare(0, sizeof kData - 1, kData) == 0) return false;
  const std::lock_guard<std::mutex> lock(m_HookLock_);
  return !m_HooksCutOff_ && hook();
}

void EmbBrowserHandler::CloseFinished(const CefRefPtr<CefBrowser>& browser) {
  m_IsClosing_ = true;
  browser->GetHost()->CloseBrowser(true);
}

void EmbBrowserHandler::GetResponseHeaders(CefRefPtr<CefResponse>, int64&, CefString&) {}

void EmbBrowserHandler::Cancel() {}

bool EmbBrowserHandler::CanSendCookie(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>,
                                      CefRefPtr<CefRequest>, const CefCookie&) {
  CEF_REQUIRE_IO_THREAD();
  return true;
}

bool EmbBrowserHandler::CanSaveCookie(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>,
                                      CefRefPtr<CefRequest>, CefRefPtr<CefResponse>,
                                      const CefCookie&) {
  CEF_REQUIRE_IO_THREAD();
  return true;
}
