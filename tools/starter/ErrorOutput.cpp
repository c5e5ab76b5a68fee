#include "tools/starter/ErrorOutput.h"

#include <limits.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "tools/starter/BrowserLine.h"

namespace ebStarter {

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kBrowserMark[] = "cef: ";
constexpr size_t kMarkSize = sizeof kBrowserMark - 1;
constexpr size_t kMaxLine = 1024;
// As much as a pipe that says it is writable takes without waiting.
constexpr size_t kChunk = PIPE_BUF;
// What a pipe holds at most.
constexpr int kChunksInPipe = 65536 / kChunk;
constexpr std::chrono::seconds kForSlowReaders{1};

}  // namespace

void LastLines::Take(const char* bytes, size_t size) {
  for (const char* const end = bytes + size; bytes < end; ++bytes) {
    if (*bytes == '\n') {
      End();
    } else if (current_.size() < kMaxLine) {
      current_ += *bytes;
    }
  }
}

void LastLines::End() {
  if (!current_.empty() && current_.back() == '\r') current_.pop_back();
  if (current_.compare(0, kMarkSize, kBrowserMark) == 0) {
    const std::string line = current_.substr(kMarkSize);
    (BrowserLine(line).failure ? browser_failure_ : browser_remark_) = line;
  }
  if (!current_.empty()) last_ = current_;
  current_.clear();
}

ErrorOutput::ErrorOutput() {
  NeverWait(pipe_.reader());
  thread_ = std::thread([this] { Run(); });
}

ErrorOutput::~ErrorOutput() {
  if (thread_.joinable()) Finish();
}

const LastLines& ErrorOutput::Finish() {
  finish_.CloseWriter();
  thread_.join();
  lines_.End();
  return lines_;
}

void ErrorOutput::Run() {
  pollfd watched[] = {{pipe_.reader(), POLLIN, 0}, {finish_.reader(), POLLIN, 0}};
  for (;;) {
    if (poll(watched, 2, -1) < 0) continue;
    if (watched[1].revents) break;
    if (!Read()) return;
  }
  for (int i = 0; i < kChunksInPipe && Read(); ++i) continue;
}

// False when there is nothing to read, now or ever.
bool ErrorOutput::Read() {
  char bytes[kChunk];
  const ssize_t count = read(pipe_.reader(), bytes, sizeof bytes);
  if (count <= 0) return false;
  lines_.Take(bytes, static_cast<size_t>(count));
  PassOn(bytes, static_cast<size_t>(count));
  return true;
}

void ErrorOutput::PassOn(const char* bytes, size_t size) {
  while (size > 0 && !muted_) {
    if (!MayWrite()) continue;
    const ssize_t written = write(STDERR_FILENO, bytes, size);
    if (written < 0) {
      muted_ = errno != EAGAIN && errno != EINTR;
    } else {
      bytes += written;
      size -= static_cast<size_t>(written);
    }
  }
}

// Waits until standard error takes more; once the end has been asked for, not for long.
bool ErrorOutput::MayWrite() {
  pollfd watched[] = {{STDERR_FILENO, POLLOUT, 0}, {finish_.reader(), POLLIN, 0}};
  if (deadline_) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline_ - Clock::now());
    const int wait = static_cast<int>(std::max<long long>(left.count(), 0));
    const int ready = poll(watched, 1, wait);
    muted_ = ready == 0 || wait == 0;
    return ready > 0;
  }
  if (poll(watched, 2, -1) < 0) return false;
  if (watched[1].revents) deadline_ = Clock::now() + kForSlowReaders;
  return watched[0].revents != 0;
}

}  // namespace ebStarter
