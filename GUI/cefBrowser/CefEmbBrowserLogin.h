// The browser session: one step of signing in or out, and at the same time CEF's application
// object.
//
// A kind of step derives from this class, starts in OnContextInitialized and decides in one of the
// two hooks when it has finished. The driver reads its return data after the message loop.

#ifndef GUI_CEFBROWSER_CEFEMBBROWSERLOGIN_H_
#define GUI_CEFBROWSER_CEFEMBBROWSERLOGIN_H_

#include <string>

#include "GUI/newUI/CEFJsonUtils.h"
#include "include/cef_app.h"
#include "include/cef_command_line.h"
#include "include/cef_cookie.h"
#include "include/cef_request_context.h"

class EmbBrowserHandler;

// Threads: construction and the operations that the driver calls (SetUrl, SetCookie, Navigate,
// GetReturnData) belong to the main thread, which is CEF's UI thread. The two hooks run on the IO
// thread; what they write is read only after the loop has ended. Texts are UTF-8.
class CefEmbBrowserLogin : public CefApp, public CefBrowserProcessHandler {
 public:
  CefEmbBrowserLogin();
  ~CefEmbBrowserLogin() override;

  // Appends the fixed switches, the same ones for every process type.
  void OnBeforeCommandLineProcessing(const CefString& process_type,
                                     CefRefPtr<CefCommandLine> command_line) override;

  CefRefPtr<CefBrowserProcessHandler> GetBrowserProcessHandler() override;

  // Where a kind of step starts: CEF is ready, no browser exists yet. UI thread.
  void OnContextInitialized() override;

  // What the session hands back; valid for the life of the session.
  virtual EmbBrowserReturnData& GetReturnData();

  // The address that the step opens, and the launch request's cookie text.
  virtual void SetUrl(const std::string& url);
  virtual void SetCookie(const std::string& cookie);

  // Does nothing: the work starts from OnContextInitialized.
  virtual void Navigate();

  // Called after each response that is no redirect, with the request's address and the cookies that
  // the browser sent with it ("name=value; name=value", empty when it sent none). True ends the
  // step: the handler closes the browser. May be called again after it answered true.
  virtual bool ProcessCookieResponse(const std::string& url, const std::string& cookies);

  // Called before each resource is loaded, redirect hops and sub-resources included. True ends the
  // step and cancels the load.
  virtual bool CheckIfCompleted(const std::wstring& url);

  // Ends the step from outside by closing every browser; what was gathered is handed back. Does
  // nothing before the browser's handler exists.
  virtual void closeBrowserOnTimeout();

  // Plants one session cookie (path "/", host of the session's address). True when CEF took it.
  virtual bool setCookie(std::string name, std::string value);

  std::string m_url;
  std::string m_cookie;
  std::string m_url_domain;
  EmbBrowserReturnData m_returnData;
  CefRefPtr<EmbBrowserHandler> m_handler;
  CefRefPtr<CefCookieManager> m_cookieManager;
  CefRefPtr<CefCommandLine> m_commandLine;
  CefRefPtr<CefRequestContext> m_requestContext;
  CefRefPtr<CefCookieVisitor> m_visitor;  // set by no kind of step
  unsigned int m_flag = 0;                // used by no kind of step

 protected:
  // The common beginning of every kind of step: command line, handler, a context that shares the
  // global one's cookies, and its cookie manager.
  void PrepareBrowser();

  // Plants the launch cookie text's item that holds `key`, cut at its "=" signs: the first piece is
  // the name, the second the value, further pieces are dropped. False when there is no such item.
  bool PlantLaunchCookie(const char* key);

  // Logs the cookies that the browser holds for an address, without their values.
  void LogCookies(const std::string& url, bool include_http_only);

  // Opens the browser on the session's address. WebGL is off.
  void OpenBrowser();

 private:
  IMPLEMENT_REFCOUNTING(CefEmbBrowserLogin);
};

#endif  // GUI_CEFBROWSER_CEFEMBBROWSERLOGIN_H_
