// Callbacks, closures as tasks, and what is deleted on a thread of its own.

#include "include/base/cef_bind.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "include/wrapper/cef_closure_task.h"
#include "include/wrapper/cef_resource_manager.h"
#include "testing/support/FakeCef.h"

namespace {

class Receiver : public CefBaseRefCounted {
 public:
  explicit Receiver(bool* deleted) : deleted_(deleted) {}
  ~Receiver() override { *deleted_ = true; }

  void Add(const std::string& text, int number) { got += text + std::to_string(number); }
  std::string Get() const { return got; }
  void Drop(base::Closure* callback) {
    callback->Reset();
    got = "still here";
    EXPECT_FALSE(*deleted_);
  }
  virtual int Twice(int number) { return 2 * number; }

  std::string got;

 private:
  bool* const deleted_;

  IMPLEMENT_REFCOUNTING(Receiver);
};

class Derived : public Receiver {
 public:
  using Receiver::Receiver;
  int Twice(int number) override { return -2 * number; }
};

int Subtract(int a, int b) { return a - b; }

std::string Join(const std::string& a, std::string b, const char* c) { return a + b + c; }

TEST(CefBindTest, BindsFirstArgumentsOfFunctionsMethodsAndCallbacks) {
  EXPECT_EQ(base::Bind(&Subtract).Run(5, 3), 2);
  EXPECT_EQ(base::Bind(Subtract, 5).Run(3), 2);
  const base::Callback<int()> bound = base::Bind(&Subtract, 5, 3);
  EXPECT_EQ(bound.Run(), 2);
  EXPECT_EQ(base::Bind(base::Bind(&Subtract, 9), 3).Run(), 6);

  char text[] = "b";
  const base::Callback<std::string(const char*)> join = base::Bind(&Join, "a", std::string(text));
  text[0] = 'x';
  EXPECT_EQ(join.Run("c"), "abc");

  bool deleted = false;
  const CefRefPtr<Derived> derived = new Derived(&deleted);
  EXPECT_EQ(base::Bind(&Receiver::Twice, derived).Run(4), -8);
  EXPECT_EQ(base::Bind(&Receiver::Twice).Run(derived.get(), 4), -8);
  derived->got = "state";
  EXPECT_EQ(base::Bind(&Receiver::Get, derived.get()).Run(), "state");
}

TEST(CefBindTest, HoldsTheReceiverAsLongAsACopyLives) {
  bool deleted = false;
  Receiver* const receiver = new Receiver(&deleted);
  {
    base::Closure copy;
    EXPECT_TRUE(copy.is_null());
    {
      const base::Closure closure = base::Bind(&Receiver::Add, receiver, "n", 1);
      EXPECT_TRUE(receiver->HasOneRef());
      copy = closure;
      EXPECT_TRUE(copy.Equals(closure));
      EXPECT_FALSE(copy.Equals(base::Bind(&Receiver::Add, receiver, "n", 1)));
    }
    copy.Run();
    copy.Run();
    EXPECT_EQ(receiver->got, "n1n1");
    EXPECT_FALSE(deleted);
  }
  EXPECT_TRUE(deleted);
}

TEST(CefBindTest, UnretainedReceiversAreNotHeld) {
  struct Plain {
    void Set() { set = true; }
    bool set = false;
  } plain;
  base::Bind(&Plain::Set, base::Unretained(&plain)).Run();
  EXPECT_TRUE(plain.set);

  bool deleted = false;
  CefRefPtr<Receiver> receiver = new Receiver(&deleted);
  const base::Callback<std::string()> callback =
      base::Bind(&Receiver::Get, base::Unretained(receiver.get()));
  EXPECT_TRUE(receiver->HasOneRef());
  receiver = nullptr;
  EXPECT_TRUE(deleted);
}

TEST(CefBindTest, ACallbackMayBeResetWhileItRuns) {
  bool deleted = false;
  base::Closure callback;
  callback = base::Bind(&Receiver::Drop, new Receiver(&deleted), &callback);
  callback.Run();
  EXPECT_TRUE(callback.is_null());
  EXPECT_TRUE(deleted);
}

TEST(CefBindTest, CountsReferencesOfSeveralThreads) {
  bool deleted = false;
  base::Closure closure = base::Bind(&Receiver::Add, new Receiver(&deleted), "", 0);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([closure] {
      for (int n = 0; n < 20000; ++n) base::Closure(closure).Equals(closure);
    });
  }
  for (std::thread& thread : threads) thread.join();
  threads.clear();
  EXPECT_FALSE(deleted);
  closure.Reset();
  EXPECT_TRUE(deleted);
}

TEST(CefTaskTest, PostedClosuresRunInOrderAndLetGoOfTheirReceiver) {
  FakeCef cef;
  bool deleted = false;
  Receiver* const receiver = new Receiver(&deleted);
  const CefRefPtr<CefTask> task =
      CefCreateClosureTask(base::Bind(&Receiver::Add, receiver, "a", 1));
  EXPECT_TRUE(CefPostTask(TID_UI, task));
  EXPECT_TRUE(CefPostDelayedTask(TID_UI, base::Bind(&Receiver::Add, receiver, "b", 2), 5));
  EXPECT_EQ(receiver->got, "");
  EXPECT_EQ(cef.RunTasks(TID_UI, 1), 1u);
  EXPECT_EQ(receiver->got, "a1");
  EXPECT_EQ(cef.RunTasks(TID_IO), 0u);
  EXPECT_FALSE(deleted);
  EXPECT_EQ(cef.RunTasks(TID_UI), 1u);
  // The first task still lives, but not what was bound to it.
  EXPECT_TRUE(deleted);
  EXPECT_EQ(cef.Trace(), (std::vector<std::string>{"PostTask(UI)", "PostTask(UI)"}));
}

TEST(CefTaskTest, RefusedTasksAreDropped) {
  FakeCef cef;
  cef.acceptTasks = false;
  bool deleted = false;
  EXPECT_FALSE(CefPostTask(TID_UI, base::Bind(&Receiver::Add, new Receiver(&deleted), "", 0)));
  EXPECT_TRUE(deleted);
  EXPECT_FALSE(CefPostTask(TID_UI, CefRefPtr<CefTask>()));
  EXPECT_EQ(cef.Trace().size(), 1u);
}

int g_probes = 0;

class Probe : public base::RefCountedThreadSafe<Probe, CefDeleteOnIOThread> {
 public:
  Probe() { ++g_probes; }

 private:
  friend struct CefDeleteOnThread<TID_IO>;
  ~Probe() { --g_probes; }
};

TEST(CefDeleteOnThreadTest, DeletesOnItsThreadOrNotAtAll) {
  FakeCef cef;
  CefRefPtr<Probe> probe = new Probe;
  probe = nullptr;
  EXPECT_EQ(g_probes, 1);
  EXPECT_EQ(cef.RunTasks(TID_IO), 1u);
  EXPECT_EQ(g_probes, 0);

  cef.currentThread = TID_IO;
  probe = new Probe;
  probe = nullptr;
  EXPECT_EQ(g_probes, 0);
  EXPECT_EQ(cef.QueuedTasks(TID_IO), 0u);

  cef.currentThread = TID_UI;
  cef.acceptTasks = false;
  static Probe* left_alone = nullptr;
  probe = left_alone = new Probe;
  probe = nullptr;
  EXPECT_EQ(g_probes, 1);
}

TEST(CefResourceManagerTest, LeavesEveryRequestToTheNetwork) {
  FakeCef cef;
  CefRefPtr<CefResourceManager> manager = new CefResourceManager;
  cef.currentThread = TID_IO;
  const CefRefPtr<FakeBrowser> browser = cef.MakeBrowser(nullptr);
  const CefRefPtr<CefRequest> request = new FakeRequest("https://a.example/");
  EXPECT_EQ(manager->OnBeforeResourceLoad(browser.get(), browser->GetMainFrame(), request,
                                          new FakeRequestCallback),
            RV_CONTINUE);
  EXPECT_EQ(manager->GetResourceHandler(browser.get(), browser->GetMainFrame(), request).get(),
            nullptr);
  EXPECT_TRUE(cef.Trace().empty());
}

}  // namespace
