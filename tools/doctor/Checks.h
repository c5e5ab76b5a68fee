// Everything that a run of the program needs, one look each.
//
// A look changes nothing: it makes no folder, takes nobody's lock away and leaves nothing behind.

#ifndef TOOLS_DOCTOR_CHECKS_H_
#define TOOLS_DOCTOR_CHECKS_H_

#include <chrono>
#include <vector>

#include "tools/doctor/Finding.h"

namespace doctor {

struct Check {
  // In the list of problems. A look may find a more special problem than the one it is named after.
  const char* id;
  Finding (*look)();
  std::chrono::seconds limit;
};

// In the order in which they are made: what others need comes first.
const std::vector<Check>& AllChecks();

// Runs the look on a thread of its own; one that gives no answer within its limit counts as a
// failure and is left behind until the process ends.
Finding Run(const Check& check);

// The looks, by the file that holds them.

// InstallationChecks.cpp
Finding CheckProgram();
Finding CheckMenu();
Finding CheckFramework();
// CatalogChecks.cpp
Finding CheckCatalogs();
Finding CheckCatalogEncoding();
// ChromiumCheck.cpp
Finding CheckChromium();
// LanguageCheck.cpp
Finding CheckChromiumLanguage();
// DisplayCheck.cpp
Finding CheckDisplay();
// FolderChecks.cpp
Finding CheckHome();
Finding CheckDataFolder();
Finding CheckDiskSpace();
Finding CheckTemporaryFolder();
// ProfileChecks.cpp
Finding CheckProfile();
Finding CheckProfileLock();
Finding CheckOtherSignIn();
// LogChecks.cpp
Finding CheckUserEntry();
Finding CheckLogFolder();
Finding CheckLogFile();
Finding CheckLogLock();
Finding CheckLogControlBlock();
// ShareChecks.cpp
Finding CheckReturnSegment();
Finding CheckSharedMemoryLimit();
Finding CheckSemaphoreLimit();
Finding CheckSharedMemoryFolder();
// LimitChecks.cpp
Finding CheckDeveloperPort();
Finding CheckProcessLimits();

}  // namespace doctor

#endif  // TOOLS_DOCTOR_CHECKS_H_
