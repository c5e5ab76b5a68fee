// A program run by a test: its output as text, every wait bounded, never left behind.

#ifndef TESTS_SUPPORT_SUBPROCESS_H_
#define TESTS_SUPPORT_SUBPROCESS_H_

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

// For one thread.
class Subprocess {
 public:
  struct Command {
    std::vector<std::string> arguments;  // the first is argv[0]
    std::string program;                 // what to execute; empty: argv[0], looked up in PATH
    // Changes to this process's environment; no value: the variable is removed.
    std::map<std::string, std::optional<std::string>> environment;
    std::string input;        // what it reads from standard input
    bool keep_input = false;  // standard input stays open behind `input` until CloseInput()
  };

  // How a program ended.
  struct End {
    int exit_status = -1;  // when it exited; 127: it could not be executed, `err` says why
    int signal = 0;        // the signal that ended it, if one did
    std::string out;
    std::string err;
  };

  // Starts the program. Descriptors other than the three standard ones are not inherited. The
  // program gets SIGKILL when this thread dies.
  explicit Subprocess(const Command& command);
  // Kills the program if it still runs, and reaps it.
  ~Subprocess();
  Subprocess(const Subprocess&) = delete;
  Subprocess& operator=(const Subprocess&) = delete;

  pid_t pid() const { return pid_; }
  // False when it has ended already.
  bool Signal(int number) const;
  void CloseInput();

  // Waits for the end; nothing when `limit` passes first. What children of the program still hold
  // open is not waited for.
  std::optional<End> Wait(std::chrono::milliseconds limit);

  // Waits until standard output holds the text. False when the limit passes or the program ends
  // without it.
  bool WaitForOutput(const std::string& text, std::chrono::milliseconds limit);

  std::string out() const;
  std::string err() const;

 private:
  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  int error_ = -1;
  int process_ = -1;  // becomes readable when the program has ended
  std::optional<End> end_;
};

// Runs a program to its end; kills it when the limit passes (the end then shows SIGKILL).
Subprocess::End RunToEnd(const Subprocess::Command& command, std::chrono::milliseconds limit);

#endif  // TESTS_SUPPORT_SUBPROCESS_H_
