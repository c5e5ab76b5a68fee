#include "tools/doctor/Checks.h"

#include <string>

#include "tools/doctor/Within.h"

namespace doctor {

namespace {

using std::chrono::seconds;

// A folder on a server that is gone answers to nothing.
constexpr seconds kFileLimit{3};
constexpr seconds kDisplayLimit{4};
// The start of Chromium has its own limit, below this one.
constexpr seconds kChromiumLimit{18};

}  // namespace

const std::vector<Check>& AllChecks() {
  static const std::vector<Check> checks = {
      {"program", CheckProgram, kFileLimit},
      {"catalogs", CheckCatalogs, kFileLimit},
      {"catalog-encoding", CheckCatalogEncoding, kFileLimit},
      {"main-menu", CheckMenu, kFileLimit},
      {"framework", CheckFramework, kFileLimit},
      {"temporary-folder", CheckTemporaryFolder, kFileLimit},
      {"chromium", CheckChromium, kChromiumLimit},
      {"chromium-language", CheckChromiumLanguage, kFileLimit},
      {"display", CheckDisplay, kDisplayLimit},
      {"home", CheckHome, kFileLimit},
      {"data-folder", CheckDataFolder, kFileLimit},
      {"disk-space", CheckDiskSpace, kFileLimit},
      {"profile", CheckProfile, kFileLimit},
      {"profile-lock", CheckProfileLock, kFileLimit},
      {"other-sign-in", CheckOtherSignIn, kFileLimit},
      {"return-segment", CheckReturnSegment, kFileLimit},
      {"shared-memory-limit", CheckSharedMemoryLimit, kFileLimit},
      {"semaphore-limit", CheckSemaphoreLimit, kFileLimit},
      {"shared-memory-folder", CheckSharedMemoryFolder, kFileLimit},
      {"user-entry", CheckUserEntry, kFileLimit},
      {"log-folder", CheckLogFolder, kFileLimit},
      {"log-file", CheckLogFile, kFileLimit},
      {"log-lock", CheckLogLock, kFileLimit},
      {"log-control-block", CheckLogControlBlock, kFileLimit},
      {"developer-port", CheckDeveloperPort, kFileLimit},
      {"process-limits", CheckProcessLimits, kFileLimit},
  };
  return checks;
}

Finding Run(const Check& check) {
  if (const auto finding = Within(check.limit, check.look)) return *finding;
  return Failure(check.id, "no answer within " + std::to_string(check.limit.count()) + " seconds");
}

}  // namespace doctor
