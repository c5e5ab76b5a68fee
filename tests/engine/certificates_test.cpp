// What becomes of certificate errors; that Chromium reports them so, the scenarios show.

#include "cef/chromium/network/Certificates.h"

#include <thread>

#include "cef/chromium/base/MessageLoop.h"
#include "include/cef_request_handler.h"
#include "tests/engine/DevToolsTest.h"

using engine::CertVerdict;
using engine::MessageLoop;

namespace {

enum Answer { kYes, kNo, kNone, kNotMine };

class Client : public CefClient, public CefRequestHandler {
 public:
  CefRefPtr<CefRequestHandler> GetRequestHandler() override { return this; }
  bool OnCertificateError(CefRefPtr<CefBrowser>, cef_errorcode_t code, const CefString& url,
                          CefRefPtr<CefSSLInfo> info,
                          CefRefPtr<CefRequestCallback> callback) override {
    asked +=
        std::to_string(code) + " " + std::to_string(info->GetCertStatus()) + " " + url.ToString();
    if (answer == kYes || answer == kNo) callback->Continue(answer == kYes);
    // Too late to change anything.
    if (answer == kYes) callback->Continue(false);
    return answer != kNotMine;
  }
  Answer answer = kNone;
  std::string asked;

 private:
  IMPLEMENT_REFCOUNTING(Client);
};

class CertificatesTest : public DevToolsTest {
 protected:
  // The next command, while the loop runs.
  std::string NextCommand() {
    std::string command;
    std::thread reader([&] {
      command = ReadCommand();
      MessageLoop::Get().PostTask([] { MessageLoop::Get().Quit(); });
    });
    MessageLoop::Get().Run();
    reader.join();
    return command;
  }

  engine::BrowserTable table_;
  engine::NetworkHooks hooks_{connection_, table_};
  engine::Certificates certificates_{connection_, hooks_};
};

TEST_F(CertificatesTest, MainFramesAreAskedAboutUntilTheCertificateIsAllowed) {
  MessageLoop::Get().Init();
  const CefRefPtr<Client> client = new Client;
  const auto no_session = [](const std::string&) { return ""; };
  table_.Add(new engine::Browser(connection_, no_session, "T", "S", client.get(), nullptr, false));
  std::optional<CertVerdict> verdict;
  certificates_.SetFaultSource([&](const std::string& host, uint32_t fault, auto) {
    EXPECT_EQ(host + std::to_string(fault), "a.test4");
    return verdict;
  });
  hooks_.Subscribe();
  certificates_.Subscribe();
  Open();
  const std::string page = "https://a.test/page";
  Reply(R"({"method":"Fetch.requestPaused","params":{"requestId":"job-1.0",)"
        R"("resourceType":"Document","frameId":"T","request":{"url":")" +
        page + R"("}}}|)");
  EXPECT_NE(NextCommand().find("Fetch.continueRequest"), std::string::npos);

  const CertVerdict one{"a.test", 5, "one"}, other{"a.test", 6, "other"};
  const struct {
    std::string url;
    std::optional<CertVerdict> verdict;
    Answer answer;
    std::string asked;  // empty: nobody
    const char* action;
  } steps[] = {
      {"https://a.test/picture", one, kYes, "", "cancel"},
      {page, one, kNo, "-202 5 " + page, "cancel"},
      {page, one, kNone, "-202 5 " + page, "cancel"},
      {page, one, kNotMine, "-202 5 " + page, "cancel"},
      {page, one, kYes, "-202 5 " + page, "continue"},
      {"https://a.test/picture", one, kNo, "", "continue"},
      {page, other, kNo, "-202 6 " + page, "cancel"},
      // Where there is no network log.
      {page, {}, kYes, "-202 4 " + page, "continue"},
      {page, {}, kNo, "", "continue"},
  };
  for (const auto& step : steps) {
    SCOPED_TRACE(&step - steps);
    client->asked.clear();
    client->answer = step.answer;
    verdict = step.verdict;
    // A page opens several connections at a time.
    for (const char* event : {"7", "8"}) {
      Reply(R"({"method":"Security.certificateError","params":{"eventId":)" + std::string(event) +
            R"(,"errorType":"net::ERR_CERT_AUTHORITY_INVALID","requestURL":")" + step.url +
            R"("}}|)");
    }
    for (const char* event : {"7", "8"}) {
      EXPECT_NE(
          NextCommand().find(std::string(R"("eventId":)") + event + R"(,"action":")" + step.action),
          std::string::npos);
    }
    EXPECT_EQ(client->asked, step.asked);
  }
  // More at a time than any page needs: all would be let on.
  std::string errors;
  for (int event = 10; event < 410; ++event) {
    errors += R"({"method":"Security.certificateError","params":{"eventId":)" +
              std::to_string(event) +
              R"(,"errorType":"net::ERR_CERT_AUTHORITY_INVALID","requestURL":")" + page + R"("}}|)";
  }
  Reply(errors);
  std::string answers;
  for (int event = 10; event < 410; ++event) answers += ReadCommand();
  EXPECT_NE(answers.find("cancel"), std::string::npos);
}

}  // namespace
