// What other programs of the product rely on: a release build, which has no staging folder, uses
// exactly these paths.

#include <gtest/gtest.h>

#include "libs/kxaccess/InstallPaths.h"

TEST(InstallPathsTest, ReleasePaths) {
  EXPECT_STREQ(InstallPaths::kRoot, "");
  EXPECT_STREQ(InstallPaths::kAppBundle, "/Applications/Corvane Secure.app");
  EXPECT_STREQ(InstallPaths::kResourceCatalog,
               L"/Applications/Corvane Secure.app/Contents/Resources/CorvaneResource_EN.txt");
  EXPECT_STREQ(InstallPaths::kAccessIni,
               L"/Applications/Corvane Secure.app/Contents/Plugins/VELD/access.ini");
  EXPECT_STREQ(InstallPaths::kBrandingFolder,
               L"/Library/Application Support/Corvane Secure/CorvaneBranding/");
  EXPECT_STREQ(InstallPaths::kFrameworkFolder,
               "/Library/Application Support/Corvane Secure/Chromium Embedded Framework.framework");
  EXPECT_STREQ(InstallPaths::kFrameworkLibrary,
               "/Library/Application Support/Corvane Secure/Chromium Embedded Framework.framework"
               "/Chromium Embedded Framework");
  EXPECT_STREQ(InstallPaths::kLogFolder, "/var/log/Corvane Secure/Logging");
  EXPECT_STREQ(InstallPaths::kLogFile, "/var/log/Corvane Secure/Logging/debuglog.log");
  EXPECT_STREQ(InstallPaths::kMachineLogPrefix, "/var/log/Corvane Secure/Logging/");
  EXPECT_STREQ(InstallPaths::kUserLogPrefix, "/Library/Logs/Corvane Secure/");
  EXPECT_STREQ(InstallPaths::kDataFolderUnderHome, "/Library/Application Support/Corvane Secure/");
}
