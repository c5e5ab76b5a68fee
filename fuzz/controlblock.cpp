// The log's control block, which every user of the machine can write to: its head, then the path,
// in which "@" stands for the log folder of this build.

#include <strings.h>

#include <cstring>

#include "fuzz/Fuzz.h"
#include "tests/support/LogArea.h"

static bool LiesIn(const std::string& path, const std::string& folder) {
  return strncasecmp(path.c_str(), folder.c_str(), folder.size()) == 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const LogArea area;
  if (!bLogInitialized) Require(KXLogInitialize() == 1);
  LogControlBlock block = {};
  constexpr size_t kHead = offsetof(LogControlBlock, reserved_head);
  memcpy(&block, data, std::min(size, kHead));
  std::string path = Text(data + std::min(size, kHead), size - std::min(size, kHead));
  if (path[0] == '@') path.replace(0, 1, InstallPaths::kMachineLogPrefix);
  memcpy(block.path, path.data(), std::min(path.size(), sizeof block.path));
  memcpy(pShareMemory, &block, sizeof block);
  for (const int level : {1, 4}) {
    if (KXLogShouldLog(level)) _KXLogEntryNew(level, "fuzz", 1, "F", "%s", "record");
    if (g_hLogFile == nullptr) continue;
    // Where the open file really is, whatever its path in the block says.
    const std::string link = "/proc/self/fd/" + std::to_string(fileno(g_hLogFile));
    const std::string place = std::filesystem::read_symlink(link);
    Require(LiesIn(place, InstallPaths::kMachineLogPrefix) ||
            LiesIn(place, InstallPaths::kUserLogPrefix));
  }
  Require(LogLock());
  LogUnlock();
  if (g_hLogFile != nullptr) fclose(g_hLogFile);
  g_hLogFile = nullptr;
  for (const auto& entry : std::filesystem::directory_iterator(InstallPaths::kLogFolder)) {
    std::filesystem::remove(entry.path());
  }
  return 0;
}
