// Certificate errors: the client is asked, and the request waits for the answer.

#ifndef CEF_CHROMIUM_NETWORK_CERTIFICATES_H_
#define CEF_CHROMIUM_NETWORK_CERTIFICATES_H_

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "cef/chromium/browser/Browser.h"
#include "cef/chromium/devtools/DevToolsConnection.h"
#include "cef/chromium/network/NetworkHooks.h"
#include "cef/chromium/process/NetLogParser.h"

namespace engine {

// The client is asked for main frames only; everything else with a bad certificate is cancelled
// without a word. Once allowed, the same certificate passes for that host until the process ends.
// One that is allowed before the verifier has named it passes only while it is not named. Chromium
// does not remember the answers given this way, it asks again for each new connection. What a page
// or a server can multiply is limited: of very many requests at a time some are cancelled, and of
// very many certificates the one that was allowed first is asked about again.
class Certificates {
 public:
  // What is wrong with a host's certificate, `fault` among it, if that is known within `wait`.
  using FaultSource = std::function<std::optional<CertVerdict>(
      const std::string& host, uint32_t fault, std::chrono::milliseconds wait)>;

  // Connection and hooks must live as long as the process.
  Certificates(DevToolsConnection& connection, NetworkHooks& hooks);

  // Before the connection is opened.
  void SetFaultSource(FaultSource source) { fault_source_ = std::move(source); }
  void Subscribe();
  // Orders Chromium to ask; the replies are not waited for.
  void Enable();

  // Forgets the questions of a browser. IO thread.
  void BrowserGone(const std::string& target_id);

 private:
  // One question to the client, and the requests that wait for its answer.
  struct Question {
    std::string target_id;
    std::string host;
    std::string error;
    std::vector<int64_t> events;
  };

  // A certificate, "" when it is not known, that the client has allowed for a host in spite of an
  // error.
  using Consent = std::tuple<std::string, std::string, std::string>;

  void OnError(const JsonValue& params);
  void Decide(int64_t event, const std::string& url, const std::string& host,
              const std::string& error);
  bool IsAllowed(const std::string& host, const std::string& error) const;
  void Ask(int question, const CefRefPtr<Browser>& browser, const std::string& host,
           const std::string& error, const std::string& url);
  // A refusal has ended the run.
  static void SayWhatRefused(const std::string& host, const std::string& error);
  void Answer(int question, bool allow, const std::string& certificate);
  void AnswerEvent(int64_t event, bool allow);

  DevToolsConnection& connection_;
  NetworkHooks& hooks_;
  FaultSource fault_source_;

  // IO thread only.
  std::set<int64_t> waiting_;    // the events without an answer
  std::deque<Consent> allowed_;  // host, error, certificate; the oldest first
  std::map<int, Question> questions_;
  int last_question_ = 0;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_NETWORK_CERTIFICATES_H_
