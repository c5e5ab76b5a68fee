// Navigations that fail, and ones that only look like it.

#include "tests/engine/EngineTest.h"

using ::testing::Contains;
using ::testing::ElementsAre;

namespace {

constexpr char kErrorPage[] = "data:text/html,<title>error page</title>";

class LoadErrorTest : public EngineTest {
 protected:
  void ShowErrorPage() {
    client_->on_load_error = [](CefRefPtr<CefBrowser>, CefRefPtr<CefFrame> frame,
                                const std::string&) { frame->LoadURL(kErrorPage); };
    client_->on_title = [](CefRefPtr<CefBrowser> browser, const std::string& title) {
      if (title == "error page" || title == "end") browser->GetHost()->CloseBrowser(true);
    };
  }
  std::vector<std::string> Errors() const {
    std::vector<std::string> errors;
    for (const std::string& line : client_->trace()) {
      if (line.rfind("load-error", 0) == 0) errors.push_back(line);
    }
    return errors;
  }
};

TEST_F(LoadErrorTest, NameAndNumberAreReportedAndThePageCanBeReplaced) {
  struct Case {
    std::string url;
    const char* error;
  };
  server_.Redirect("/away", "http://gone.test/lost");
  const Case cases[] = {{"http://gone.test/x", "load-error -105 net::ERR_NAME_NOT_RESOLVED /x"},
                        {"http://localhost:1/y", "load-error -312 net::ERR_UNSAFE_PORT /y"},
                        {server_.Url("/away"), "load-error -105 net::ERR_NAME_NOT_RESOLVED /lost"},
                        {"http://", "load-error -300 net::ERR_INVALID_URL /"}};
  for (const Case& c : cases) {
    client_ = new RecordingClient;
    ShowErrorPage();
    Run(c.url);
    EXPECT_THAT(Errors(), ElementsAre(c.error)) << c.url;
    EXPECT_THAT(client_->trace(), Contains("title error page")) << c.url;
  }
}

TEST_F(LoadErrorTest, FailedSubframeIsReportedForItselfAndCanBeReplaced) {
  server_.Page("/page", "<title>outer</title><iframe src='http://gone.test/inner'></iframe>");
  client_->on_load_error = [this](CefRefPtr<CefBrowser>, CefRefPtr<CefFrame> frame,
                                  const std::string&) {
    EXPECT_FALSE(frame->IsMain());
    frame->LoadURL(server_.Url("/instead"));
  };
  server_.Page("/instead", "<title>instead</title>");
  client_->on_response = [](CefRefPtr<CefBrowser> browser, const RecordingClient::Seen& seen) {
    if (seen.url.find("/instead") == std::string::npos) return false;
    EXPECT_EQ(seen.type, RT_SUB_FRAME);
    browser->GetHost()->CloseBrowser(true);
    return true;
  };
  Run(server_.Url("/page"));
  EXPECT_EQ(Errors().at(0), "load-error -105 net::ERR_NAME_NOT_RESOLVED /inner in subframe");
}

}  // namespace
