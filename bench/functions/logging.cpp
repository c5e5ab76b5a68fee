// One log record, and several processes that log at once.

#include <fcntl.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/spdlog.h>
#include <sys/sem.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <string>

#include "bench/functions/Pairs.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"

namespace {

constexpr char kMessage[] = "calling CefRunMessageLoop";

int Record() { return _KXLogEntryNew(3, "CefBrowserClient", 137, "CEF", kMessage); }

// A lock of the log's kind that nobody else knows.
class Lock {
 public:
  Lock() : set_(semget(IPC_PRIVATE, 1, 0600)) { Release(); }
  ~Lock() { semctl(set_, 0, IPC_RMID); }
  void Take() {
    sembuf take = {0, -1, SEM_UNDO};
    semop(set_, &take, 1);
  }
  void Release() {
    sembuf release = {0, 1, SEM_UNDO};
    semop(set_, &release, 1);
  }

 private:
  const int set_;
};

// What a record asks of the system and nothing else: the level under the lock; then process and
// thread, and under the lock again the look at the file and its name, and the writing.
struct SystemCalls {
  explicit SystemCalls(const std::string& path)
      : path(path), fd(open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600)) {}
  ~SystemCalls() { close(fd); }

  int Run() {
    lock.Take();
    lock.Release();
    getpid();
    gettid();
    lock.Take();
    struct stat info;
    lstat(path.c_str(), &info);
    fstat(fd, &info);
    iovec pieces[] = {{line, 9}, {line + 9, sizeof(line) - 9}};
    const ssize_t written = writev(fd, pieces, 2);
    lock.Release();
    return static_cast<int>(written);
  }

  Lock lock;
  const std::string path;
  const int fd;
  char line[117] = {};
};

// A logger as a program of today would have it, with the same fields, behind the same lock.
struct RotatingLogger {
  explicit RotatingLogger(const std::string& path)
      : path(path),
        logger("CEF",
               std::make_shared<spdlog::sinks::rotating_file_sink_st>(path, kLogMaximumSize, 1)) {
    logger.set_pattern(
        "00108,09 %Y/%m/%d %H:%M:%S.%e 3 root benchFunctions bench p%P t%t %s:%# - "
        "'%n' %v\r");
    logger.flush_on(spdlog::level::info);
  }

  // As careful as the log has to be: the level is asked for under the lock, and the file looked
  // after, since others may change the one and rotate the other.
  int RunCarefully() {
    lock.Take();
    lock.Release();
    struct stat info;
    lstat(path.c_str(), &info);
    fstat(fd, &info);
    return Run();
  }

  int Run() {
    lock.Take();
    logger.log(spdlog::source_loc{"CefBrowserClient", 137, ""}, spdlog::level::info, kMessage);
    lock.Release();
    return 0;
  }

  Lock lock;
  const std::string path;
  spdlog::logger logger;
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);  // the logger's own is hidden
};

// Seconds in which `processes` write `records` in all.
double LogFrom(int processes, int records) {
  int start[2];
  if (pipe(start) != 0) return 0;
  for (int i = 0; i < processes; ++i) {
    if (fork() != 0) continue;
    close(start[1]);
    char none;
    if (read(start[0], &none, 1) != 0) _exit(1);
    for (int n = records / processes; n > 0; --n) {
      if (Record() == 0) abort();
    }
    _exit(0);
  }
  close(start[0]);
  usleep(20000);  // all of them wait now
  const auto begin = std::chrono::steady_clock::now();
  close(start[1]);
  int status, bad = 0;
  while (wait(&status) > 0) bad += status != 0;
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
  if (bad != 0) abort();
  return taken.count();
}

}  // namespace

void AddLogging() {
  // All three files lie in one folder: on the same disk, and with paths of about the same length.
  const std::string folder = InstallPaths::kLogFolder;
  static SystemCalls calls(folder + "/bare.log");
  static RotatingLogger rotating(folder + "/rotating.log");
  static Lock lock;

  AddPair({"log record", "the same system calls alone", 1.15, Repeat(Record),
           Repeat([] { return calls.Run(); })});
  AddPair({"log record", "spdlog, as careful about level and file", 1.0, Repeat(Record),
           Repeat([] { return rotating.RunCarefully(); })});
  AddPair({"log record", "spdlog's rotating file, flushed, under a lock of the same kind", 1.0,
           Repeat(Record), Repeat([] { return rotating.Run(); }), 0, 0, false});
  AddPair({"log record below the level", "taking and releasing the lock", 0,
           Repeat([] { return _KXLogEntryNew(4, "CefBrowserClient", 137, "CEF", kMessage); }),
           Repeat([] {
             lock.Take();
             lock.Release();
             return 0;
           })});

  constexpr int kRecords = 12000;
  AddPair({"log records of 5 processes at once", "of one process", 0.8,
           Timed([] { return LogFrom(5, kRecords); }), Timed([] { return LogFrom(1, kRecords); }),
           0, kRecords});
  AddCurve({"6,720 log records in all",
            "processes",
            {1, 2, 3, 4, 5, 6, 7, 8},
            [](int x) { return Timed([x] { return LogFrom(x, 6720); }); },
            true});
}
