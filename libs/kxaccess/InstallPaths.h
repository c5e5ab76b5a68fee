// Where the product is installed: the one place that names its absolute paths.
//
// The paths are link-time constants. A release or package build has them as they stand in
// InstallPaths.cpp; a development build stages every one of them below a folder of the build
// (EB_INSTALL_ROOT), so that it needs no write access elsewhere. They are fixed when the program is
// built on purpose: an environment variable that redirects where a helper loads its browser from
// would be a hole. All texts are UTF-8 or UTF-32 and may be used before main().

#ifndef LIBS_KXACCESS_INSTALLPATHS_H_
#define LIBS_KXACCESS_INSTALLPATHS_H_

namespace InstallPaths {

// The staging folder itself; empty in a release build.
extern const char kRoot[];

// The VPN client's application bundle and what this program reads from it.
extern const char kAppBundle[];
extern const wchar_t kResourceCatalog[];
extern const wchar_t kAccessIni[];

// Branding overrides of the catalogs; ends in a slash.
extern const wchar_t kBrandingFolder[];

// The framework: its folder, and the library inside it.
extern const char kFrameworkFolder[];
extern const char kFrameworkLibrary[];

// Machine-wide logging; the prefixes end in a slash.
extern const char kLogFolder[];
extern const char kLogFile[];
extern const char kMachineLogPrefix[];
extern const char kUserLogPrefix[];

// The user's data folder, below HOME; begins and ends with a slash. Never staged.
extern const char kDataFolderUnderHome[];

}  // namespace InstallPaths

#endif  // LIBS_KXACCESS_INSTALLPATHS_H_
