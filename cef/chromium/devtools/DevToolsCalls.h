// The DevTools commands that the framework sends: what a Chromium must know to be used.

#ifndef CEF_CHROMIUM_DEVTOOLS_DEVTOOLSCALLS_H_
#define CEF_CHROMIUM_DEVTOOLS_DEVTOOLSCALLS_H_

namespace engine {

// The oldest version that steps have been tried with. One that is older is used as long as it knows
// the commands.
inline constexpr int kOldestTriedChromium = 120;

struct DevToolsCall {
  const char* method;
  bool of_page;  // sent to a page's session, else to the browser as a whole
};

// Asked in this order and without parameters, none does more than to open, change or close what an
// empty browser has; the two that close come last among their kind.
inline constexpr DevToolsCall kDevToolsCalls[] = {
    {"Emulation.setUserAgentOverride", true},
    {"Log.enable", true},
    {"Network.disable", true},
    {"Network.enable", true},
    {"Page.addScriptToEvaluateOnNewDocument", true},
    {"Page.bringToFront", true},
    {"Page.enable", true},
    {"Page.getFrameTree", true},
    {"Page.navigate", true},
    {"Page.reload", true},
    {"Page.setDocumentContent", true},
    {"Runtime.addBinding", true},
    {"Runtime.enable", true},
    {"Runtime.runIfWaitingForDebugger", true},
    {"Page.close", true},
    {"Browser.getVersion", false},
    {"Browser.getWindowForTarget", false},
    {"Browser.setDownloadBehavior", false},
    {"Fetch.continueRequest", false},
    {"Fetch.continueWithAuth", false},
    {"Fetch.enable", false},
    {"Fetch.failRequest", false},
    {"Security.enable", false},
    {"Security.handleCertificateError", false},
    {"Security.setOverrideCertificateErrors", false},
    {"Storage.clearCookies", false},
    {"Storage.getCookies", false},
    {"Storage.setCookies", false},
    {"Target.closeTarget", false},
    {"Target.createTarget", false},
    {"Target.setAutoAttach", false},
    {"Target.setDiscoverTargets", false},
    {"Browser.close", false},
};

}  // namespace engine

#endif  // CEF_CHROMIUM_DEVTOOLS_DEVTOOLSCALLS_H_
