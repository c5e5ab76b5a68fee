// The program: one launch request in argv[0], one step in a browser, one result in shared memory.

#include <sys/resource.h>

#include <cstring>
#include <string>

#include "GUI/cefBrowser/CefBrowserClient.h"
#include "GUI/cefBrowser/MacAppDelegate.h"
#include "GUI/newUI/CEFJsonUtils.h"
#include "GUI/newUI/ModuleNames.h"
#include "libs/catalogUtil/GlobalCatalogs.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "platform/TerminationSignals.h"

namespace {

constexpr wchar_t kLanguage[] = L"en-US";

bool LoadCatalogs() {
  if (!g_oResCatalog.load(InstallPaths::kResourceCatalog, kLanguage)) {
    KXLOG(1, kCefModule, "failed to load resource file [CorvaneResource_EN.txt]");
    return false;
  }
  if (!g_oMsgCatalog.load(nullptr, kLanguage)) {
    KXLOG(1, kCefModule, "Error loading some or all Message Catalog files.");
    g_bMessageCatalogError = true;
    return false;
  }
  return true;
}

// What crashes here, and in the browser that is started from here, has held cookies. Not 0: a
// Linux that hands core files to a program hands it those as well, but none with a limit of 1.
void LeaveNoCoreFile() {
  const rlimit limit = {1, 1};
  setrlimit(RLIMIT_CORE, &limit);
}

// Copies the launch request and blanks it where it came from: it holds cookies, and argv[0] shows
// in process lists and stack traces.
std::string TakeLaunchRequest(char** argv) {
  if (!argv[0]) return "";
  std::string request = argv[0];
  std::strncpy(argv[0], "EmbeddedBrowser", request.size());
  return request;
}

}  // namespace

// The starting process puts the launch request in place of the program's name. The exit status is
// -1 when the catalogs or the request are unusable, else 0: success shows in the shared memory.
int main(int, char** argv) {
  HoldTerminationSignals();
  LeaveNoCoreFile();
  const std::string request = TakeLaunchRequest(argv);
  KXLogInitialize();
  KXLogSetModuleName(kLogModuleName);
  SetupSignalHandler();
  KXLOG(3, kCefModule, "inside cefBrowser");
  if (!LoadCatalogs()) return -1;
  MacCreateAppDelegate();

  EmbBrowserInfo info;
  if (!JsonUtils::parseRequestForEmbBrowserInfo(request, info)) {
    KXLOG(1, kCefModule, "Failed to Parse request ");
    return -1;
  }
  KXLOG(3, kCefModule, "type = %d url %s", info.browserType, info.url.c_str());

  auto client = CefBrowserClient::getInstance(static_cast<WebBrowserType>(info.browserType));
  KXLOG(3, kCefModule, "got client");
  if (client) client->Navigate(info);
  return 0;
}
