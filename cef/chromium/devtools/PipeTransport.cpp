#include "cef/chromium/devtools/PipeTransport.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "cef/chromium/base/IoThread.h"

namespace engine {
namespace {

constexpr size_t kReadSize = 64 * 1024;
// A Chromium that takes no commands but goes on to cause them.
constexpr size_t kMostPending = 16u << 20;

void SetNonBlocking(int fd) { fcntl(fd, F_SETFL, O_NONBLOCK); }

}  // namespace

PipeTransport::PipeTransport(int write_fd, int read_fd, MessageHandler on_message,
                             CloseHandler on_close)
    : write_fd_(write_fd),
      read_fd_(read_fd),
      on_message_(std::move(on_message)),
      on_close_(std::move(on_close)) {
  SetNonBlocking(write_fd_);
  SetNonBlocking(read_fd_);
}

void PipeTransport::Start() {
  IoThread::Get().PostTask([self = shared_from_this()] {
    IoThread::Get().Watch(self->read_fd_, POLLIN, [self](short) { self->OnReadable(); });
  });
}

void PipeTransport::Send(const std::string& message) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (closed_) return;
  if (pending_.size() + message.size() > kMostPending) {
    Drop();
    return;
  }
  pending_.append(message);
  pending_.push_back('\0');
  if (!waiting_to_write_) WritePending();
}

void PipeTransport::Drop() {
  IoThread::Get().PostTask([self = shared_from_this()] { self->Close(); });
}

void PipeTransport::WritePending() {
  while (!pending_.empty()) {
    const ssize_t written = write(write_fd_, pending_.data(), pending_.size());
    if (written > 0) {
      pending_.erase(0, static_cast<size_t>(written));
    } else if (written < 0 && errno == EINTR) {
      continue;
    } else {
      break;
    }
  }
  if (pending_.empty()) return;
  if (errno != EAGAIN) {
    // Nobody reads any more, or what is left of a command cannot be had back.
    pending_.clear();
    IoThread::Get().PostTask([self = shared_from_this()] { self->Close(); });
    return;
  }
  waiting_to_write_ = true;
  IoThread::Get().PostTask([self = shared_from_this()] {
    IoThread::Get().Watch(self->write_fd_, POLLOUT, [self](short) { self->OnWritable(); });
  });
}

void PipeTransport::OnWritable() {
  IoThread::Get().Unwatch(write_fd_);
  std::lock_guard<std::mutex> lock(mutex_);
  waiting_to_write_ = false;
  if (!closed_) WritePending();
}

void PipeTransport::OnReadable() {
  char piece[kReadSize];
  // One piece at a time: a page that floods the pipe must not keep this thread's tasks waiting.
  const ssize_t count = read(read_fd_, piece, sizeof piece);
  if (count > 0) {
    received_.Feed(piece, static_cast<size_t>(count), on_message_);
  } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
    Close();
  }
}

void PipeTransport::Close() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (closed_) return;
    closed_ = true;
    pending_.clear();
  }
  // What is unwatched may hold the last other reference.
  const auto self = shared_from_this();
  IoThread::Get().Unwatch(write_fd_);
  IoThread::Get().Unwatch(read_fd_);
  const CloseHandler on_close = std::move(on_close_);
  on_message_ = nullptr;
  on_close();
}

}  // namespace engine
