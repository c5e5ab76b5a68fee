#include "GUI/cefBrowser/ReturnChannel.h"

#include "GUI/LinuxUI/src/ShmUtils.h"
#include "GUI/newUI/ModuleNames.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace {

bool Serialize(EmbBrowserReturnData& data, std::string& json) {
  if (JsonUtils::createRequestForEmbBrowserReturnData(json, data)) return true;
  KXLOG(1, kStrModuleName, "createRequestForEmbBrowserReturnData() failed");
  return false;
}

}  // namespace

bool WriteReturnData(EmbBrowserReturnData data, const std::string& channel) {
  std::string json;
  if (!Serialize(data, json)) return false;
  if (json.size() > ShmUtils::kSegmentSize) {
    KXLOG(1, kCefModule, "return data of %d bytes is too long, dropping the IdP cookies",
          static_cast<int>(json.size()));
    data.samlIdpCookies.clear();
    if (!Serialize(data, json)) return false;
  }

  ShmUtils segment;
  if (!segment.attach(channel, kReturnProjectId)) {
    KXLOG(1, kCefModule, "Failed to attach shared memory");
    return false;
  }
  if (json.size() > ShmUtils::kSegmentSize) {
    KXLOG(1, kCefModule, "return data of %d bytes does not fit, nothing is written",
          static_cast<int>(json.size()));
  } else if (!segment.setVal(json)) {
    KXLOG(1, kCefModule, "Failed to set Embedded browser return data to shared memory");
  }
  return true;
}
