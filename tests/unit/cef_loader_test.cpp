// The function table, filled from a library.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>

#include "cef/wrapper/function_table.h"
#include "include/cef_api_hash.h"
#include "include/cef_app.h"
#include "include/cef_task.h"
#include "include/wrapper/cef_library_loader.h"

namespace {

// What `action` writes to standard error.
std::string Said(const std::function<void()>& action) {
  testing::internal::CaptureStderr();
  action();
  return testing::internal::GetCapturedStderr();
}

bool TableIsEmpty() {
#define CEF_FUNCTION(result, name, parameters) \
  if (CefFunctions().name) return false;
  CEF_FUNCTIONS(CEF_FUNCTION)
#undef CEF_FUNCTION
  return true;
}

class CefLoaderTest : public testing::Test {
 protected:
  ~CefLoaderTest() override { cef_unload_library(); }
};

TEST_F(CefLoaderTest, FillsTheWholeTableAndEmptiesIt) {
  ASSERT_EQ(cef_load_library(COMPLETE_FRAMEWORK), 1);
#define CEF_FUNCTION(result, name, parameters) EXPECT_NE(CefFunctions().name, nullptr) << #name;
  CEF_FUNCTIONS(CEF_FUNCTION)
#undef CEF_FUNCTION
  EXPECT_TRUE(CefCurrentlyOn(TID_UI));
  EXPECT_EQ(cef_unload_library(), 1);
  EXPECT_TRUE(TableIsEmpty());
  EXPECT_FALSE(CefCurrentlyOn(TID_UI));
}

TEST_F(CefLoaderTest, RefusesToStartAFrameworkOfAnotherVersion) {
  ASSERT_EQ(cef_load_library(COMPLETE_FRAMEWORK), 1);
  bool started = true;
  const auto start = [&] {
    started = CefInitialize(CefMainArgs(), CefSettings(), nullptr, nullptr);
  };
  setenv("FAKE_API_HASH", "other", 1);
  EXPECT_EQ(Said(start), "The CEF framework is of version other, not " CEF_API_HASH_PLATFORM "\n");
  EXPECT_FALSE(started);
  setenv("FAKE_API_HASH", CEF_API_HASH_PLATFORM, 1);
  EXPECT_EQ(Said(start), "");
  EXPECT_TRUE(started);
}

}  // namespace
