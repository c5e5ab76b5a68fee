// A process that logs. log_writer COUNT: writes COUNT numbered records, and exits with 0 when all
// were written, 1 when some were not, 2 when the process cannot join the log, tried twice.
// log_writer hold: takes the log lock, says so on standard output, and waits to be killed. Whatever
// happens, it ends within half a minute.

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"

// Takes the place of the system's: users of a test have no home, and some no entry.
extern "C" passwd* getpwuid(uid_t) {
  static char name[] = "somebody", home[] = "/nonexistent";
  static passwd user = {};
  user.pw_name = name;
  user.pw_dir = home;
  return &user;
}

int main(int argc, char** argv) {
  alarm(30);
  if (argc != 2) return 3;
  if (KXLogInitialize() != 1) return KXLogInitialize() == 1 ? 3 : 2;
  if (strcmp(argv[1], "hold") == 0) {
    if (!LogLock() || write(STDOUT_FILENO, "held\n", 5) != 5) return 2;
    pause();
  }
  const int count = atoi(argv[1]);
  int lost = 0;
  for (int i = 1; i <= count; ++i) {
    const int filler = i * 37 % 400;
    if (_KXLogEntryNew(3, __FILE__, __LINE__, "T", "%*s number %d", filler, "", i) == 0) ++lost;
  }
  return lost == 0 ? 0 : 1;
}
