// Links every library of plain C++ for macOS: what one of them misses there, the linker names.

#include "GUI/LinuxUI/src/ShmUtils.h"
#include "GUI/newUI/CEFJsonUtils.h"
#include "GUI/newUI/CommonWebBrowser.h"
#include "libs/catalogUtil/GlobalCatalogs.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

int main(int, char** argv) {
  KXLogInitialize();
  KXLogSetModuleName("check");
  const bool loaded = g_oResCatalog.load(InstallPaths::kResourceCatalog, L"en-US") &&
                      g_oMsgCatalog.load(nullptr, L"en-US");
  EmbBrowserInfo info;
  EmbBrowserReturnData data;
  std::string json;
  ShmUtils channel;
  KXLOG(3, "CEF", "%d %s", loaded ? 1 : 0, GetDataURI(argv[0], "text/html").c_str());
  return JsonUtils::parseRequestForEmbBrowserInfo(argv[0], info) &&
                 JsonUtils::createRequestForEmbBrowserReturnData(json, data) &&
                 channel.attach("/tmp", 'R') && channel.setVal(json)
             ? 0
             : 1;
}
