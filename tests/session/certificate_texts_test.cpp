#include <gtest/gtest.h>

#include "GUI/cefBrowser/CertificateTexts.h"
#include "libs/catalogUtil/GlobalCatalogs.h"
#include "libs/kxaccess/utf8.h"
#include "tests/support/FakeCefObjects.h"
#include "tests/support/TempDir.h"

namespace {

TEST(CertificateTexts, NameSiteFaultsAndQuestion) {
  const TempDir folder;
  const std::string catalog = folder.write("CorvaneResource_EN.txt",
                                           "\xEF\xBB\xBF[1150]\nValue = Nobody vouches for {0}.\n"
                                           "[1151]\nValue = {0} shows a wrong pass.\n"
                                           "[1152]\nValue = Go on to {0}?\n");
  ASSERT_TRUE(g_oResCatalog.load(Utf8ToWide(catalog).c_str(), L"en-US"));
  const struct {
    cef_errorcode_t error;
    int status;
    const wchar_t* url;
    const wchar_t* first;
    const wchar_t* second;
  } cases[] = {
      {ERR_CERT_AUTHORITY_INVALID, CERT_STATUS_COMMON_NAME_INVALID | CERT_STATUS_AUTHORITY_INVALID,
       L"https://vpn.example:8443/sign-in?a=/b",
       L"Nobody vouches for https://vpn.example:8443.\n\nError: "
       L"\tCERT_STATUS_COMMON_NAME_INVALID\n\t\tCERT_STATUS_AUTHORITY_INVALID\n\t\t",
       L"Go on to https://vpn.example:8443?"},
      {ERR_CERT_COMMON_NAME_INVALID, 0, L"https://a/",
       L"https://a shows a wrong pass.\n\nError: \t", L"Go on to https://a?"},
      {ERR_CERT_DATE_INVALID, 0, L"https://{0}/", L"https://%7B0} shows a wrong pass.\n\nError: \t",
       L"Go on to https://%7B0}?"},
  };
  for (const auto& c : cases) {
    std::wstring first, second;
    GetCertDialogMsgs(new FakeSSLInfo(c.status), c.error, c.url, first, second);
    EXPECT_EQ(first, c.first);
    EXPECT_EQ(second, c.second);
  }
}

TEST(CertStatusString, NamesEachKnownBitInOrder) {
  EXPECT_EQ(GetCertStatusString(CERT_STATUS_NONE), "\t");
  const std::string all = GetCertStatusString(static_cast<cef_cert_status_t>(0x7FFFFFFF));
  EXPECT_EQ(all,
            "\tCERT_STATUS_COMMON_NAME_INVALID\n\t\tCERT_STATUS_DATE_INVALID\n\t\t"
            "CERT_STATUS_AUTHORITY_INVALID\n\t\tCERT_STATUS_NO_REVOCATION_MECHANISM\n\t\t"
            "CERT_STATUS_UNABLE_TO_CHECK_REVOCATION\n\t\tCERT_STATUS_REVOKED\n\t\t"
            "CERT_STATUS_INVALID\n\t\tCERT_STATUS_WEAK_SIGNATURE_ALGORITHM\n\t\t"
            "CERT_STATUS_NON_UNIQUE_NAME\n\t\tCERT_STATUS_WEAK_KEY\n\t\t"
            "CERT_STATUS_PINNED_KEY_MISSING\n\t\tCERT_STATUS_NAME_CONSTRAINT_VIOLATION\n\t\t"
            "CERT_STATUS_VALIDITY_TOO_LONG\n\t\tCERT_STATUS_IS_EV\n\t\t"
            "CERT_STATUS_REV_CHECKING_ENABLED\n\t\tCERT_STATUS_SHA1_SIGNATURE_PRESENT\n\t\t"
            "CERT_STATUS_CT_COMPLIANCE_FAILED\n\t\t");
}

}  // namespace
