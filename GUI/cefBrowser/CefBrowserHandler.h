// The one CEF client of the browser window: keeps the list of open browsers and ends the message
// loop with the last one, asks the session whether the step has finished, shows load errors and
// asks the user about certificates.

#ifndef GUI_CEFBROWSER_CEFBROWSERHANDLER_H_
#define GUI_CEFBROWSER_CEFBROWSERHANDLER_H_

#include <atomic>
#include <list>
#include <mutex>

#include "GUI/cefBrowser/CefEmbBrowserLogin.h"
#include "include/cef_client.h"
#include "include/wrapper/cef_resource_manager.h"

// Created by a session and held by it and by CEF. Each callback says its thread: [UI] is the main
// thread, [IO] the one that CEF's resource requests run on.
class EmbBrowserHandler : public CefClient,
                          public CefDisplayHandler,
                          public CefLifeSpanHandler,
                          public CefLoadHandler,
                          public CefRequestHandler,
                          public CefResourceRequestHandler,
                          public CefResourceHandler,
                          public CefCookieAccessFilter {
 public:
  // `useViews`: the browser lives in a CEF Views window; every session passes false.
  EmbBrowserHandler(bool useViews, const CefRefPtr<CefEmbBrowserLogin>& session);
  ~EmbBrowserHandler() override;

  // The most recently made handler, null when none lives. No reference is taken.
  static EmbBrowserHandler* GetInstance();

  // Asks every open browser to close. With force, pages are not asked, and a browser that is just
  // opening is closed as soon as it is there. From any thread: elsewhere than on the UI thread it
  // posts itself there.
  void CloseAllBrowsers(bool forceClose);

  // Whether a browser has ever opened. UI thread.
  bool HasOpened() const { return m_HasOpened_; }

  // From now on the session's hooks are not called any more, and none is running: what they have
  // written can be read. From any thread but the hooks' own.
  void CutOffHooks();

  // CefClient: this object answers for itself.
  CefRefPtr<CefDisplayHandler> GetDisplayHandler() override { return this; }
  CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override { return this; }
  CefRefPtr<CefLoadHandler> GetLoadHandler() override { return this; }
  CefRefPtr<CefRequestHandler> GetRequestHandler() override { return this; }

  // CefDisplayHandler [UI].
  void OnTitleChange(CefRefPtr<CefBrowser> browser, const CefString& title) override;
  bool OnConsoleMessage(CefRefPtr<CefBrowser> browser, cef_log_severity_t level,
                        const CefString& message, const CefString& source, int line) override;

  // CefLifeSpanHandler [UI]. When the run is over, a window that is left or still opens is closed
  // by force; a window that the user closes closes no other.
  void OnAfterCreated(CefRefPtr<CefBrowser> browser) override;
  bool DoClose(CefRefPtr<CefBrowser> browser) override;
  void OnBeforeClose(CefRefPtr<CefBrowser> browser) override;

  // CefLoadHandler [UI]. Shows an error page in the frame that failed; not for aborted loads.
  void OnLoadError(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, ErrorCode errorCode,
                   const CefString& errorText, const CefString& failedUrl) override;

  // CefRequestHandler. Requests [IO]; certificate questions [UI], always answered by `callback`.
  CefRefPtr<CefResourceRequestHandler> GetResourceRequestHandler(
      CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, CefRefPtr<CefRequest> request,
      bool is_navigation, bool is_download, const CefString& request_initiator,
      bool& disable_default_handling) override;
  bool OnCertificateError(CefRefPtr<CefBrowser> browser, cef_errorcode_t certError,
                          const CefString& requestUrl, CefRefPtr<CefSSLInfo> sslInfo,
                          CefRefPtr<CefRequestCallback> callback) override;
  bool OnSelectClientCertificate(CefRefPtr<CefBrowser> browser, bool isProxy, const CefString& host,
                                 int port, const X509CertificateList& certificates,
                                 CefRefPtr<CefSelectClientCertificateCallback> callback) override;

  // CefResourceRequestHandler [IO].
  CefRefPtr<CefCookieAccessFilter> GetCookieAccessFilter(CefRefPtr<CefBrowser> browser,
                                                         CefRefPtr<CefFrame> frame,
                                                         CefRefPtr<CefRequest> request) override;
  ReturnValue OnBeforeResourceLoad(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                   CefRefPtr<CefRequest> request,
                                   CefRefPtr<CefRequestCallback> callback) override;
  CefRefPtr<CefResourceHandler> GetResourceHandler(CefRefPtr<CefBrowser> browser,
                                                   CefRefPtr<CefFrame> frame,
                                                   CefRefPtr<CefRequest> request) override;
  void OnResourceRedirect(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                          CefRefPtr<CefRequest> request, CefRefPtr<CefResponse> response,
                          CefString& newUrl) override;
  bool OnResourceResponse(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                          CefRefPtr<CefRequest> request, CefRefPtr<CefResponse> response) override;

  // CefResourceHandler: a formal base, never used to serve a request.
  void GetResponseHeaders(CefRefPtr<CefResponse> response, int64& response_length,
                          CefString& redirectUrl) override;
  void Cancel() override;

  // CefCookieAccessFilter [IO]: every cookie passes.
  bool CanSendCookie(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                     CefRefPtr<CefRequest> request, const CefCookie& cookie) override;
  bool CanSaveCookie(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                     CefRefPtr<CefRequest> request, CefRefPtr<CefResponse> response,
                     const CefCookie& cookie) override;

  bool m_UseViews_;
  // In creation order; touched on the UI thread only.
  std::list<CefRefPtr<CefBrowser>> m_BrowserList_;
  // Set once the last window, or the one that ends the run, is on its way to closing, never back; a
  // further quit is then ignored.
  std::atomic<bool> m_IsClosing_{false};
  CefRefPtr<CefResourceManager> m_ResourceManager_;
  CefRefPtr<CefEmbBrowserLogin> m_Session_;

  static EmbBrowserHandler* s_instance;

 private:
  // What `hook`, one of the session's, answers for a request; false without asking it when the
  // address has no host, and after CutOffHooks.
  template <class Hook>
  bool AskSession(const CefRefPtr<CefRequest>& request, Hook hook);

  // The step has ended, and the run with it: the session has said so, or the user has refused a
  // certificate.
  void CloseFinished(const CefRefPtr<CefBrowser>& browser);
  // No window may stay open, and nobody is asked anything any more. UI thread.
  bool RunIsOver() const { return m_IsForced_ || m_IsClosing_; }

  // UI thread only.
  bool m_IsForced_ = false;  // all browsers are being closed by force
  bool m_HasOpened_ = false;

  std::mutex m_HookLock_;
  bool m_HooksCutOff_ = false;

  IMPLEMENT_REFCOUNTING(EmbBrowserHandler);
};

#endif  // GUI_CEFBROWSER_CEFBROWSERHANDLER_H_
