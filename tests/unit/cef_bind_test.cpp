// Callbacks, and closures as tasks.

#include "include/base/cef_bind.h"

#include <gtest/gtest.h>

#include "include/wrapper/cef_closure_task.h"
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

TEST(CefTaskTest, TasksLetGoOfTheirReceiverWhenRunOrRefused) {
  FakeCef cef;
  Receiver* const receiver = new Receiver;
  const auto task = CefCreateClosureTask(base::Bind(&Receiver::Add, receiver, "a", 1));
  EXPECT_TRUE(CefPostTask(TID_UI, task));
  EXPECT_TRUE(CefPostDelayedTask(TID_UI, base::Bind(&Receiver::Add, receiver, "b", 2), 5));
  EXPECT_EQ(g_alive, 1);
  cef.RunTasks(TID_UI);
  // The first task still lives, but not what was bound to it.
  EXPECT_EQ(g_alive, 0);

  cef.acceptTasks = false;
  EXPECT_FALSE(CefPostTask(TID_UI, base::Bind(&Receiver::Add, new Receiver, "", 0)));
  EXPECT_EQ(g_alive, 0);
}

}  // namespace
