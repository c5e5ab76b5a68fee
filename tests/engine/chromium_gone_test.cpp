// A Chromium that does not start, or that dies.

#include <chrono>
#include <csignal>
#include <cstdlib>

#include "cef/wrapper/exports.h"
#include "tests/engine/EngineTest.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

// Last: no further test of this process would find a Chromium, not even the other one.
class ChromiumKilledTest : public EngineTest, public ::testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(Closing, ChromiumKilledTest, ::testing::Bool());

TEST_P(ChromiumKilledTest, ARunEndsAndSaysSoUnlessItWasEndingAnyway) {
  static bool killed = false;
  if (killed) GTEST_SKIP() << "needs a process of its own";
  killed = true;
  server_.Page("/page", "<title>up</title>");
  client_->on_title = [](CefRefPtr<CefBrowser> browser, const std::string&) {
    if (GetParam()) browser->GetHost()->CloseBrowser(true);
    for (const int pid : DescendantsRunning("--remote-debugging-pipe")) kill(pid, SIGKILL);
  };
  ::testing::internal::CaptureStderr();
  Run(server_.Url("/page"));
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            GetParam() ? "" : "cef: Chromium exited on its own\n");
  EXPECT_THAT(client_->trace(), Contains("before-close 1"));
  EXPECT_EQ(client_->trace().back(), "before-close 1");

  // A browser ordered now cannot come; the run ends all the same, and says so.
  ::testing::internal::CaptureStderr();
  client_ = new RecordingClient;
  Run(server_.Url("/page"));
  EXPECT_THAT(client_->trace(), IsEmpty());
  EXPECT_THAT(::testing::internal::GetCapturedStderr(),
              ::testing::HasSubstr("cef: no browser window could be opened"));
}

}  // namespace
