#include "tools/gateway/Certificates.h"

#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <stdexcept>

namespace {

constexpr char kElsewhere[] = "elsewhere.example";
constexpr long kSecondsPerDay = 24 * 60 * 60;

const struct {
  CertificateKind kind;
  const char* name;
} kKinds[] = {
    {CertificateKind::kGood, "good"},
    {CertificateKind::kUnknownAuthority, "unknown-authority"},
    {CertificateKind::kWrongHost, "wrong-host"},
    {CertificateKind::kExpired, "expired"},
    {CertificateKind::kWrongHostUnknownAuthority, "wrong-host-unknown-authority"},
};

void Check(bool fine, const char* what) {
  if (!fine) throw std::runtime_error(std::string("making a certificate failed: ") + what);
}

template <typename Write>
std::string ToPem(Write write) {
  std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), BIO_free);
  Check(memory && write(memory.get()) == 1, "PEM");
  char* text = nullptr;
  const long length = BIO_get_mem_data(memory.get(), &text);
  return {text, static_cast<size_t>(length)};
}

void Name(X509_NAME* name, const std::string& common_name) {
  const auto* text = reinterpret_cast<const unsigned char*>(common_name.c_str());
  Check(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8, text, -1, -1, 0) == 1, "name");
}

void Extend(X509* certificate, X509* issuer, int nid, const std::string& value) {
  X509V3_CTX context;
  X509V3_set_ctx_nodb(&context);
  X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
  std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
      X509V3_EXT_conf_nid(nullptr, &context, nid, value.c_str()), X509_EXTENSION_free);
  Check(extension && X509_add_ext(certificate, extension.get(), -1) == 1, value.c_str());
}

// A new key and an unsigned certificate for it.
Identity Begin(const std::string& common_name, long from_day, long to_day) {
  Identity made{CertificatePtr(X509_new()), KeyPtr(EVP_EC_gen("P-256"))};
  Check(made.certificate && made.key, "key");
  X509* certificate = made.certificate.get();
  std::unique_ptr<BIGNUM, decltype(&BN_free)> serial(BN_new(), BN_free);
  Check(serial && BN_rand(serial.get(), 127, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY) == 1 &&
            BN_to_ASN1_INTEGER(serial.get(), X509_get_serialNumber(certificate)),
        "serial number");
  X509_set_version(certificate, X509_VERSION_3);
  X509_gmtime_adj(X509_getm_notBefore(certificate), from_day * kSecondsPerDay);
  X509_gmtime_adj(X509_getm_notAfter(certificate), to_day * kSecondsPerDay);
  Check(X509_set_pubkey(certificate, made.key.get()) == 1, "public key");
  Name(X509_get_subject_name(certificate), common_name);
  return made;
}

void Sign(const Identity& subject, const Identity& issuer) {
  X509_set_issuer_name(subject.certificate.get(), X509_get_subject_name(issuer.certificate.get()));
  Extend(subject.certificate.get(), issuer.certificate.get(), NID_authority_key_identifier,
         "keyid:always");
  Check(X509_sign(subject.certificate.get(), issuer.key.get(), EVP_sha256()) > 0, "signature");
}

Identity MakeAuthority(const std::string& name) {
  Identity self = Begin(name, -7, 365);
  X509* certificate = self.certificate.get();
  Extend(certificate, certificate, NID_basic_constraints, "critical,CA:TRUE");
  Extend(certificate, certificate, NID_key_usage, "critical,keyCertSign,cRLSign");
  Extend(certificate, certificate, NID_subject_key_identifier, "hash");
  Sign(self, self);
  return self;
}

Identity MakeServer(const Identity& issuer, const std::vector<std::string>& hosts, bool expired) {
  Identity server = expired ? Begin(hosts.front(), -30, -1) : Begin(hosts.front(), -7, 90);
  std::string names;
  for (const std::string& host : hosts) names += (names.empty() ? "DNS:" : ",DNS:") + host;
  X509* certificate = server.certificate.get();
  Extend(certificate, issuer.certificate.get(), NID_basic_constraints, "critical,CA:FALSE");
  Extend(certificate, issuer.certificate.get(), NID_key_usage, "critical,digitalSignature");
  Extend(certificate, issuer.certificate.get(), NID_ext_key_usage, "serverAuth,clientAuth");
  Extend(certificate, issuer.certificate.get(), NID_subject_alt_name, names);
  Sign(server, issuer);
  return server;
}

std::string CommonName(X509* certificate) {
  char text[256] = "";
  X509_NAME_get_text_by_NID(X509_get_subject_name(certificate), NID_commonName, text, sizeof text);
  return text;
}

}  // namespace

const char* CertificateKindName(CertificateKind kind) {
  for (const auto& entry : kKinds) {
    if (entry.kind == kind) return entry.name;
  }
  return "";
}

std::optional<CertificateKind> CertificateKindNamed(const std::string& name) {
  for (const auto& entry : kKinds) {
    if (name == entry.name) return entry.kind;
  }
  return std::nullopt;
}

std::string Identity::CertificatePem() const {
  return ToPem([this](BIO* out) { return PEM_write_bio_X509(out, certificate.get()); });
}

std::string Identity::KeyPem() const {
  return ToPem([this](BIO* out) {
    return PEM_write_bio_PrivateKey(out, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
  });
}

TestAuthority::TestAuthority(const std::string& name) : self_(MakeAuthority(name)) {}

Identity TestAuthority::Issue(CertificateKind kind, const std::vector<std::string>& hosts) const {
  Check(!hosts.empty(), "no host");
  const bool elsewhere =
      kind == CertificateKind::kWrongHost || kind == CertificateKind::kWrongHostUnknownAuthority;
  const std::vector<std::string> names = elsewhere ? std::vector<std::string>{kElsewhere} : hosts;
  if (kind == CertificateKind::kUnknownAuthority ||
      kind == CertificateKind::kWrongHostUnknownAuthority) {
    return MakeServer(MakeAuthority(CommonName(self_.certificate.get())), names, false);
  }
  return MakeServer(self_, names, kind == CertificateKind::kExpired);
}
