// What is known of requests that are on their way.

#include "cef/chromium/browser/FrameEvents.h"
#include "cef/chromium/browser/LoadErrors.h"
#include "cef/chromium/network/NetworkHooks.h"
#include "tests/engine/DevToolsTest.h"

namespace {

constexpr char kPage[] = "https://bad.test/page";

class NetworkHooksTest : public DevToolsTest {
 protected:
  NetworkHooksTest() {
    for (const char* target : {"T", "U"}) {
      table_.Add(new engine::Browser(
          connection_, [](const std::string&) { return ""; }, target,
          std::string("session of ") + target, nullptr, nullptr, false));
    }
    hooks_.Subscribe();
    errors_.Subscribe();
  }

  // A frame begins to load a page; returns when the request has been let on.
  void Load(const std::string& number, const std::string& frame, const std::string& url) {
    Reply(R"({"method":"Fetch.requestPaused","params":{"requestId":"job-)" + number +
          R"(.0","resourceType":"Document","frameId":")" + frame + R"(","request":{"url":")" + url +
          R"("}}}|)");
    EXPECT_NE(ReadCommand().find("job-" + number + ".0"), std::string::npos);
  }

  engine::BrowserTable table_;
  engine::NetworkHooks hooks_{connection_, table_};
  engine::LoadErrors errors_{connection_, table_};
};

// What a page gave up must not make a later request of the same address look like a page.
TEST_F(NetworkHooksTest, APageThatWasGivenUpIsNotAskedAboutAgain) {
  const std::function<void()> ends[] = {
      [this] { hooks_.NavigationGone("T", kPage); },
      [this] { hooks_.BrowserGone("T"); },
      [this] { Load("2", "T", "https://other.test/"); },
      [this] {
        Reply(
            R"({"method":"Fetch.requestPaused","params":{"requestId":"job-1.0",)"
            R"("responseStatusCode":302,"responseHeaders":[{"name":"location","value":"/x"}]}}|)");
        ReadCommand();
      },
      [this] {
        Reply(R"({"method":"Fetch.requestPaused","params":{"requestId":"job-1.0",)"
              R"("responseErrorReason":"Failed"}}|)");
        ReadCommand();
      },
  };
  Open();
  for (const auto& end : ends) {
    Load("1", "T", kPage);
    hooks_.NavigationGone("U", kPage);
    hooks_.NavigationGone("T", "https://third.test/");
    hooks_.BrowserGone("U");
    Load("3", "U", "https://third.test/");
    const auto browser = hooks_.LoadingMainFrame(std::string(kPage) + "#here");
    ASSERT_TRUE(browser.get());
    EXPECT_EQ(browser->target_id(), "T");
    end();
    EXPECT_FALSE(hooks_.LoadingMainFrame(kPage).get());
  }
  Load("4", "frame in T", kPage);
  EXPECT_FALSE(hooks_.LoadingMainFrame(kPage).get()) << "no page but a part of one";
}

// A document that begins before that would have neither title nor console.
TEST_F(NetworkHooksTest, AnAnswerWaitsUntilItsPageIsSetUp) {
  Open();
  // The first of so many is given up.
  for (int i = 1; i <= 65; ++i) {
    Load(std::to_string(i), "T", kPage);
    Reply(R"({"method":"Fetch.requestPaused","params":{"requestId":"job-)" + std::to_string(i) +
          R"(.0","responseStatusCode":200,"responseHeaders":[]}}|)");
  }
  // Whose command would come after that of the first, had there been one.
  Load("99", "U", kPage);
  engine::IoThread::Get().PostTask([this] { table_.ByTarget("T")->SetUpIsDone(); });
  for (int i = 2; i <= 65; ++i) {
    EXPECT_NE(ReadCommand().find("job-" + std::to_string(i) + ".0"), std::string::npos);
  }
}

// A request that no navigation was announced for fails without an answer; then the page shown
// breaks off, when its frame is on its way to another.
TEST_F(NetworkHooksTest, AFailureIsNotThatOfAnotherDocumentOfTheFrame) {
  std::vector<std::string> failed;
  errors_.OnGivenUp([&](const std::string&, const std::string& url) { failed.push_back(url); });
  hooks_.OnDocumentFailing(
      [this](const engine::JsonValue& request, bool begun, std::function<void()> go_on) {
        errors_.OnFailing(request, begun, std::move(go_on));
      });
  table_.SetLoader("T", "A");
  Open();
  Load("1", "T", "https://other.test/");
  for (const std::string url : {"https://other.test/", kPage}) {
    Reply(R"({"method":"Fetch.requestPaused","params":{"requestId":"job-1.0","frameId":"T",)"
          R"("resourceType":"Document","responseErrorReason":"Failed","request":{"url":")" +
          url + R"("}}}|)");
    ReadCommand();
    Reply(R"({"method":"Network.loadingFailed","params":{"requestId":"A",)"
          R"("errorText":"net::ERR_HTTP_RESPONSE_CODE_FAILURE"}}|)"
          R"({"method":"Page.frameStartedNavigating","sessionId":"session of T",)"
          R"("params":{"frameId":"T","url":"https://next.test/","loaderId":"B"}}|)");
  }
  Load("2", "U", kPage);
  EXPECT_EQ(failed, std::vector<std::string>{kPage});
}

// Chromium loses the event of a document now and then, when its process is slow to start. The
// window would go by the host of the former page.
TEST_F(NetworkHooksTest, ADocumentThatNobodyTellsOfIsFound) {
  std::vector<std::string> documents;
  engine::SubscribeFrameEvents(
      connection_, table_,
      [&](const std::string&, const engine::JsonValue& frame, engine::Arrival arrival) {
        documents.push_back((arrival == engine::Arrival::kFound ? "found " : "told ") +
                            engine::TextAt(frame, "url"));
      });
  const std::string frame =
      R"("params":{"frame":{"id":"T","loaderId":"A","url":"https://told/"}}}|)";
  const std::string cleared =
      R"({"method":"Runtime.executionContextsCleared","sessionId":"session of T","params":{}}|)";
  const std::string created =
      R"({"method":"Runtime.executionContextCreated","sessionId":"session of T","params":)"
      R"({"context":{"auxData":{"type":"default","frameId":"T"}}}}|)";
  Open();
  Reply(cleared + R"({"method":"Page.frameNavigated","sessionId":"session of T",)" + frame +
        created);
  Load("1", "T", kPage);
  Reply(cleared + created);
  const std::string asked = ReadCommand();
  ASSERT_NE(asked.find("Page.getFrameTree"), std::string::npos) << asked;
  const std::string id = asked.substr(asked.find("\"id\":"), asked.find(','));
  Reply("{" + id.substr(0, id.find_first_of(",}")) +
        R"(,"result":{"frameTree":{"frame":{"id":"T","loaderId":"B","url":"https://found/"}}}}|)");
  Load("2", "T", kPage);
  EXPECT_EQ(documents, (std::vector<std::string>{"told https://told/", "found https://found/"}));
}

}  // namespace
