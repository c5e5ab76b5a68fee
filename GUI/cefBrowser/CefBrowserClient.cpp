#include "GUI/cefBrowser/CefBrowserClient.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include "GUI/cefBrowser/CefBrowserHandler.h"
#include "GUI/cefBrowser/CefBrowserHelper.h"
#include "GUI/cefBrowser/CefCustomSignInLogin.h"
#include "GUI/cefBrowser/CefSAMLLogin.h"
#include "GUI/cefBrowser/CefSAMLLogout.h"
#include "GUI/cefBrowser/ReturnChannel.h"
#include "GUI/newUI/ModuleNames.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxaccess/RunPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "platform/TerminationSignals.h"

// In this order: the loader is destroyed first, the session after it.
std::shared_ptr<CefEmbBrowserLogin> CefBrowserClient::m_pBrowserCtrl;
std::shared_ptr<CefBrowserClient> CefBrowserClient::s_pBrowserClient;
CefScopedLibraryLoader CefBrowserClient::library_loader;
bool CefBrowserClient::m_initalized = false;
bool CefBrowserClient::m_bsession_timed_out = false;

namespace {

// What gateways expect of this client, word for word.
constexpr char kUserAgent[] =
    "Mozilla/5.0 (X11; Linux x86_64) Firefox/60 AppleWebKit/537.36 (KHTML, like Gecko) "
    "Chrome/80.0.3987.149 Safari/537.36 CorvaneWebClient";
constexpr int kExceptionStackSize = 20;

// SIGHUP, SIGINT, SIGQUIT and SIGTERM, a bit each.
constexpr unsigned int kHandledSignals = 0x800E;
constexpr int kHighestHandledSignal = 15;

// CEF counts references to the session too, so the driver's pointer gives back a reference instead
// of deleting.
std::shared_ptr<CefEmbBrowserLogin> Share(CefEmbBrowserLogin* session) {
  session->AddRef();
  return {session, [](CefEmbBrowserLogin* held) { held->Release(); }};
}

bool Install(int signum, const char* name) {
  struct sigaction action = {};
  action.sa_handler = handleSignal;
  sigemptyset(&action.sa_mask);
  if (sigaction(signum, &action, nullptr) == 0) return true;
  KXLOG(1, "SetupSignalHandler", "sigaction(%s) failed with error: %s", name, strerror(errno));
  return false;
}

void FlushCookies() {
  CefRefPtr<CefRequestContext> context = CreateSharedRequestContext();
  if (!context.get()) return;
  CefRefPtr<CefCookieManager> cookies = context->GetCookieManager(nullptr);
  if (!cookies.get()) return;
  KXLOG(3, kCefModule, "Calling CefCookieManager::FlushStore");
  cookies->FlushStore(nullptr);
}

void FillSettings(const RunPaths& paths, CefSettings& settings) {
  CefString(&settings.cache_path).FromString(paths.browser_data);
  CefString(&settings.root_cache_path).FromString(paths.browser_data);
  CefString(&settings.user_data_path).FromString(paths.browser_data);
  CefString(&settings.user_agent).FromASCII(kUserAgent);
  settings.remote_debugging_port = kDevToolsPort;
  settings.uncaught_exception_stack_size = kExceptionStackSize;
  settings.no_sandbox = 1;
  CefString(&settings.log_file).FromString(paths.browser_log);
  settings.log_severity = LOGSEVERITY_VERBOSE;
}

}  // namespace

bool SetupSignalHandler() {
  return Install(SIGINT, "SIGINT") && Install(SIGTERM, "SIGTERM") && Install(SIGHUP, "SIGHUP");
}

void handleSignal(int signum) {
  if (signum < 0 || signum > kHighestHandledSignal || !(kHandledSignals & (1u << signum))) return;
  KXLOG(3, kCefModule, "Handling the Signal:%d received", signum);
  CefBrowserClient::m_bsession_timed_out = true;
  // Not tested for emptiness; kept on purpose. The program holds the signals back until there is a
  // browser.
  CefBrowserClient::m_pBrowserCtrl->closeBrowserOnTimeout();
}

std::shared_ptr<CefBrowserClient> CefBrowserClient::getInstance(WebBrowserType type) {
  m_bsession_timed_out = false;
  KXLOG(3, kCefModule, "Browser type requested %d", static_cast<int>(type));
  s_pBrowserClient = std::make_shared<CefBrowserClient>();
  KXLOG(4, kCefModule, "browser client object created");
  switch (static_cast<int>(type)) {
    case SAML_LOGIN:
      m_pBrowserCtrl = Share(new CefSAMLLogin);
      KXLOG(4, kCefModule, "saml obj created");
      break;
    case CUSTOM_SIGN_IN:
      m_pBrowserCtrl = Share(new CefCustomSignInLogin);
      KXLOG(4, kCefModule, "custom sign in obj created");
      break;
    case SAML_LOGOUT:
      m_pBrowserCtrl = Share(new CefSAMLLogout);
      KXLOG(4, kCefModule, "saml logout obj created");
      break;
    default:
      break;
  }
  return s_pBrowserClient;
}

void CefBrowserClient::Navigate(const EmbBrowserInfo& info) {
  if (!m_pBrowserCtrl) {
    KXLOG(1, kCefModule, "m_pBrowserCtrl is NULL. Aborting the navigation.");
    return;
  }
  KXLOG(4, "LinuxUI", "CEF start for webLogin");
  if (!library_loader.LoadInMain()) {
    KXLOG(1, kCefModule, "failed to load cef library");
    return;
  }

  CefMainArgs main_args(0, nullptr);
  CefSettings settings;
  const RunPaths paths = RunPaths::FromEnvironment();
  FillSettings(paths, settings);
  m_pBrowserCtrl->SetUrl(info.url);
  m_pBrowserCtrl->SetCookie(info.cookie);
  if (auto* saml_login = dynamic_cast<CefSAMLLogin*>(m_pBrowserCtrl.get())) {
    saml_login->m_samlSloUrlToClearCookies = info.samlSloUrlToClearCookies;
  }
  CefString(&settings.framework_dir_path).FromASCII(InstallPaths::kFrameworkFolder);

  if (m_initalized) {
    m_pBrowserCtrl->OnContextInitialized();
  } else {
    KeepTerminationSignals();
    // A failed start is not an end: the loop below then returns at once, and the caller still finds
    // return data, though empty.
    if (!CefInitialize(main_args, settings, m_pBrowserCtrl.get(), nullptr)) {
      KXLOG(1, kCefModule, "CefInitialize failed, no browser could be started");
    }
    m_initalized = true;
    // Chromium's start resets the handlers that were installed before it.
    SetupSignalHandler();
    KeepTerminationSignals();
  }
  KXLOG(3, kCefModule, "calling CefRunMessageLoop");
  CefRunMessageLoop();
  const EmbBrowserHandler* handler = EmbBrowserHandler::GetInstance();
  if (handler && !handler->HasOpened()) {
    KXLOG(1, kCefModule, "the message loop has ended, but no browser has opened");
  }
  // CEF's IO thread lives on, and requests that end with the browser still come in there.
  if (m_pBrowserCtrl->m_handler.get()) m_pBrowserCtrl->m_handler->CutOffHooks();

  if (!WriteReturnData(m_pBrowserCtrl->GetReturnData(), paths.channel)) return;
  m_pBrowserCtrl.reset();
  FlushCookies();
}
