// Starting programs with a clean state, and waiting for them with a limit.

#ifndef CEF_CHROMIUM_PROCESS_CHILDPROCESS_H_
#define CEF_CHROMIUM_PROCESS_CHILDPROCESS_H_

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

#include "cef/chromium/base/Deadline.h"

namespace engine {

struct ChildOptions {
  // The program's path and its arguments.
  std::vector<std::string> command;
  // Which of our descriptors (first) the child has under which number (second, each once).
  // 0, 1 and 2 are /dev/null unless named here. Every other descriptor is closed in the child.
  std::vector<std::pair<int, int>> descriptors;
  // Variables besides those of our own environment that may be inherited, or instead of them.
  std::vector<std::pair<std::string, std::string>> environment;
};

// Starts a program in its own session, with no signal blocked or ignored, in the root folder.
// Returns its process id, or -1 and a reason in *err. Usable with any number of threads running.
pid_t StartChild(const ChildOptions& options, std::string* err);

// A close-on-exec descriptor that becomes readable when the child has ended (see WaitReadable()),
// or -1.
int OpenProcess(pid_t child);

// Collects a child that has ended or is about to. Its wait status, or -1 if it is not ours.
int ReapChild(pid_t child);

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_CHILDPROCESS_H_
