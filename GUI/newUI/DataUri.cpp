#include "GUI/newUI/CommonWebBrowser.h"
#include "include/cef_parser.h"

std::string GetDataURI(const std::string& data, const std::string& mimeType) {
  const CefString encoded = CefURIEncode(CefBase64Encode(data.data(), data.size()), false);
  return "data:" + mimeType + ";base64," + encoded.ToString();
}
