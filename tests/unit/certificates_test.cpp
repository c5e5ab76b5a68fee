#include "tools/gateway/Certificates.h"

#include <gtest/gtest.h>
#include <openssl/pem.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

namespace {

// What OpenSSL says of a server certificate when only `authority` is trusted.
int Verify(const std::string& authority, X509* certificate) {
  std::unique_ptr<BIO, decltype(&BIO_free)> in(BIO_new_mem_buf(authority.data(), -1), BIO_free);
  const CertificatePtr root(PEM_read_bio_X509(in.get(), nullptr, nullptr, nullptr));
  std::unique_ptr<X509_STORE, decltype(&X509_STORE_free)> store(X509_STORE_new(), X509_STORE_free);
  X509_STORE_add_cert(store.get(), root.get());
  std::unique_ptr<X509_STORE_CTX, decltype(&X509_STORE_CTX_free)> context(X509_STORE_CTX_new(),
                                                                          X509_STORE_CTX_free);
  X509_STORE_CTX_init(context.get(), store.get(), certificate, nullptr);
  X509_STORE_CTX_set_purpose(context.get(), X509_PURPOSE_SSL_SERVER);
  X509_verify_cert(context.get());
  return X509_STORE_CTX_get_error(context.get());
}

TEST(Certificates, EachKindHasItsFaultsAndNoOther) {
  constexpr int kUnknown = X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY;
  const TestAuthority authority;
  const struct {
    CertificateKind kind;
    int chain;      // verdict when the host is not looked at
    bool for_host;  // names the host
  } cases[] = {
      {CertificateKind::kGood, X509_V_OK, true},
      {CertificateKind::kExpired, X509_V_ERR_CERT_HAS_EXPIRED, true},
      {CertificateKind::kWrongHost, X509_V_OK, false},
      {CertificateKind::kUnknownAuthority, kUnknown, true},
      {CertificateKind::kWrongHostUnknownAuthority, kUnknown, false},
  };
  for (const auto& entry : cases) {
    const Identity server = authority.Issue(entry.kind, {"gateway.localhost", "idp.localhost"});
    const char* const name = CertificateKindName(entry.kind);
    X509* const certificate = server.certificate.get();
    EXPECT_EQ(Verify(authority.certificate_pem(), certificate), entry.chain) << name;
    for (const char* host : {"gateway.localhost", "idp.localhost"}) {
      EXPECT_EQ(X509_check_host(certificate, host, 0, 0, nullptr), entry.for_host) << name;
    }
    EXPECT_EQ(X509_check_host(certificate, "third.localhost", 0, 0, nullptr), 0) << name;
    EXPECT_EQ(X509_check_private_key(certificate, server.key.get()), 1) << name;
    EXPECT_EQ(CertificateKindNamed(name), entry.kind);
  }
}

}  // namespace
