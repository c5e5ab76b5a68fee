#import <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <thread>
#include <vector>

#include "cef/chromium/base/MessageLoop.h"
#include "platform/Display.h"
#include "tests/window/WindowTest.h"

namespace {

using engine::MessageLoop;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

std::vector<int> g_signals;
void RememberSignal(int number) { g_signals.push_back(number); }

void Install(int number, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  ASSERT_EQ(sigaction(number, &action, nullptr), 0);
}

MessageLoop& Loop() { return MessageLoop::Get(); }

// Runs the loop until something quits it; after 20 seconds the whole program ends instead.
void RunBounded() {
  alarm(20);
  Loop().Run();
  alarm(0);
}

void QuitAfter(int64_t ms) {
  Loop().PostDelayedTask([] { Loop().Quit(); }, ms);
}

TEST(MessageLoopBeforeInit, RefusesTasks) {
  EXPECT_FALSE(Loop().PostTask([] {}));
  EXPECT_FALSE(Loop().PostDelayedTask([] {}, 0));
  EXPECT_FALSE(Loop().OnUiThread());
  Loop().Run();
}

// The same behaviour is asked for without a display and without any application object.
class MessageLoopTest : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    if (GetParam()) {
      StartTestApplication();
      ASSERT_TRUE(HaveDisplay());
    } else if (NSApp != nil) {
      GTEST_SKIP() << "an earlier test of this process has made the application object";
    }
    Loop().Init();
    g_signals.clear();
  }
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
};
INSTANTIATE_TEST_SUITE_P(Loop, MessageLoopTest, testing::Values(false, true),
                         [](const auto& info) { return info.param ? "Display" : "NoDisplay"; });

TEST_P(MessageLoopTest, RunsTasksOfEveryThreadInTheirOrderOnTheUiThread) {
  constexpr int kThreads = 4, kTasks = 250;
  std::vector<int> seen[kThreads];
  int left = kThreads * kTasks;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      EXPECT_FALSE(Loop().OnUiThread());
      Loop().Run();
      for (int i = 0; i < kTasks; ++i) {
        Loop().PostTask([&, t, i] {
          EXPECT_TRUE(Loop().OnUiThread());
          seen[t].push_back(i);
          if (--left == 0) Loop().Quit();
        });
      }
    });
  }
  RunBounded();
  for (std::thread& thread : threads) thread.join();
  for (const auto& numbers : seen) {
    ASSERT_EQ(numbers.size(), size_t{kTasks});
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
  }
}

TEST_P(MessageLoopTest, RunsDelayedTasksWhenDueInOrder) {
  const auto start = steady_clock::now();
  std::vector<int> order;
  const struct { int number, delay; } tasks[] = {{4, 120}, {2, 40}, {3, 40}, {1, 0}};
  for (const auto& task : tasks) {
    Loop().PostDelayedTask(
        [&] {
          order.push_back(task.number);
          EXPECT_GE(steady_clock::now() - start, milliseconds(task.delay));
          if (task.number == 4) Loop().Quit();
        },
        task.delay);
  }
  RunBounded();
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
  EXPECT_LT(steady_clock::now() - start, milliseconds(2000));
}

TEST_P(MessageLoopTest, QuitsWhenIdleAndRunsAgain) {
  std::vector<int> order;
  Loop().Quit();
  bool late_ran = false;
  Loop().PostTask([&] {
    Loop().Quit();
    Loop().Run();
    order.push_back(1);
    Loop().PostTask([&] {
      order.push_back(3);
      Loop().PostTask([&] { order.push_back(4); });
    });
  });
  Loop().PostTask([&] { order.push_back(2); });
  Loop().PostDelayedTask([&] { late_ran = true; }, 300);
  RunBounded();
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
  EXPECT_FALSE(late_ran);

  QuitAfter(400);
  RunBounded();
  EXPECT_TRUE(late_ran);
}

TEST_P(MessageLoopTest, GoesOnAfterAnException) {
  Loop().PostTask([] { [NSException raise:@"Test" format:@"from a task"]; });
  Loop().PostTask([] { @throw @"a text"; });
  Loop().PostTask([] { Loop().Quit(); });
  testing::internal::CaptureStderr();
  RunBounded();
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_NE(log.find("from a task"), std::string::npos) << log;
  EXPECT_NE(log.find("a text"), std::string::npos) << log;
}

TEST_P(MessageLoopTest, HandsSignalsToTheInstalledHandlerBetweenTasks) {
  Install(SIGHUP, RememberSignal);
  Install(SIGTERM, [](int number) {
    RememberSignal(number);
    Loop().Quit();
  });
  Install(SIGINT, RememberSignal);
  kill(getpid(), SIGHUP);
  Loop().PostTask([] {
    const auto before = g_signals;
    kill(getpid(), SIGINT);
    EXPECT_EQ(g_signals, before) << "handed over inside a task";
  });
  Loop().PostTask([] { EXPECT_EQ(g_signals, (std::vector<int>{SIGHUP, SIGINT})); });
  // From outside, while the loop is idle.
  std::thread outside([] {
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    EXPECT_TRUE(sigismember(&blocked, SIGTERM));
    std::this_thread::sleep_for(milliseconds(50));
    kill(getpid(), SIGTERM);
  });
  RunBounded();
  outside.join();
  EXPECT_EQ(g_signals, (std::vector<int>{SIGHUP, SIGINT, SIGTERM}));
}

TEST_P(MessageLoopTest, FollowsIgnoredAndDefaultActions) {
  signal(SIGINT, SIG_IGN);
  kill(getpid(), SIGINT);
  QuitAfter(20);
  RunBounded();

  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_EXIT(
      {
        Loop().Init();
        Loop().PostTask([] { kill(getpid(), SIGTERM); });
        RunBounded();
      },
      testing::KilledBySignal(SIGTERM), "");
}

TEST_P(MessageLoopTest, CostsNothingWhenIdle) {
  QuitAfter(0);
  RunBounded();
  const clock_t before = clock();
  QuitAfter(2000);
  RunBounded();
  EXPECT_LT(clock() - before, CLOCKS_PER_SEC / 25) << "CPU time in 2 seconds";
}

}  // namespace
