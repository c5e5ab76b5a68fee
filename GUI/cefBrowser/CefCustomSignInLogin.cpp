#include "GUI/cefBrowser/CefCustomSignInLogin.h"

#include <vector>

#include "GUI/newUI/CommonWebBrowser.h"
#include "GUI/newUI/ModuleNames.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace {

constexpr char kSignInCookie[] = "KXEBID";
constexpr char kStatusCookie[] = "KXEBSTATUS";
constexpr char kSessionCookie[] = "KXID";
constexpr char kClearCookie[] = "KXEB-CLEAR";
constexpr char kLaunchMarker[] = "EB-LAUNCH";
constexpr char kFinishedMarker[] = "EB-FINISHED";
constexpr char kCheckNeededMarker[] = "EB-HC-NEEDED";
constexpr char kCheckFailedMarker[] = "EB-HC-FAILED";

bool Contains(const std::string& text, const char* what) {
  return text.find(what) != std::string::npos;
}

// What the status cookies of one response say. The last entry that carries a marker is the status.
struct Status {
  bool session_end = false;
  bool check_needed = false;
  bool check_failed = false;
  std::string text;
};

Status ReadStatus(const std::string& cookies) {
  std::vector<std::string> entries;
  GetCookieListforKey(cookies, kStatusCookie, entries);
  Status status;
  for (const std::string& entry : entries) {
    const bool end = Contains(entry, kFinishedMarker);
    const bool needed = Contains(entry, kCheckNeededMarker);
    const bool failed = Contains(entry, kCheckFailedMarker);
    status.session_end |= end;
    status.check_needed |= needed;
    status.check_failed |= failed;
    if (end || needed || failed) status.text = entry;
  }
  return status;
}

}  // namespace

void CefCustomSignInLogin::OnContextInitialized() {
  KXLOG(4, kCefModule, "EmbBrowserApp::OnContextInitialized");
  PrepareBrowser();
  m_cookieManager->DeleteCookies("", "", nullptr);
  GetDomainFromUrl(m_url, m_url_domain);
  PlantLaunchCookie(kSignInCookie);
  PlantLaunchCookie(kStatusCookie);
  if (Contains(m_cookie, kStatusCookie) && Contains(m_cookie, kLaunchMarker)) {
    KXLOG(4, kCefModule, "SetCookie for EB launch");
    setCookie(kClearCookie, "1");
  }
  LogCookies(m_url, false);
  OpenBrowser();
}

bool CefCustomSignInLogin::ProcessCookieResponse(const std::string&, const std::string& cookies) {
  KXLOG(3, kCefModule, " cookies from response = %d", static_cast<int>(cookies.size()));
  const Status status = ReadStatus(cookies);
  KXLOG(3, kCefModule, "session end = %d hc_needed %d hc_failed %d", status.session_end ? 1 : 0,
        status.check_needed ? 1 : 0, status.check_failed ? 1 : 0);
  if (!status.session_end && !status.check_needed && !status.check_failed) return false;

  std::string sign_in;
  GetCookieforKey(cookies, kSignInCookie, sign_in);
  if (sign_in.empty()) return false;
  std::string session;
  GetCookieforKey(cookies, kSessionCookie, session);

  std::string& result = m_returnData.postAuthCookie;
  if (status.session_end && !session.empty()) {
    result = sign_in + ";" + session + ";";
    KXLOG(3, kCefModule, "got post auth cookie");
    return true;
  }
  if (status.check_needed) {
    result = sign_in + ";" + status.text + ";";
    KXLOG(3, kCefModule, "Found cookies for Custom Sign-in HC");
    return true;
  }
  if (status.check_failed) {
    result = sign_in + ";" + status.text + ";";
    KXLOG(3, kCefModule, "Found cookies for Custom Sign-in HC Failed");
    return true;
  }
  KXLOG(4, kCefModule, "invalid response");
  return false;
}
