// Certificates made at run time, good ones and ones with a chosen fault, for servers on loopback.

#ifndef TOOLS_GATEWAY_CERTIFICATES_H_
#define TOOLS_GATEWAY_CERTIFICATES_H_

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

// What a browser that trusts the test authority finds wrong with a server certificate.
enum class CertificateKind {
  kGood,
  kUnknownAuthority,           // signed by another authority of the same name
  kWrongHost,                  // names "elsewhere.example" only
  kExpired,                    // valid until yesterday
  kWrongHostUnknownAuthority,  // both faults in one certificate
};

// The kind's name on command lines: "good", "unknown-authority", "wrong-host", "expired",
// "wrong-host-unknown-authority".
const char* CertificateKindName(CertificateKind kind);
// The kind of that name; nothing for any other text.
std::optional<CertificateKind> CertificateKindNamed(const std::string& name);

struct X509Deleter {
  void operator()(X509* certificate) const { X509_free(certificate); }
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};
using CertificatePtr = std::unique_ptr<X509, X509Deleter>;
using KeyPtr = std::unique_ptr<EVP_PKEY, X509Deleter>;

// A certificate and its private key, as objects for OpenSSL and as PEM text for files.
struct Identity {
  CertificatePtr certificate;
  KeyPtr key;
  std::string CertificatePem() const;
  std::string KeyPem() const;
};

// An authority of a test's own: a fresh P-256 key and a self-signed certificate. To make a browser
// trust it, import certificate_pem() (see tests/support/TrustStore.h). Nothing is kept anywhere:
// when the object is gone, so is the key. Constructor and Issue throw std::runtime_error when
// OpenSSL refuses. One object may be used by one thread at a time.
class TestAuthority {
 public:
  explicit TestAuthority(const std::string& name = "Corvane Test Authority");

  // The authority's certificate, as PEM text.
  std::string certificate_pem() const { return self_.CertificatePem(); }

  // A certificate for a server with the host names given (at least one; the first is also the
  // common name), with the fault asked for. It will do for a client of that common name, too. Ends
  // of validity lie days away from now, so that clocks that differ by hours do not matter.
  Identity Issue(CertificateKind kind, const std::vector<std::string>& hosts) const;

 private:
  Identity self_;
};

#endif  // TOOLS_GATEWAY_CERTIFICATES_H_
