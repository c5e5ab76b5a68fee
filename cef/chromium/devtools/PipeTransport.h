// The two ends of the DevTools pipe: one JSON text and a NUL per message.

#ifndef CEF_CHROMIUM_DEVTOOLS_PIPETRANSPORT_H_
#define CEF_CHROMIUM_DEVTOOLS_PIPETRANSPORT_H_

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "cef/chromium/devtools/MessageBuffer.h"

namespace engine {

// Make it with std::make_shared: the IO thread keeps it alive while the pipe is open. The handlers
// run on the IO thread and are dropped once the pipe has closed.
class PipeTransport : public std::enable_shared_from_this<PipeTransport> {
 public:
  using MessageHandler = MessageBuffer::Handler;
  using CloseHandler = std::function<void()>;

  // The descriptors become non-blocking and stay the caller's, who must not close them before
  // `on_close` has run.
  PipeTransport(int write_fd, int read_fd, MessageHandler on_message, CloseHandler on_close);

  // Starts to read. IoThread must have been started.
  void Start();

  // Sends a message. It never waits: what the pipe does not take is kept until it does, so that a
  // full pipe cannot stop the reader. When that comes to 16 MiB, Chromium is given up, as by
  // Drop(). Dropped after the pipe has closed. Any thread.
  void Send(const std::string& message);

  // Ends the pipe from this side, as if it had closed; at once or soon. Any thread.
  void Drop();

 private:
  void OnReadable();
  void OnWritable();
  void WritePending();  // with mutex_ held
  void Close();

  const int write_fd_;
  const int read_fd_;

  std::mutex mutex_;
  std::string pending_;            // guarded by mutex_
  bool waiting_to_write_ = false;  // guarded by mutex_
  bool closed_ = false;            // guarded by mutex_

  // IO thread only.
  MessageHandler on_message_;
  CloseHandler on_close_;
  MessageBuffer received_;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_DEVTOOLS_PIPETRANSPORT_H_
