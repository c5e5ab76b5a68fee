// A Chromium under test, spoken to in bare DevTools messages, and a look at the processes it runs
// as.

#ifndef TESTS_SUPPORT_RAWCHROMIUM_H_
#define TESTS_SUPPORT_RAWCHROMIUM_H_

#include <rapidjson/document.h>
#include <sys/types.h>

#include <chrono>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "cef/chromium/process/ChromiumProcess.h"

// Single-threaded: what arrives is read while a reply or an event is waited for. Every wait ends
// after ten seconds with an exception (std::runtime_error), so that a test fails instead of
// hanging.
class RawChromium {
 public:
  using Message = rapidjson::Document;

  // Starts Chromium; --no-sandbox is added when running as root. Throws if it cannot be started.
  explicit RawChromium(engine::ChromiumOptions options);

  // Calls a method and returns the reply's "result"; throws on an error reply.
  Message Call(const std::string& method, const std::string& params = "{}",
               const std::string& session = "");

  // The next event of that name whose text contains `part`; skips and forgets the events before it.
  Message WaitFor(const std::string& method, const std::string& part = "");

  // Opens a page, attaches to it and returns the session.
  std::string OpenPage(const std::string& url);

  // Evaluates an expression (a promise is waited for) and returns its value, which must be a text.
  std::string Evaluate(const std::string& session, const std::string& expression);

  engine::ChromiumProcess& process() { return *process_; }
  // Ends it the hard way, with all that goes with it.
  void Destroy() { process_.reset(); }

 private:
  bool ReadMore();
  std::string ReadText();

  std::unique_ptr<engine::ChromiumProcess> process_;
  std::string buffer_;
  std::deque<std::string> events_;
  int last_id_ = 0;
};

// The processes of every session that has one whose command line or environment contains the text,
// this process's own session left out; each is followed until it has ended.
class ProcessWatch {
 public:
  explicit ProcessWatch(const std::string& text);
  ~ProcessWatch();
  ProcessWatch(const ProcessWatch&) = delete;
  ProcessWatch& operator=(const ProcessWatch&) = delete;

  size_t count() const { return fds_.size(); }
  // True if all have ended within the limit.
  bool WaitForAll(std::chrono::milliseconds limit) const;

 private:
  std::vector<int> fds_;
};

#endif  // TESTS_SUPPORT_RAWCHROMIUM_H_
