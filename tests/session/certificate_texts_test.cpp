#include <gtest/gtest.h>

#include "GUI/cefBrowser/CertificateTexts.h"
#include "libs/catalogUtil/GlobalCatalogs.h"
#include "libs/kxaccess/utf8.h"
#include "tests/support/FakeCef.h"
#include "tests/support/TempDir.h"

namespace {

constexpr char kMark[] = "\xEF\xBB\xBF";

struct Texts {
  std::wstring first;
  std::wstring second;
};

Texts Question(cef_errorcode_t error, int status, const std::wstring& url) {
  FakeCef cef;
  Texts texts;
  GetCertDialogMsgs(new FakeSSLInfo(status), error, url, texts.first, texts.second);
  return texts;
}

class CertificateTexts : public testing::Test {
 protected:
  CertificateTexts() {
    g_oResCatalog.m_records.clear();
    g_oResCatalog.m_brandingFilePath.clear();
  }

  void Load(const wchar_t* language, const std::string& branding = "") {
    const std::string base =
        folder_.write("CorvaneResource_EN.txt", std::string(kMark) +
                                                    "[1150]\nValue = Nobody vouches for {0}.\n"
                                                    "[1151]\nValue = {0} shows a wrong pass.\n"
                                                    "[1152]\nValue = Go on to {0}?\n");
    folder_.write("CorvaneResource_DE.txt",
                  std::string(kMark) +
                      "[1150]\nValue = F\xC3\xBCr {0} b\xC3\xBCrgt niemand.\n"
                      "[1152]\nValue = Weiter zu {0}?\n");
    if (!branding.empty()) {
      const std::string file = folder_.write("Branding_EN.txt", kMark + branding);
      g_oResCatalog.setBrandingFilePath(Utf8ToWide(file).c_str());
    }
    ASSERT_TRUE(g_oResCatalog.load(Utf8ToWide(base).c_str(), language));
  }

  TempDir folder_;
};

TEST_F(CertificateTexts, NameSiteFaultsAndQuestion) {
  Load(L"en-US");
  const Texts texts = Question(ERR_CERT_AUTHORITY_INVALID,
                               CERT_STATUS_COMMON_NAME_INVALID | CERT_STATUS_AUTHORITY_INVALID,
                               L"https://vpn.example:8443/sign-in?a=/b");
  EXPECT_EQ(texts.first,
            L"Nobody vouches for https://vpn.example:8443.\n\nError: "
            L"\tCERT_STATUS_COMMON_NAME_INVALID\n\t\tCERT_STATUS_AUTHORITY_INVALID\n\t\t");
  EXPECT_EQ(texts.second, L"Go on to https://vpn.example:8443?");
}

TEST_F(CertificateTexts, EveryOtherErrorHasTheOtherText) {
  Load(L"en-US");
  for (cef_errorcode_t error :
       {ERR_CERT_COMMON_NAME_INVALID, ERR_CERT_DATE_INVALID, ERR_CERT_REVOKED}) {
    EXPECT_EQ(Question(error, 0, L"https://a/").first,
              L"https://a shows a wrong pass.\n\nError: \t");
  }
}

TEST_F(CertificateTexts, SpeakTheUsersLanguageAsFarAsItGoes) {
  Load(L"de");
  const Texts texts = Question(ERR_CERT_AUTHORITY_INVALID, 0, L"https://a/");
  EXPECT_EQ(texts.first, L"F\u00fcr https://a b\u00fcrgt niemand.\n\nError: \t");
  EXPECT_EQ(texts.second, L"Weiter zu https://a?");
  EXPECT_EQ(Question(ERR_CERT_DATE_INVALID, 0, L"https://a/").first,
            L"https://a shows a wrong pass.\n\nError: \t");
}

TEST_F(CertificateTexts, BrandingHasTheLastWord) {
  Load(L"de", "[1152]\nValue = Trust {0}?\n");
  const Texts texts = Question(ERR_CERT_AUTHORITY_INVALID, 0, L"https://a/");
  EXPECT_EQ(texts.first, L"F\u00fcr https://a b\u00fcrgt niemand.\n\nError: \t");
  EXPECT_EQ(texts.second, L"Trust https://a?");
}

TEST_F(CertificateTexts, AnAddressThatLooksLikeAPlaceholderEnds) {
  Load(L"en-US");
  EXPECT_EQ(Question(ERR_CERT_DATE_INVALID, 0, L"https://{0}/").second, L"Go on to https://%7B0}?");
}

TEST_F(CertificateTexts, AMissingTextShowsItsNumber) {
  EXPECT_EQ(Question(ERR_CERT_DATE_INVALID, 0, L"bad").second, L"<<1152: UNKNOWN RESOURCE ID>>");
}

TEST(CertStatusString, NamesEachKnownBitInOrder) {
  EXPECT_EQ(GetCertStatusString(CERT_STATUS_NONE), "\t");
  constexpr unsigned kNameless = (1u << 3) | (1u << 9) | (1u << 12) | (1u << 18) | (0x7FFu << 21);
  EXPECT_EQ(GetCertStatusString(static_cast<cef_cert_status_t>(kNameless)), "\t");
  const std::string all = GetCertStatusString(static_cast<cef_cert_status_t>(0x1FFFFF));
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
