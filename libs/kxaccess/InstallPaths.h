// Where the product is installed: the one place that holds its absolute paths.
//
// EB_INSTALL_ROOT is empty in release and package builds. Development builds stage every path below
// a folder of the build, so that they need no write access elsewhere. It is fixed at compile time
// on purpose: an environment variable that redirects where a helper loads its browser from would be
// a hole.

#ifndef LIBS_KXACCESS_INSTALLPATHS_H_
#define LIBS_KXACCESS_INSTALLPATHS_H_

#ifndef EB_INSTALL_ROOT
#define EB_INSTALL_ROOT ""
#endif

#define EB_APP_BUNDLE_PATH EB_INSTALL_ROOT "/Applications/Corvane Secure.app"
#define EB_SUPPORT_PATH EB_INSTALL_ROOT "/Library/Application Support/Corvane Secure"
#define EB_LOG_FOLDER_PATH EB_INSTALL_ROOT "/var/log/Corvane Secure/Logging"

namespace InstallPaths {

// The prefix itself; empty in a release build.
inline constexpr char kRoot[] = EB_INSTALL_ROOT;

// The VPN client's application bundle and what this program reads from it.
inline constexpr char kAppBundle[] = EB_APP_BUNDLE_PATH;
inline constexpr wchar_t kResourceCatalog[] =
    L"" EB_APP_BUNDLE_PATH L"/Contents/Resources/CorvaneResource_EN.txt";
inline constexpr wchar_t kAccessIni[] = L"" EB_APP_BUNDLE_PATH L"/Contents/Plugins/VELD/access.ini";

// Branding overrides of the catalogs; ends in a slash.
inline constexpr wchar_t kBrandingFolder[] = L"" EB_SUPPORT_PATH L"/CorvaneBranding/";

// The browser framework: its folder, and the library inside it.
inline constexpr char kFrameworkFolder[] = EB_SUPPORT_PATH "/Chromium Embedded Framework.framework";
inline constexpr char kFrameworkLibrary[] =
    EB_SUPPORT_PATH "/Chromium Embedded Framework.framework/Chromium Embedded Framework";

// Machine-wide logging.
inline constexpr char kLogFolder[] = EB_LOG_FOLDER_PATH;
inline constexpr char kLogFile[] = EB_LOG_FOLDER_PATH "/debuglog.log";
inline constexpr char kMachineLogPrefix[] = EB_LOG_FOLDER_PATH "/";
inline constexpr char kUserLogPrefix[] = EB_INSTALL_ROOT "/Library/Logs/Corvane Secure/";

// The user's data folder, below HOME; begins and ends with a slash.
inline constexpr char kDataFolderUnderHome[] = "/Library/Application Support/Corvane Secure/";

}  // namespace InstallPaths

#endif  // LIBS_KXACCESS_INSTALLPATHS_H_
