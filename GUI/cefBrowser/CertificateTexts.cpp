#include "GUI/cefBrowser/CertificateTexts.h"

#include "GUI/newUI/CommonWebBrowser.h"
#include "libs/catalogUtil/Arguments.h"
#include "libs/catalogUtil/GlobalCatalogs.h"
#include "libs/catalogUtil/ResourceIds.h"
#include "libs/catalogUtil/Utils.h"

namespace {

struct StatusName {
  unsigned int bit;
  const char* name;
};

constexpr StatusName kStatusNames[] = {
    {CERT_STATUS_COMMON_NAME_INVALID, "CERT_STATUS_COMMON_NAME_INVALID"},
    {CERT_STATUS_DATE_INVALID, "CERT_STATUS_DATE_INVALID"},
    {CERT_STATUS_AUTHORITY_INVALID, "CERT_STATUS_AUTHORITY_INVALID"},
    {CERT_STATUS_NO_REVOCATION_MECHANISM, "CERT_STATUS_NO_REVOCATION_MECHANISM"},
    {CERT_STATUS_UNABLE_TO_CHECK_REVOCATION, "CERT_STATUS_UNABLE_TO_CHECK_REVOCATION"},
    {CERT_STATUS_REVOKED, "CERT_STATUS_REVOKED"},
    {CERT_STATUS_INVALID, "CERT_STATUS_INVALID"},
    {CERT_STATUS_WEAK_SIGNATURE_ALGORITHM, "CERT_STATUS_WEAK_SIGNATURE_ALGORITHM"},
    {CERT_STATUS_NON_UNIQUE_NAME, "CERT_STATUS_NON_UNIQUE_NAME"},
    {CERT_STATUS_WEAK_KEY, "CERT_STATUS_WEAK_KEY"},
    {CERT_STATUS_PINNED_KEY_MISSING, "CERT_STATUS_PINNED_KEY_MISSING"},
    {CERT_STATUS_NAME_CONSTRAINT_VIOLATION, "CERT_STATUS_NAME_CONSTRAINT_VIOLATION"},
    {CERT_STATUS_VALIDITY_TOO_LONG, "CERT_STATUS_VALIDITY_TOO_LONG"},
    {CERT_STATUS_IS_EV, "CERT_STATUS_IS_EV"},
    {CERT_STATUS_REV_CHECKING_ENABLED, "CERT_STATUS_REV_CHECKING_ENABLED"},
    {CERT_STATUS_SHA1_SIGNATURE_PRESENT, "CERT_STATUS_SHA1_SIGNATURE_PRESENT"},
    {CERT_STATUS_CT_COMPLIANCE_FAILED, "CERT_STATUS_CT_COMPLIANCE_FAILED"},
};

std::wstring TextAboutSite(unsigned int id, const std::wstring& site) {
  orb::CatalogUtil::ResourceStringArguments text(id);
  text.arguments << site.c_str();
  return g_oResCatalog.getString(text);
}

}  // namespace

void GetCertDialogMsgs(CefRefPtr<CefSSLInfo> sslInfo, cef_errorcode_t certError,
                       const std::wstring& url, std::wstring& firstMessage,
                       std::wstring& secondMessage) {
  std::wstring site = SiteOfAddress(url);
  // A placeholder inside an argument would make the catalog expand it for ever.
  orb::CatalogUtil::findAndReplace(site, L"{", L"%7B");

  const bool untrusted = certError == ERR_CERT_AUTHORITY_INVALID;
  firstMessage = TextAboutSite(untrusted ? kUntrustedAuthorityText : kOtherFaultText, site);
  firstMessage += L"\n\nError: ";
  const std::string names = GetCertStatusString(sslInfo->GetCertStatus());
  firstMessage.append(names.begin(), names.end());
  secondMessage = TextAboutSite(kContinueQuestion, site);
}

std::string GetCertStatusString(cef_cert_status_t status) {
  std::string names = "\t";
  for (const StatusName& entry : kStatusNames) {
    if (static_cast<unsigned int>(status) & entry.bit) {
      names += entry.name;
      names += "\n\t\t";
    }
  }
  // Never true, since the leading tab is always there; kept on purpose.
  if (names.empty()) return "&nbsp;";
  return names;
}
