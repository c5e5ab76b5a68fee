// A VPN gateway, an identity provider and a third host, all in one server on loopback.
//
// The hosts are told apart by the Host header: gateway.localhost, idp.localhost, third.localhost,
// names that browsers resolve to loopback on their own. Under expired.gateway.localhost and the
// like, one name for every faulty CertificateKind and host, the same hosts are served with a
// certificate of that fault. One box serves many runs at once: what it plays is chosen by the path,
// "/SCENARIO/..." ("/" lists them). /-/requests holds the requests so far as JSON.

#ifndef TOOLS_GATEWAY_GATEWAYBOX_H_
#define TOOLS_GATEWAY_GATEWAYBOX_H_

#include <memory>
#include <string>
#include <vector>

#include "tools/gateway/Certificates.h"
#include "tools/gateway/GatewayFiles.h"
#include "tools/gateway/RequestRecord.h"
#include "tools/gateway/Scenario.h"

class GatewayBox {
 public:
  struct Options {
    int port = 0;        // for HTTP; 0: the system chooses
    int https_port = 0;  // the same
    CertificateKind certificate = CertificateKind::kGood;
    // Which host the certificate's fault is for: "gateway", "idp" or "third"; empty: all three. The
    // others then serve a good one.
    std::string certificate_for;
    std::string scenarios = ScenarioFolder();
    std::string only;  // the one scenario that is served; empty: all
    std::string tape;  // a flow tape's file: its scenario is served, and no other
  };

  // Listens when it returns. Throws ScenarioError when a scenario file cannot be used, and
  // std::runtime_error when a tape cannot be, a port is taken or a certificate cannot be made.
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

  const std::vector<Scenario>& scenarios() const;

  // The requests so far. Any thread.
  std::vector<RecordedRequest> requests() const;
  // The requests that no answer of their page was for, each as one line with the reason. Any
  // thread.
  std::vector<std::string> refusals() const;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

#endif  // TOOLS_GATEWAY_GATEWAYBOX_H_
