// The texts of the question about a certificate that does not verify.

#ifndef GUI_CEFBROWSER_CERTIFICATETEXTS_H_
#define GUI_CEFBROWSER_CERTIFICATETEXTS_H_

#include <string>

#include "include/cef_ssl_info.h"

// Fills in the two paragraphs of the question from the resource catalog: what is wrong with which
// site (with the names of all status bits), and whether to go on. `url`: the address that was
// requested; only scheme and host are shown. UI thread.
void GetCertDialogMsgs(CefRefPtr<CefSSLInfo> sslInfo, cef_errorcode_t certError,
                       const std::wstring& url, std::wstring& firstMessage,
                       std::wstring& secondMessage);

// The names of the bits set in `status`: a tab, then each name followed by a line break and two
// tabs. Bits without a name are left out.
std::string GetCertStatusString(cef_cert_status_t status);

#endif  // GUI_CEFBROWSER_CERTIFICATETEXTS_H_
