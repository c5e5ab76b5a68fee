// A clean staging folder and control block for a test of the logging library, removed afterwards.
// For programs that link kxlogStaged.

#ifndef TESTS_SUPPORT_LOGAREA_H_
#define TESTS_SUPPORT_LOGAREA_H_

#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/sem.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"
#include "tests/support/TempDir.h"

class LogArea {
 public:
  LogArea() { Clear(); }
  ~LogArea() { Clear(); }
  LogArea(const LogArea&) = delete;
  LogArea& operator=(const LogArea&) = delete;

  // As the log file holds them, each with its CR LF.
  static std::vector<std::string> Lines(const std::string& path = InstallPaths::kLogFile) {
    std::vector<std::string> lines;
    std::istringstream in(ReadFile(path));
    for (std::string line; std::getline(in, line);) lines.push_back(line + "\n");
    return lines;
  }

 private:
  static void Clear() {
    KXLogCleanup();
    if (g_hLogFile != nullptr) fclose(g_hLogFile);
    g_hLogFile = nullptr;
    semid = 0;
    TraceLevelUpdateCount = 0;
    CurrentTraceLevel = 3;
    CurrentLogMode = 0;
    unsetenv("VELD_LOG_NAME");
    for (const bool global : {true, false}) shm_unlink(ControlBlockName(global).c_str());
    for (const char* folder :
         {LogGlobalShareLockName, static_cast<const char*>(s_LogSessionShareLockName)}) {
      const key_t key = ftok(folder, 1);
      const int lock = key == -1 ? -1 : semget(key, 0, 0);
      if (lock >= 0) semctl(lock, 0, IPC_RMID);
    }
    std::filesystem::remove_all(InstallPaths::kRoot);
  }
};

#endif  // TESTS_SUPPORT_LOGAREA_H_
