// The DevTools protocol over the pipe: numbered commands with their replies, and events by method.
//
// Handlers run on the IO thread. A session id names the target that a command or event belongs to;
// the empty one is the browser as a whole.

#ifndef CEF_CHROMIUM_DEVTOOLS_DEVTOOLSCONNECTION_H_
#define CEF_CHROMIUM_DEVTOOLS_DEVTOOLSCONNECTION_H_

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "cef/chromium/base/Deadline.h"
#include "cef/chromium/base/Json.h"
#include "cef/chromium/devtools/PipeTransport.h"

namespace engine {

class DevToolsConnection {
 public:
  // `result` is null when the command failed; `error` says why then. It lives during the call only.
  using ReplyHandler = std::function<void(const JsonValue* result, const std::string& error)>;
  using EventHandler = std::function<void(const std::string& session, const JsonValue& params)>;

  // How long Chromium may take to answer. It answers within milliseconds; one that is stopped, or a
  // page that hangs, does not. Longer than a start may take, so that the start's own limit counts.
  static constexpr std::chrono::milliseconds kReplyLimit{20000};
  // For what shows or loads something first.
  static constexpr std::chrono::milliseconds kFirstPageLimit{10000};
  // For commands that are answered when a server or a person has done something.
  static constexpr std::chrono::milliseconds kNoLimit{0};

  // Before the first Open(). One handler per method, such as "Fetch.requestPaused". An event whose
  // method `wanted` turns down is not even read.
  //
  // Of an event that cannot be read the handler gets the numbers and texts among the params that
  // stand before the fault, so that it can let a request go on.
  void On(const std::string& method, EventHandler handler, std::function<bool()> wanted = nullptr);
  // Runs when the pipe has closed, after every open command was answered with an error.
  void OnClosed(std::function<void()> handler);

  // Takes up a pipe; the descriptors stay the caller's, see PipeTransport. May be called again once
  // the former pipe has closed. The IO thread must run.
  void Open(int write_fd, int read_fd);
  bool IsOpen() const;

  // Gives Chromium up, as if it had closed the pipe: for one that does not answer any more. Any
  // thread.
  void Drop();

  // The first command on this pipe that Chromium has said it does not know; "" if there was none.
  std::string UnknownCommand() const;

  // Sends a command. `reply`, if any, is called exactly once: with an error also on a closed
  // connection, when the reply cannot be read, and when none has come within `limit`; a Chromium
  // that leaves 65,536 commands unanswered is given up, as by Drop(). Any thread;
  // commands of one thread keep their order.
  void Send(const std::string& session, const std::string& method, const JsonObject& params = {},
            ReplyHandler reply = nullptr, std::chrono::milliseconds limit = kReplyLimit);

  // Sends a command and waits for its reply. False with `error` set when it failed or `limit` has
  // passed. Not on the IO thread, which delivers the reply.
  bool Call(const std::string& session, const std::string& method, const JsonObject& params,
            std::chrono::milliseconds limit, std::string* error);

  // Waits until the pipe has closed and the handler given to OnClosed() has run; false when `limit`
  // passed first. Not on the IO thread.
  bool WaitClosed(std::chrono::milliseconds limit);

 private:
  struct Command {
    std::string method;
    ReplyHandler reply;  // may be empty
    Clock::time_point deadline;
  };
  struct Receiver {
    EventHandler handle;
    std::function<bool()> wanted;  // may be empty
  };

  void OnMessage(const std::string& message);
  void OnReply(int id, const JsonValue& message, bool readable);
  void OnPipeClosed();
  void WatchLimit(Clock::time_point deadline);  // with mutex_ held
  void GiveUpLate(Clock::time_point look);

  mutable std::mutex mutex_;
  std::condition_variable closed_;
  std::shared_ptr<PipeTransport> transport_;                // guarded by mutex_; null while closed
  std::map<int, Command> unanswered_;                       // by id; guarded by mutex_
  std::string unknown_command_;                             // guarded by mutex_
  int last_id_ = 0;                                         // guarded by mutex_
  bool settled_ = true;                                     // guarded by mutex_
  Clock::time_point next_look_ = Clock::time_point::max();  // at the limits; guarded by mutex_

  // Fixed once Open() was called.
  std::map<std::string, Receiver> receivers_;
  std::function<void()> on_closed_;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_DEVTOOLS_DEVTOOLSCONNECTION_H_
