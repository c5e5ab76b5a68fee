// The function table: loading it from a library, and calling through it when it is empty. This
// program has an install prefix of its own, so that the loader's fixed path is a file of the test.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include "cef/wrapper/function_table.h"
#include "include/base/cef_bind.h"
#include "include/cef_api_hash.h"
#include "include/wrapper/cef_closure_task.h"
#include "include/wrapper/cef_library_loader.h"
#include "libs/kxaccess/InstallPaths.h"
#include "tests/support/TempDir.h"

namespace {

namespace fs = std::filesystem;

const char kAlreadyOpen[] = "g_libcef_handle not null in cef_load_library\n";
const char kIncomplete[] = "libcef_init_pointers failed \n";
const char kFailed[] = "Failed to load the CEF framework.\n";

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
  CefLoaderTest() { fs::remove_all(InstallPaths::kFrameworkFolder); }
  ~CefLoaderTest() override {
    cef_unload_library();
    fs::remove_all(InstallPaths::kFrameworkFolder);
  }

  static void Install(const char* library) {
    fs::create_directories(InstallPaths::kFrameworkFolder);
    fs::copy_file(library, InstallPaths::kFrameworkLibrary);
  }

  const TempDir folder_;
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

TEST_F(CefLoaderTest, LoadInMainReportsAFailureAndMayBeRepeated) {
  {
    CefScopedLibraryLoader loader;
    bool loaded = true;
    const auto load = [&] { loaded = loader.LoadInMain(); };
    const std::string missing = Said(load);
    EXPECT_FALSE(loaded);
    EXPECT_EQ(missing.substr(missing.find('\n') + 1), kFailed);

    // One function is missing: nothing of that library is kept.
    Install(INCOMPLETE_FRAMEWORK);
    EXPECT_EQ(Said(load), std::string(kIncomplete) + kFailed);
    EXPECT_FALSE(loaded);
    EXPECT_TRUE(TableIsEmpty());

    fs::remove(InstallPaths::kFrameworkLibrary);
    Install(COMPLETE_FRAMEWORK);
    EXPECT_EQ(Said(load), "");
    EXPECT_TRUE(loaded);
    EXPECT_EQ(Said(load), "");
    CefScopedLibraryLoader another;
    EXPECT_EQ(Said([&] { EXPECT_TRUE(another.LoadInMain()); }), kAlreadyOpen);
  }
  EXPECT_TRUE(TableIsEmpty());
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
