// The function table, filled from a library.

#include <gtest/gtest.h>

#include <cstdlib>

#include "include/cef_api_hash.h"
#include "include/cef_app.h"
#include "include/cef_task.h"
#include "include/wrapper/cef_library_loader.h"

namespace {

TEST(CefLoaderTest, RefusesToStartAFrameworkOfAnotherVersion) {
  ASSERT_EQ(cef_load_library(COMPLETE_FRAMEWORK), 1);
  for (const bool other : {true, false}) {
    setenv("FAKE_API_HASH", other ? "other" : CEF_API_HASH_PLATFORM, 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(CefInitialize(CefMainArgs(), CefSettings(), nullptr, nullptr), !other);
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        other ? "The CEF framework is of version other, not " CEF_API_HASH_PLATFORM "\n" : "");
  }
  EXPECT_TRUE(CefCurrentlyOn(TID_UI));
  EXPECT_EQ(cef_unload_library(), 1);
  EXPECT_FALSE(CefCurrentlyOn(TID_UI));
}

}  // namespace
