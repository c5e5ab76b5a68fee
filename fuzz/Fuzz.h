// What fuzz targets share. Each is one file with libFuzzer's entry point.

#ifndef FUZZ_FUZZ_H_
#define FUZZ_FUZZ_H_

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
// What a target wants to be run on besides, in the replay; where it is defined.
void ForEachCase(const std::function<void(const std::string&)>& run) __attribute__((weak));

// Ends the run: the input at hand is a finding.
#define Require(condition) \
  if (!(condition)) (fprintf(stderr, "%s:%d: not " #condition "\n", __FILE__, __LINE__), abort())

inline std::string Text(const uint8_t* data, size_t size) { return {data, data + size}; }

// A file in memory, for what is read by its path; the path is the same each time.
inline std::string WrittenFile(const std::string& text) {
  static const int fd = memfd_create("fuzz", MFD_CLOEXEC);
  Require(ftruncate(fd, 0) == 0);
  Require(pwrite(fd, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()));
  return "/proc/self/fd/" + std::to_string(fd);
}

#endif  // FUZZ_FUZZ_H_
