// What the tests of several processes on one log share: writers, and what they have to show for
// their work.

#ifndef TESTS_PROCESS_LOGWRITERS_H_
#define TESTS_PROCESS_LOGWRITERS_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/process/Acks.h"
#include "tests/support/LogArea.h"
#include "tests/support/LogRecords.h"
#include "tests/support/Subprocess.h"

using Writer = std::unique_ptr<Subprocess>;

inline constexpr uid_t kSomebody = 65534;

// Runs log_writer with these arguments, as another user when one is given.
inline Writer StartWriter(std::vector<std::string> arguments, uid_t user = 0,
                          const std::string& mask = "022") {
  const std::string id = std::to_string(user);
  Subprocess::Command spec;
  if (user != 0 || mask != "022") {
    spec.arguments = {"setpriv",
                      "--reuid=" + id,
                      "--regid=" + id,
                      "--clear-groups",
                      "sh",
                      "-c",
                      "umask " + mask + "; exec \"$0\" \"$@\""};
  }
  spec.arguments.push_back(LOG_WRITER);
  spec.arguments.insert(spec.arguments.end(), arguments.begin(), arguments.end());
  return std::make_unique<Subprocess>(spec);
}

// log_writer's status; -1 when a signal ended it or it did not end.
inline int StatusOf(const Writer& writer,
                    std::chrono::milliseconds limit = std::chrono::seconds(60)) {
  return writer->Wait(limit).value_or(Subprocess::End()).exit_status;
}

// Whether processes of several users can be played here.
inline bool CanPlayUsers() {
  Subprocess::Command probe;
  probe.arguments = {"setpriv", "--reuid=65534", "--clear-groups", "test", "-x", LOG_WRITER};
  return geteuid() == 0 && RunToEnd(probe, std::chrono::seconds(20)).exit_status == 0;
}

// All records of a log, each of them whole.
inline std::vector<LogRecord> WholeRecords(const std::string& path = InstallPaths::kLogFile) {
  std::string fault;
  const std::vector<LogRecord> records = ReadLog(path, 0, &fault);
  EXPECT_EQ(fault, "") << path;
  return records;
}

#endif  // TESTS_PROCESS_LOGWRITERS_H_
