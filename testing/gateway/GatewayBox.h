// A VPN gateway, an identity provider and a third host, all in one server on loopback.
//
// The hosts are told apart by the Host header: gateway.localhost, idp.localhost, third.localhost,
// names that browsers resolve to loopback by themselves. One box serves many runs at once: what it
// plays is chosen by the path (see Scenarios.h; "/" lists them). /-/requests holds the requests so
// far as JSON.

#ifndef TESTING_GATEWAY_GATEWAYBOX_H_
#define TESTING_GATEWAY_GATEWAYBOX_H_

#include <memory>
#include <string>
#include <vector>

#include "testing/gateway/Certificates.h"
#include "testing/gateway/RequestRecord.h"

class GatewayBox {
 public:
  struct Options {
    int port = 0;        // for HTTP; 0: the system chooses
    int https_port = 0;  // the same
    CertificateKind certificate = CertificateKind::kGood;
    // Which host the certificate's fault is for: "gateway", "idp" or "third"; empty: all three. The
    // others then serve a good one.
    std::string certificate_for;
  };

  // Listens when it returns. Throws std::runtime_error when a port is taken or a certificate cannot
  // be made.
  explicit GatewayBox(const Options& options);
  GatewayBox() : GatewayBox(Options()) {}
  // Ends all connections; bounded by a few seconds.
  ~GatewayBox();
  GatewayBox(const GatewayBox&) = delete;
  GatewayBox& operator=(const GatewayBox&) = delete;

  int port() const;
  int https_port() const;
  // "http://gateway.localhost:<port>" and "https://gateway.localhost:<https_port>".
  std::string http_origin() const;
  std::string https_origin() const;
  // The certificate of the authority that signs the good certificates, as PEM text.
  std::string authority_pem() const;

  // The requests so far. Any thread.
  std::vector<RecordedRequest> requests() const;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

#endif  // TESTING_GATEWAY_GATEWAYBOX_H_
