#include "cef/chromium/Frame.h"

#include "cef/chromium/DevToolsConnection.h"

namespace engine {

FrameRecord Frame::Record() const {
  FrameRecord record;
  browser_->table().FindFrame(frame_id_, &record);
  return record;
}

bool Frame::IsValid() { return !Record().target_id.empty(); }

void Frame::LoadURL(const CefString& url) { browser_->Navigate(frame_id_, url.ToString()); }

// In the main frame only: the scripts of other frames have contexts that are not kept track of.
void Frame::ExecuteJavaScript(const CefString& code, const CefString& script_url, int) {
  if (!IsMain()) return;
  std::string source = code.ToString();
  if (!script_url.empty()) source += "\n//# sourceURL=" + script_url.ToString();
  browser_->connection().Send(browser_->session(), "Runtime.evaluate",
                              JsonObject().Add("expression", source).Add("silent", true));
}

int64 Frame::GetIdentifier() {
  const FrameRecord record = Record();
  return record.identifier ? record.identifier : -1;
}

CefRefPtr<CefFrame> Frame::GetParent() {
  const std::string parent = Record().parent_id;
  return parent.empty() ? nullptr : browser_->FrameById(parent);
}

}  // namespace engine
