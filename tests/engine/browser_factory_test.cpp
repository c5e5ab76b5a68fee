// Orders for windows that come late or not at all.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <list>

#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/browser/BrowserFactory.h"

using engine::BrowserFactory;
using engine::MessageLoop;
using ::testing::ElementsAre;

namespace {

// The factories of these tests are never given up: the loop may hold tasks of theirs.
class BrowserFactoryTest : public ::testing::Test {
 protected:
  void SetUp() override { MessageLoop::Get().Init(); }

  // A way that fails at once, one that promises in vain, or one that brings a window.
  enum Way { kFails, kPromises, kOpens };
  BrowserFactory::Opener Opener(const std::string& name, Way way) {
    return [=](const std::string&, std::string* err) {
      tried_.push_back(name);
      *err = name + " failed";
      if (way == kOpens) {
        MessageLoop::Get().PostTask([this, order = factory_.Take()] {
          opened_.push_back(order.value().url);
          factory_.Finish();
          CountDown();
        });
      }
      return way != kFails;
    };
  }

  void CountDown() {
    if (--expected_ == 0) MessageLoop::Get().Quit();
  }

  void Run(std::vector<BrowserFactory::Opener> openers, const std::vector<std::string>& urls) {
    factory_.SetUp(std::move(openers), [this] { CountDown(); });
    expected_ = urls.size();
    for (const std::string& url : urls) factory_.Order({nullptr, nullptr, url});
    MessageLoop::Get().Run();
  }

  static inline std::list<BrowserFactory> factories_;
  BrowserFactory& factory_ = factories_.emplace_back();
  std::vector<std::string> tried_, opened_;
  size_t expected_ = 0;
};

TEST_F(BrowserFactoryTest, WaysAreTriedUntilOneBringsAWindow) {
  Run({Opener("a", kFails), Opener("b", kPromises), Opener("c", kOpens), Opener("d", kOpens)},
      {"one"});
  EXPECT_THAT(tried_, ElementsAre("a", "b", "c"));
  EXPECT_THAT(opened_, ElementsAre("one"));
}

// Three ways in vain took longer than whoever sends the signal waits.
TEST_F(BrowserFactoryTest, ASignalEndsTheSearch) {
  static bool arrived;
  for (const int64_t when : {0, 300}) {
    arrived = false;
    const auto former = std::signal(SIGTERM, [](int) { arrived = true; });
    MessageLoop::Get().PostDelayedTask([] { std::raise(SIGTERM); }, when);
    const auto begin = std::chrono::steady_clock::now();
    tried_.clear();
    Run({Opener("a", kPromises), Opener("b", kOpens)}, {"one"});
    std::signal(SIGTERM, former);
    EXPECT_TRUE(arrived);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(2500));
    EXPECT_THAT(tried_, ElementsAre("a"));
  }
}

}  // namespace
