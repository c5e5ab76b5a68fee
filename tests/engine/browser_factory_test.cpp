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

namespace {

// Factories are never given up: the loop may hold tasks of theirs.
BrowserFactory& NewFactory() {
  static std::list<BrowserFactory> factories;
  return factories.emplace_back();
}

class BrowserFactoryTest : public ::testing::Test {
 protected:
  void SetUp() override { MessageLoop::Get().Init(); }

  // A way that fails at once, one that promises in vain, and one that brings a window.
  BrowserFactory::Opener Fails(const std::string& name) {
    return [this, name](std::string* err) {
      tried_.push_back(name);
      *err = name + " failed";
      return false;
    };
  }
  BrowserFactory::Opener Promises(const std::string& name) {
    return [this, name](std::string*) {
      tried_.push_back(name);
      return true;
    };
  }
  BrowserFactory::Opener Opens(const std::string& name) {
    return [this, name](std::string*) {
      tried_.push_back(name);
      const auto order = factory_.Take();
      EXPECT_TRUE(order.has_value());
      MessageLoop::Get().PostTask([this, order] {
        opened_.push_back(order->url);
        factory_.Finish();
        if (opened_.size() + failures_ == expected_) MessageLoop::Get().Quit();
      });
      return true;
    };
  }

  void Run(std::vector<BrowserFactory::Opener> openers, const std::vector<std::string>& urls) {
    factory_.SetUp(std::move(openers), [this] {
      ++failures_;
      if (opened_.size() + failures_ == expected_) MessageLoop::Get().Quit();
    });
    expected_ = urls.size();
    for (const std::string& url : urls) factory_.Order({nullptr, nullptr, url});
    MessageLoop::Get().Run();
  }

  BrowserFactory& factory_ = NewFactory();
  std::vector<std::string> tried_;
  std::vector<std::string> opened_;
  size_t failures_ = 0;
  size_t expected_ = 0;
};

TEST_F(BrowserFactoryTest, WaysAreTriedUntilOneBringsAWindow) {
  Run({Fails("a"), Promises("b"), Opens("c"), Opens("d")}, {"one"});
  EXPECT_THAT(tried_, ElementsAre("a", "b", "c"));
  EXPECT_THAT(opened_, ElementsAre("one"));
}

TEST_F(BrowserFactoryTest, OrdersAreCarriedOutOneAfterTheOther) {
  Run({Opens("a")}, {"one", "two", "three"});
  EXPECT_THAT(opened_, ElementsAre("one", "two", "three"));
}

TEST_F(BrowserFactoryTest, WithoutAWindowTheOrderFailsAloud) {
  ::testing::internal::CaptureStderr();
  Run({Promises("a"), Fails("b")}, {"one"});
  EXPECT_THAT(::testing::internal::GetCapturedStderr(), HasSubstr("b failed"));
  EXPECT_EQ(failures_, 1u);
  EXPECT_FALSE(factory_.Take().has_value());
}

}  // namespace
