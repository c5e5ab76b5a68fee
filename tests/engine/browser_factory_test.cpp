// Orders for windows that come late or not at all.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <list>

#include "cef/chromium/BrowserFactory.h"
#include "cef/chromium/MessageLoop.h"

using engine::BrowserFactory;
using engine::MessageLoop;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

// The factories of these tests are never given up: the loop may hold tasks of theirs.
class BrowserFactoryTest : public ::testing::Test {
 protected:
  void SetUp() override { MessageLoop::Get().Init(); }

  // A way that fails at once, one that promises in vain, or one that brings a window.
  enum Way { kFails, kPromises, kOpens };
  BrowserFactory::Opener Opener(const std::string& name, Way way) {
    return [=](std::string* err) {
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

TEST_F(BrowserFactoryTest, WithoutAWindowTheOrderFailsAloud) {
  ::testing::internal::CaptureStderr();
  Run({Opener("a", kPromises), Opener("b", kFails)}, {"one"});
  EXPECT_THAT(::testing::internal::GetCapturedStderr(), HasSubstr("b failed"));
  EXPECT_THAT(opened_, IsEmpty());
  EXPECT_FALSE(factory_.Take().has_value());
}

}  // namespace
