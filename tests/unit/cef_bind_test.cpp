// Callbacks, closures as tasks, and what is deleted on a thread of its own.

#include "include/base/cef_bind.h"

#include <gtest/gtest.h>

#include <thread>

#include "include/wrapper/cef_closure_task.h"
#include "include/wrapper/cef_helpers.h"
#include "tests/support/FakeCef.h"

namespace {

int g_alive = 0;

struct Counted {
  Counted() { ++g_alive; }
  ~Counted() { --g_alive; }
};

class Receiver : public CefBaseRefCounted, Counted {
 public:
  void Add(const std::string& text, int number) { got += text + std::to_string(number); }
  std::string Get(std::string first, const char* last) const { return first + got + last; }
  void Drop(base::Closure* callback) {
    callback->Reset();
    EXPECT_EQ(g_alive, 1);
  }

  std::string got;

  IMPLEMENT_REFCOUNTING(Receiver);
};

TEST(CefBindTest, KeepsCopiesOfWhatWasBound) {
  const CefRefPtr<Receiver> receiver = new Receiver;
  char text[] = "a";
  const auto get = base::Bind(&Receiver::Get, base::Unretained(receiver.get()), std::string(text));
  EXPECT_TRUE(receiver->HasOneRef());
  text[0] = 'x';
  base::Bind(&Receiver::Add, receiver, "b", 1).Run();
  EXPECT_EQ(get.Run("c"), "ab1c");
}

TEST(CefBindTest, ACallbackMayBeResetWhileItRuns) {
  base::Closure callback;
  callback = base::Bind(&Receiver::Drop, new Receiver, &callback);
  callback.Run();
  EXPECT_TRUE(callback.is_null());
  EXPECT_EQ(g_alive, 0);
}

TEST(CefBindTest, CountsReferencesOfSeveralThreads) {
  base::Closure closure = base::Bind(&Receiver::Add, new Receiver, "", 0);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([closure] {
      for (int n = 0; n < 20000; ++n) base::Closure(closure).Equals(closure);
    });
  }
  for (std::thread& thread : threads) thread.join();
  threads.clear();
  EXPECT_EQ(g_alive, 1);
  closure.Reset();
  EXPECT_EQ(g_alive, 0);
}

TEST(CefTaskTest, TasksLetGoOfTheirReceiverWhenRunOrRefused) {
  FakeCef cef;
  Receiver* const receiver = new Receiver;
  const auto task = CefCreateClosureTask(base::Bind(&Receiver::Add, receiver, "a", 1));
  EXPECT_TRUE(CefPostTask(TID_UI, task));
  EXPECT_TRUE(CefPostDelayedTask(TID_UI, base::Bind(&Receiver::Add, receiver, "b", 2), 5));
  EXPECT_EQ(cef.RunTasks(TID_UI, 1), 1u);
  EXPECT_EQ(receiver->got, "a1");
  EXPECT_EQ(cef.RunTasks(TID_UI), 1u);
  // The first task still lives, but not what was bound to it.
  EXPECT_EQ(g_alive, 0);

  cef.acceptTasks = false;
  EXPECT_FALSE(CefPostTask(TID_UI, base::Bind(&Receiver::Add, new Receiver, "", 0)));
  EXPECT_EQ(g_alive, 0);
}

class Probe : public base::RefCountedThreadSafe<Probe, CefDeleteOnIOThread>, Counted {};

TEST(CefDeleteOnThreadTest, DeletesOnItsThreadOrNotAtAll) {
  FakeCef cef;
  CefRefPtr<Probe> probe = new Probe;
  probe = nullptr;
  EXPECT_EQ(g_alive, 1);
  EXPECT_EQ(cef.RunTasks(TID_IO), 1u);
  EXPECT_EQ(g_alive, 0);

  cef.currentThread = TID_IO;
  probe = new Probe;
  probe = nullptr;
  EXPECT_EQ(g_alive, 0);

  cef.currentThread = TID_UI;
  cef.acceptTasks = false;
  static Probe* left_alone = nullptr;
  probe = left_alone = new Probe;
  probe = nullptr;
  EXPECT_EQ(g_alive, 1);
}

}  // namespace
