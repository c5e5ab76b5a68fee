// What fuzz targets share. Each is one file with libFuzzer's entry point.

#ifndef FUZZ_FUZZ_H_
#define FUZZ_FUZZ_H_

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
  if (!(condition)) (fprintf(stderr, "%s:%d: not %s\n", __FILE__, __LINE__, #condition), abort())

inline std::string Text(const uint8_t* data, size_t size) { return {data, data + size}; }

#endif  // FUZZ_FUZZ_H_
