#include "libs/kxaccess/InstallPaths.h"

#ifndef EB_INSTALL_ROOT
#define EB_INSTALL_ROOT ""
#endif

#define APP_BUNDLE EB_INSTALL_ROOT "/Applications/Corvane Secure.app"
#define SUPPORT_FOLDER EB_INSTALL_ROOT "/Library/Application Support/Corvane Secure"
#define FRAMEWORK_FOLDER SUPPORT_FOLDER "/Chromium Embedded Framework.framework"
#define LOG_FOLDER EB_INSTALL_ROOT "/var/log/Corvane Secure/Logging"

namespace InstallPaths {

const char kRoot[] = EB_INSTALL_ROOT;
const char kAppBundle[] = APP_BUNDLE;
const wchar_t kResourceCatalog[] = L"" APP_BUNDLE L"/Contents/Resources/CorvaneResource_EN.txt";
const wchar_t kAccessIni[] = L"" APP_BUNDLE L"/Contents/Plugins/VELD/access.ini";
const wchar_t kBrandingFolder[] = L"" SUPPORT_FOLDER L"/CorvaneBranding/";
const char kFrameworkFolder[] = FRAMEWORK_FOLDER;
const char kFrameworkLibrary[] = FRAMEWORK_FOLDER "/Chromium Embedded Framework";
const char kLogFolder[] = LOG_FOLDER;
const char kLogFile[] = LOG_FOLDER "/debuglog.log";
const char kMachineLogPrefix[] = LOG_FOLDER "/";
const char kUserLogPrefix[] = EB_INSTALL_ROOT "/Library/Logs/Corvane Secure/";
const char kDataFolderUnderHome[] = "/Library/Application Support/Corvane Secure/";

}  // namespace InstallPaths
