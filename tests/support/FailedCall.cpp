// Preloaded into the starter and the program. What takes integers and pointers only can be passed
// on unseen, so that one signature does for all functions.

#include "tests/support/FailedCall.h"

#include <dlfcn.h>
#include <errno.h>
#include <execinfo.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>
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

void Note(const char* name, const char* path) {
  size_t size = static_cast<size_t>(snprintf(block->where, 256, "%s(%.200s)", name, path));
  void* frames[16];
  const int count = backtrace(frames, 16);
  for (int i = 3; i < count && size < sizeof block->where - 100; ++i) {
    dl_find_object found;
    if (_dl_find_object(frames[i], &found) != 0) continue;
    const auto offset = reinterpret_cast<uintptr_t>(frames[i]) - found.dlfo_link_map->l_addr;
    size += static_cast<size_t>(snprintf(block->where + size, 100, "\n  %.60s +0x%lx",
                                         Base(found.dlfo_link_map->l_name), offset - 1));
  }
}

__attribute__((noinline)) bool Fails(unsigned function, const char* name, void* caller, Word path) {
  if (!block) return false;
  const bool of_libraries = !IsOwn(caller);
  const long number = ++block->calls[function][of_libraries];
  const bool chosen = function == block->function && of_libraries == block->of_libraries;
  if (!chosen || number != block->number) return false;
  block->failed = true;
  Note(name, path ? reinterpret_cast<const char*>(path) : "");
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
#define FAILS_AS(function, name, path, failure)                                     \
  __attribute__((visibility("default")))                                            \
  Word Failing_##name(Word, Word, Word, Word, Word, Word, Word) __asm__(#name);     \
  Word Failing_##name(Word a, Word b, Word c, Word d, Word e, Word f, Word g) {     \
    static constexpr unsigned kFunction = IndexOf(function);                        \
    static Function real = nullptr;                                                 \
    if (!real) real = Real<Function>(#name);                                        \
    static_cast<void>(b);                                                           \
    if (Fails(kFunction, #name, __builtin_return_address(0), path)) return failure; \
    return real(a, b, c, d, e, f, g);                                               \
  }
#define FAILS(name, path, failure) FAILS_AS(#name, name, path, failure)

FAILS(open, a, Minus(EMFILE))
FAILS_AS("open", open64, a, Minus(EMFILE))
FAILS_AS("open", openat, b, Minus(EMFILE))
FAILS_AS("open", openat64, b, Minus(EMFILE))
FAILS_AS("open", __open_2, a, Minus(EMFILE))
FAILS_AS("open", __open64_2, a, Minus(EMFILE))
FAILS(fopen, a, None(EMFILE))
FAILS_AS("fopen", fopen64, a, None(EMFILE))
FAILS_AS("fopen", fdopen, 0, None(ENOMEM))
FAILS(opendir, a, None(EMFILE))
FAILS_AS("opendir", fdopendir, 0, None(ENOMEM))
FAILS(dlopen, a, None(ENOENT))
FAILS(read, 0, Minus(EIO))
FAILS_AS("read", __read_chk, 0, Minus(EIO))
FAILS_AS("read", fread, 0, None(EIO))
FAILS(recv, 0, Minus(ECONNRESET))
FAILS_AS("recv", recvmsg, 0, Minus(ECONNRESET))
FAILS_AS("recv", recvfrom, 0, Minus(ECONNRESET))
FAILS(write, 0, Minus(ENOSPC))
FAILS_AS("write", fwrite, 0, None(ENOSPC))
FAILS(writev, 0, Minus(ENOSPC))
FAILS(send, 0, Minus(EPIPE))
FAILS_AS("send", sendmsg, 0, Minus(EPIPE))
FAILS_AS("send", sendto, 0, Minus(EPIPE))
FAILS(close, 0, (real(a, b, c, d, e, f, g), Minus(EIO)))
FAILS_AS("close", fclose, 0, (real(a, b, c, d, e, f, g), Minus(EIO)))
FAILS(poll, 0, Minus(ENOMEM))
FAILS_AS("poll", ppoll, 0, Minus(ENOMEM))
FAILS_AS("poll", select, 0, Minus(ENOMEM))
FAILS(pipe, 0, Minus(EMFILE))
FAILS_AS("pipe", pipe2, 0, Minus(EMFILE))
FAILS_AS("pipe", socketpair, 0, Minus(EMFILE))
FAILS(eventfd, 0, Minus(EMFILE))
FAILS(signalfd, 0, Minus(EMFILE))
FAILS(socket, 0, Minus(EMFILE))
FAILS(connect, 0, Minus(ECONNREFUSED))
FAILS(fcntl, 0, Minus(EMFILE))
FAILS_AS("fcntl", fcntl64, 0, Minus(EMFILE))
FAILS(flock, 0, Minus(ENOLCK))
FAILS(stat, a, Minus(EACCES))
FAILS_AS("stat", stat64, a, Minus(EACCES))
FAILS_AS("stat", lstat, a, Minus(EACCES))
FAILS_AS("stat", lstat64, a, Minus(EACCES))
FAILS_AS("stat", fstat, 0, Minus(EIO))
FAILS_AS("stat", fstat64, 0, Minus(EIO))
FAILS_AS("stat", fstatat, b, Minus(EACCES))
FAILS_AS("stat", realpath, a, None(EACCES))
FAILS_AS("stat", readlink, a, Minus(EACCES))
FAILS(statvfs, a, Minus(EACCES))
FAILS(access, a, Minus(EACCES))
FAILS(mkdir, a, Minus(ENOSPC))
FAILS(mkdtemp, a, None(ENOSPC))
FAILS(mkfifo, a, Minus(EPERM))
FAILS(symlink, b, Minus(ENOSPC))
FAILS(rename, a, Minus(ENOSPC))
FAILS(unlink, a, Minus(EACCES))
FAILS_AS("unlink", unlinkat, b, Minus(EACCES))
FAILS_AS("unlink", remove, a, Minus(EACCES))
FAILS_AS("unlink", rmdir, a, Minus(EACCES))
FAILS(chmod, a, Minus(EPERM))
FAILS_AS("chmod", fchmod, 0, Minus(EPERM))
FAILS_AS("chmod", fchmodat, b, Minus(EPERM))
FAILS_AS("size", ftruncate, 0, Minus(ENOSPC))
FAILS_AS("size", posix_fallocate, 0, ENOSPC)
FAILS_AS("size", lseek64, 0, Minus(EIO))
FAILS(getpwuid, 0, None(EIO))
FAILS(shm_open, a, Minus(EMFILE))
FAILS(mmap, 0, Minus(ENOMEM))
FAILS_AS("mmap", mmap64, 0, Minus(ENOMEM))
FAILS(shmget, 0, Minus(ENOSPC))
FAILS(shmat, 0, Minus(ENOMEM))
FAILS(shmctl, 0, Minus(EIDRM))
FAILS(semget, 0, Minus(ENOSPC))
FAILS(semctl, 0, Minus(EIDRM))
FAILS(semop, 0, Minus(EIDRM))
FAILS_AS("semop", semtimedop, 0, Minus(ENOSPC))
FAILS(posix_spawn, b, EAGAIN)
FAILS(fork, 0, Minus(EAGAIN))
FAILS(execve, a, Minus(ENOMEM))
FAILS_AS("thread", pthread_create, 0, EAGAIN)
FAILS(waitpid, 0, Minus(ECHILD))
FAILS(malloc, 0, None(ENOMEM))
FAILS_AS("malloc", calloc, 0, None(ENOMEM))
FAILS_AS("malloc", realloc, 0, None(ENOMEM))

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
    void* frame[1];
    backtrace(frame, 1);  // loads what it needs
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
