// Preloaded into the starter and the program. What takes integers and pointers only can be passed
// on unseen, so that one signature does for all functions.

#include "tests/support/FailedCall.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

using Word = long;
using Function = Word (*)(Word, Word, Word, Word, Word, Word, Word);

FailedCall* block = nullptr;

constexpr unsigned IndexOf(std::string_view name) {
  unsigned index = 0;
  while (name != kFallible.at(index)) ++index;
  return index;
}

template <typename T>
T Real(const char* name) {
  return reinterpret_cast<T>(dlsym(RTLD_NEXT, name));
}

const char* Base(const char* path) {
  const char* const slash = strrchr(path, '/');
  return slash ? slash + 1 : path;
}

// Whether the code is the program's own, or the C++ library's, which works for it. Takes no lock:
// it is asked between fork and exec, too.
bool IsOwn(void* code) {
  dl_find_object found;
  if (_dl_find_object(code, &found) != 0) return false;
  const char* const file = Base(found.dlfo_link_map->l_name);
  return !*file || strstr(file, "Framework") || strstr(file, "libstdc++");
}

__attribute__((noinline)) bool Fails(unsigned function, const char* name, void* caller, Word path) {
  if (!block) return false;
  const bool of_libraries = !IsOwn(caller);
  const long number = ++block->calls[function][of_libraries];
  const bool chosen = function == block->function && of_libraries == block->of_libraries;
  if (!chosen || number != block->number) return false;
  block->failed = true;
  snprintf(block->where, sizeof block->where, "%s(%s)", name,
           path ? reinterpret_cast<const char*>(path) : "");
  return true;
}

Word Minus(int error) {
  errno = error;
  return -1;
}

Word None(int error) {
  errno = error;
  return 0;
}

}  // namespace

// `path` is the argument that names a file, or 0; `failure` what the function returns.
#define FAILS(function, name, path, failure)                                        \
  Word Failing_##name(Word, Word, Word, Word, Word, Word, Word) __asm__(#name);     \
  Word Failing_##name(Word a, Word b, Word c, Word d, Word e, Word f, Word g) {     \
    static constexpr unsigned kFunction = IndexOf(#function);                       \
    static Function real = nullptr;                                                 \
    if (!real) real = Real<Function>(#name);                                        \
    static_cast<void>(b);                                                           \
    if (Fails(kFunction, #name, __builtin_return_address(0), path)) return failure; \
    return real(a, b, c, d, e, f, g);                                               \
  }
// clang-format off
FAILS(open, open, a, Minus(EMFILE)) FAILS(open, open64, a, Minus(EMFILE))
FAILS(open, openat, b, Minus(EMFILE)) FAILS(open, __open_2, a, Minus(EMFILE))
FAILS(fopen, fopen, a, None(EMFILE)) FAILS(fopen, fopen64, a, None(EMFILE))
FAILS(fopen, fdopen, 0, None(ENOMEM)) FAILS(opendir, opendir, a, None(EMFILE))
FAILS(opendir, fdopendir, 0, None(ENOMEM)) FAILS(dlopen, dlopen, a, None(ENOENT))
FAILS(read, read, 0, Minus(EIO)) FAILS(read, __read_chk, 0, Minus(EIO))
FAILS(read, fread, 0, None(EIO)) FAILS(recv, recv, 0, Minus(ECONNRESET))
FAILS(recv, recvmsg, 0, Minus(ECONNRESET)) FAILS(write, write, 0, Minus(ENOSPC))
FAILS(write, fwrite, 0, None(ENOSPC)) FAILS(writev, writev, 0, Minus(ENOSPC))
FAILS(send, send, 0, Minus(EPIPE)) FAILS(send, sendmsg, 0, Minus(EPIPE))
FAILS(close, close, 0, (real(a, b, c, d, e, f, g), Minus(EIO)))
FAILS(close, fclose, 0, (real(a, b, c, d, e, f, g), Minus(EIO))) FAILS(poll, poll, 0, Minus(ENOMEM))
FAILS(poll, select, 0, Minus(ENOMEM)) FAILS(pipe, pipe, 0, Minus(EMFILE))
FAILS(pipe, pipe2, 0, Minus(EMFILE)) FAILS(pipe, socketpair, 0, Minus(EMFILE))
FAILS(eventfd, eventfd, 0, Minus(EMFILE)) FAILS(signalfd, signalfd, 0, Minus(EMFILE))
FAILS(socket, socket, 0, Minus(EMFILE)) FAILS(connect, connect, 0, Minus(ECONNREFUSED))
FAILS(fcntl, fcntl, 0, Minus(EMFILE)) FAILS(flock, flock, 0, Minus(ENOLCK))
FAILS(stat, stat, a, Minus(EACCES)) FAILS(stat, stat64, a, Minus(EACCES))
FAILS(stat, lstat, a, Minus(EACCES)) FAILS(stat, fstat, 0, Minus(EIO))
FAILS(stat, fstatat, b, Minus(EACCES)) FAILS(stat, realpath, a, None(EACCES))
FAILS(stat, readlink, a, Minus(EACCES)) FAILS(statvfs, statvfs, a, Minus(EACCES))
FAILS(access, access, a, Minus(EACCES)) FAILS(mkdir, mkdir, a, Minus(ENOSPC))
FAILS(mkdtemp, mkdtemp, a, None(ENOSPC)) FAILS(mkfifo, mkfifo, a, Minus(EPERM))
FAILS(symlink, symlink, b, Minus(ENOSPC)) FAILS(rename, rename, a, Minus(ENOSPC))
FAILS(unlink, unlink, a, Minus(EACCES)) FAILS(unlink, unlinkat, b, Minus(EACCES))
FAILS(unlink, remove, a, Minus(EACCES)) FAILS(unlink, rmdir, a, Minus(EACCES))
FAILS(chmod, chmod, a, Minus(EPERM)) FAILS(chmod, fchmod, 0, Minus(EPERM))
FAILS(chmod, fchmodat, b, Minus(EPERM)) FAILS(size, ftruncate, 0, Minus(ENOSPC))
FAILS(size, posix_fallocate, 0, ENOSPC) FAILS(size, lseek64, 0, Minus(EIO))
FAILS(getpwuid, getpwuid, 0, None(EIO)) FAILS(shm_open, shm_open, a, Minus(EMFILE))
FAILS(mmap, mmap, 0, Minus(ENOMEM)) FAILS(mmap, mmap64, 0, Minus(ENOMEM))
FAILS(shmget, shmget, 0, Minus(ENOSPC)) FAILS(shmat, shmat, 0, Minus(ENOMEM))
FAILS(shmctl, shmctl, 0, Minus(EIDRM)) FAILS(semget, semget, 0, Minus(ENOSPC))
FAILS(semctl, semctl, 0, Minus(EIDRM)) FAILS(semop, semop, 0, Minus(EIDRM))
FAILS(semop, semtimedop, 0, Minus(ENOSPC)) FAILS(posix_spawn, posix_spawn, b, EAGAIN)
FAILS(fork, fork, 0, Minus(EAGAIN)) FAILS(execve, execve, a, Minus(ENOMEM))
FAILS(thread, pthread_create, 0, EAGAIN) FAILS(waitpid, waitpid, 0, Minus(ECHILD))
FAILS(malloc, malloc, 0, None(ENOMEM)) FAILS(malloc, calloc, 0, None(ENOMEM))
FAILS(malloc, realloc, 0, None(ENOMEM))
    // clang-format on

    Word FailingSyscall(Word, Word, Word, Word, Word, Word, Word) __asm__("syscall");
Word FailingSyscall(Word a, Word b, Word c, Word d, Word e, Word f, Word g) {
  static const auto real = Real<Function>("syscall");
  static constexpr unsigned kFunction = IndexOf("pidfd_open");
  if (a == SYS_pidfd_open && Fails(kFunction, "pidfd_open", __builtin_return_address(0), 0)) {
    return Minus(EMFILE);
  }
  return real(a, b, c, d, e, f, g);
}

// What the loader and the libraries do before main() does not count.
using Main = int (*)(int, char**, char**);
Main real_main = nullptr;

int CountedMain(int argc, char** argv, char** environment) {
  char self[4096] = "";
  if (readlink("/proc/self/exe", self, sizeof self - 1) < 0) abort();
  const char* const file = getenv(FailedCall::kVariable);
  // Chromium is no business of ours.
  if (strcmp(Base(self), "EmbeddedBrowser") == 0) unsetenv("LD_PRELOAD");
  if (file) {
    const int descriptor = open(file, O_RDWR | O_CLOEXEC);
    void* const memory =
        mmap(nullptr, sizeof(FailedCall), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (memory == MAP_FAILED) abort();
    close(descriptor);
    const auto shared = static_cast<FailedCall*>(memory);
    if (strcmp(Base(self), shared->program) == 0) block = shared;
  }
  return real_main(argc, argv, environment);
}

extern "C" int __libc_start_main(Main main, int argc, char** argv, void (*init)(), void (*fini)(),
                                 void (*loader_fini)(), void* stack) {
  real_main = main;
  using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);
  return Real<Start>("__libc_start_main")(CountedMain, argc, argv, init, fini, loader_fini, stack);
}
