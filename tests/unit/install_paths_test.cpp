// A release build, which has no staging folder, uses exactly these paths. The others no test could
// do without.

#include <gtest/gtest.h>

#include "libs/kxaccess/InstallPaths.h"

TEST(InstallPathsTest, ReleasePaths) {
  EXPECT_STREQ(InstallPaths::kRoot, "");
  EXPECT_STREQ(InstallPaths::kAppBundle, "/Applications/Corvane Secure.app");
  EXPECT_STREQ(InstallPaths::kBrandingFolder,
               L"/Library/Application Support/Corvane Secure/CorvaneBranding/");
  EXPECT_STREQ(InstallPaths::kLogFile, "/var/log/Corvane Secure/Logging/debuglog.log");
  EXPECT_STREQ(InstallPaths::kMachineLogPrefix, "/var/log/Corvane Secure/Logging/");
  EXPECT_STREQ(InstallPaths::kUserLogPrefix, "/Library/Logs/Corvane Secure/");
}
