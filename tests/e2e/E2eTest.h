// The program as its callers run it: a user and a display of the test's own, a gateway in a box,
// and what must hold after every run, whatever happened in it.

#ifndef TESTS_E2E_E2ETEST_H_
#define TESTS_E2E_E2ETEST_H_

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/e2e/Evidence.h"
#include "tests/support/Subprocess.h"
#include "tests/support/TempDir.h"
#include "tests/support/VirtualDisplay.h"
#include "tools/gateway/GatewayBox.h"

// How long anything of a run may take on a busy machine before the test gives up.
inline constexpr std::chrono::seconds kPatience{60};

// The question about a certificate.
inline constexpr char kQuestionTitle[] = "^Corvane Secure$";

// What the starter reports of a run, as its JSON says it.
struct StarterReport {
  int exit_status = -1;
  std::string verdict;
  std::string reason;
  std::string detail;
  std::string post_auth_cookie;
  std::string idp_cookies;
  std::string logout_url;
  int slo_state = -1;  // -1: no return data
  int helper_exit_status = -1;
  std::string log;  // the helper's lines of the log
  std::string err;
};

// The result a directly started program left.
struct DirectReport {
  int exit_status = -1;
  int signal = 0;
  std::string document;  // the segment up to its first NUL; empty when there is none
  std::string log;
  std::string err;
};

class E2eTest : public testing::Test {
 protected:
  E2eTest();
  void TearDown() override;
  // Fails the test when anything of its runs is left (a process of its user, a private profile, a
  // temporary file of the browser, a segment, a lock) or when the log's records are not whole.
  void ExpectNothingLeft() const;

  // A run through the starter. `path` begins at the gateway; options such as {"--timeout", "5"} may
  // be added.
  struct Step {
    std::string type;
    std::string path;
    std::string cookie;
    bool https = false;
    std::vector<std::string> options;
  };
  Subprocess::Command StarterCommand(const Step& step) const;
  // Waits for the starter's end and reads its report. Fails the test when the program ended by
  // itself and its log does not say how.
  StarterReport Report(Subprocess& starter);
  StarterReport Run(const Step& step);

  // A run without the starter. `argument` is the program's argv[0].
  Subprocess::Command DirectCommand(const std::string& argument) const;
  // A launch request for a SAML sign-in at a path of the gateway.
  std::string Request(const std::string& path) const;
  // Waits for the program's end, reads the segment that belongs to `data_folder` and removes it.
  DirectReport DirectEnd(Subprocess& program, const std::string& data_folder);
  DirectReport RunDirectly(const Subprocess::Command& command);

  std::string Address(const std::string& path, bool https = false) const;
  std::string DataFolder() const;
  // Makes the user's browser trust the box's good certificates.
  void TrustBox();
  // From now on nobody knows who signed the gateway's certificate, and runs over HTTPS ask about
  // it.
  void UseUnknownAuthority();

  // The lines that a process has written to the log since the test began.
  std::string LogOf(pid_t process) const;
  // Those of the lines that tell of an error: level 1.
  static std::vector<std::string> ErrorsIn(const std::string& log);
  // Waits until the condition holds; false when the limit passes first.
  static bool WaitFor(const std::function<bool()>& condition,
                      std::chrono::milliseconds limit = kPatience);
  // Waits until the log of the process holds the text.
  bool WaitForLog(pid_t process, const std::string& text) const;
  // Waits until the box has been asked for an address that begins with the path.
  bool WaitForRequest(const std::string& path) const;

  // The user's processes, as far as their environment names the user's HOME.
  std::vector<pid_t> UserProcesses() const;
  // The browser's processes of a type such as "renderer"; the empty one is the main process.
  std::vector<pid_t> BrowserProcesses(const std::string& type) const;
  // The program under test; -1 when there is none.
  pid_t HelperProcess() const;
  // True when the process ends before the limit.
  static bool EndsWithin(pid_t process, std::chrono::milliseconds limit);
  // The requests to a path of the box, as "name=value; ..." of their cookies.
  std::vector<std::string> CookiesSentTo(const std::string& path) const;

  const TempDir home_;
  std::unique_ptr<VirtualDisplay> display_;
  std::unique_ptr<GatewayBox> box_;
  bool starter_is_whole_ = true;  // nothing keeps the starter from reading a result
  bool log_is_whole_ = true;      // nothing is done to the log that may keep a run from writing it

 private:
  size_t log_begin_ = 0;
  mutable pid_t asked_ = 0;  // whose log was read last
  std::unique_ptr<Evidence> evidence_;
};

// Takes a file of the staged installation away while it lives. Tests that do so hold the same
// resource lock as all others that run the staged program.
class TakenAway {
 public:
  explicit TakenAway(const std::string& path);
  ~TakenAway();
  TakenAway(const TakenAway&) = delete;
  TakenAway& operator=(const TakenAway&) = delete;

  // Puts back what a test that was killed had taken away.
  static void Restore(const std::string& path);

 private:
  std::string path_;
};

#endif  // TESTS_E2E_E2ETEST_H_
