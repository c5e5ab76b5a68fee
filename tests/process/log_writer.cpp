// A process that logs. log_writer COUNT: writes COUNT numbered records, and exits with 0 when all
// were written, 1 when some were not, 2 when the process cannot join the log, tried twice, and 4
// when one took too long. log_writer COUNT ACKS NAME: the same, but goes on where a writer with the
// same ACKS was killed, and notes there what it has written. log_writer hold: takes the log lock,
// says so on standard output, and waits to be killed. Whatever happens, it ends within half a
// minute, with ACKS five.

#include <fcntl.h>
#include <pwd.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>

#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"
#include "tests/process/Acks.h"

// Takes the place of the system's: users of a test have no home, and some no entry.
extern "C" passwd* getpwuid(uid_t) {
  static char name[] = "somebody", home[] = "/nonexistent";
  static passwd user = {};
  user.pw_name = name;
  user.pw_dir = home;
  return &user;
}

int main(int argc, char** argv) {
  constexpr std::chrono::seconds kTooLong(4);
  alarm(argc == 4 ? 300 : 30);
  if (argc != 2 && argc != 4) return 3;
  Acks own = {};
  Acks* acks = &own;
  if (argc == 4) {
    const int file = open(argv[2], O_RDWR);
    void* mapped = mmap(nullptr, sizeof(Acks), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (mapped == MAP_FAILED) return 3;
    acks = static_cast<Acks*>(mapped);
  }
  if (KXLogInitialize() != 1) return KXLogInitialize() == 1 ? 3 : 2;
  if (strcmp(argv[1], "hold") == 0) {
    if (!LogLock() || write(STDOUT_FILENO, "held\n", 5) != 5) return 2;
    pause();
  }
  const int count = std::min(atoi(argv[1]), Acks::kMost);
  bool lost = false, slow = false;
  while (acks->begun < count) {
    const int i = ++acks->begun;
    const auto begin = std::chrono::steady_clock::now();
    const int written = _KXLogEntryNew(3, __FILE__, __LINE__, "T", "%*s of %s number %d",
                                       i * 37 % 400, "", argc == 4 ? argv[3] : "none", i);
    slow |= std::chrono::steady_clock::now() - begin > kTooLong;
    acks->written[i] = written != 0;
    lost |= written == 0;
  }
  return slow ? 4 : lost ? 1 : 0;
}
