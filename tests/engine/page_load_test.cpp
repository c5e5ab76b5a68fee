// A page from order to close.

#include "tests/engine/EngineTest.h"

using ::testing::ElementsAre;

namespace {

class PageLoadTest : public EngineTest {};

TEST_F(PageLoadTest, CallbacksComeInOrderAndTheRunEnds) {
  server_.Page("/start", "<title>Hello</title>");
  client_->on_title = [](CefRefPtr<CefBrowser> browser, const std::string&) {
    browser->GetHost()->CloseBrowser(true);
  };
  Run(server_.Url("/start"));
  EXPECT_THAT(client_->trace(),
              ElementsAre("created 1", "before-load /start", "response 200 /start", "title Hello",
                          "do-close 1", "before-close 1"));
}

}  // namespace
