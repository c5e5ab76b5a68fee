#include "tools/starter/Pipe.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace ebStarter {

namespace {

constexpr char kTooMany[] = "this process has too many files open";

constexpr int kFirstOwn = STDERR_FILENO + 1;
// What is closed where the open descriptors cannot be listed.
constexpr int kUsualEnd = 1024;
// For descriptors that another thread opens after they have been listed.
constexpr int kMargin = 64;

int MakeEnds(int ends[2]) {
#ifdef __APPLE__
  if (pipe(ends) != 0) return -1;
  for (int i = 0; i < 2; ++i) fcntl(ends[i], F_SETFD, FD_CLOEXEC);
  return 0;
#else
  return pipe2(ends, O_CLOEXEC);
#endif
}

}  // namespace

void MakePipe(int ends[2]) {
  if (MakeEnds(ends) != 0) throw std::runtime_error(kTooMany);
  // A process may have been started without standard descriptors; what is written to one of them
  // must not get into a pipe of ours.
  bool moved = true;
  for (int i = 0; i < 2; ++i) {
    if (ends[i] >= kFirstOwn) continue;
    const int higher = fcntl(ends[i], F_DUPFD_CLOEXEC, kFirstOwn);
    close(ends[i]);
    ends[i] = higher;
    moved = moved && higher != -1;
  }
  if (moved) return;
  for (int i = 0; i < 2; ++i) {
    if (ends[i] != -1) close(ends[i]);
  }
  throw std::runtime_error(kTooMany);
}

void NeverWait(int descriptor) {
  if (fcntl(descriptor, F_SETFL, O_NONBLOCK) != 0) throw std::runtime_error(kTooMany);
}

void Pipe::CloseEnd(int i) {
  if (ends_[i] != -1) close(ends_[i]);
  ends_[i] = -1;
}

int DescriptorsEnd() {
  int highest = 0;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/dev/fd", error)) {
    highest = std::max(highest, std::atoi(entry.path().filename().c_str()));
  }
  return error ? kUsualEnd : highest + kMargin;
}

void CloseDescriptors(int first, int end, int but, int and_but) {
  for (int descriptor = first; descriptor < end; ++descriptor) {
    if (descriptor != but && descriptor != and_but) close(descriptor);
  }
}

}  // namespace ebStarter
