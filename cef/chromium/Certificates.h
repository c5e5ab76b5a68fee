// Certificate errors: the client is asked, and the request waits for the answer.

#ifndef CEF_CHROMIUM_CERTIFICATES_H_
#define CEF_CHROMIUM_CERTIFICATES_H_

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cef/chromium/Browser.h"
#include "cef/chromium/DevToolsConnection.h"
#include "cef/chromium/NetworkHooks.h"

namespace engine {

// The client is asked for main frames only; everything else with a bad certificate is cancelled
// without a word. Once allowed, Chromium lets the certificate pass for that host until it ends.
class Certificates {
 public:
  // All status bits of a host's certificate, if they are known; may wait a little.
  using StatusSource = std::function<std::optional<uint32_t>(const std::string& host)>;

  // Connection and hooks must live as long as the process.
  Certificates(DevToolsConnection& connection, NetworkHooks& hooks);

  // Before the connection is opened.
  void SetStatusSource(StatusSource source) { status_source_ = std::move(source); }
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

  void OnError(const JsonValue& params);
  void Ask(int question, const CefRefPtr<Browser>& browser, const std::string& host,
           const std::string& error, const std::string& url);
  void Answer(int question, bool allow);
  void AnswerEvent(int64_t event, bool allow);

  DevToolsConnection& connection_;
  NetworkHooks& hooks_;
  StatusSource status_source_;

  // IO thread only.
  std::map<int, Question> questions_;
  int last_question_ = 0;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_CERTIFICATES_H_
