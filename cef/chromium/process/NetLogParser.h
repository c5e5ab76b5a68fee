// Picks the certificate verifier's results out of Chromium's network log.

#ifndef CEF_CHROMIUM_PROCESS_NETLOGPARSER_H_
#define CEF_CHROMIUM_PROCESS_NETLOGPARSER_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace engine {

// What the verifier said about the certificate that a host presented.
struct CertVerdict {
  std::string host;
  uint32_t status = 0;      // the bits of cef_cert_status_t
  std::string certificate;  // the host's own one, PEM; tells one certificate from another
};

// Fed with the log in pieces of any size. The log is one JSON text that has one event a line; the
// numbers of the events stand in its first line.
class NetLogParser {
 public:
  using Result = std::function<void(const CertVerdict& verdict)>;

  // Calls `result` for every finished verification, before it returns.
  void Feed(const char* data, size_t size, const Result& result);

 private:
  void ReadLine(const Result& result);
  void ReadConstants();

  std::string line_;            // the unfinished line
  bool line_too_long_ = false;  // the rest of it is dropped
  bool know_constants_ = false;
  int verifier_job_ = -1;
  std::string verifier_mark_;                 // what every line of such an event contains
  std::map<int64_t, CertVerdict> under_way_;  // by source id
};

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_NETLOGPARSER_H_
