#include "cef/chromium/process/NetLog.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "cef/chromium/base/Deadline.h"
#include "cef/chromium/base/QuietThread.h"
#include "cef/chromium/base/Text.h"

namespace engine {

namespace {

constexpr size_t kPiece = 64 * 1024;
constexpr std::chrono::milliseconds kBusy{20};
constexpr int kPauseMs = 5;
// Holds what comes in that time.
constexpr int kFifoSize = 1 << 20;

// Bits that say something without being a fault: extended validation, revocation checked, and so
// on.
constexpr uint32_t kNoFault = 0x00FF0000;

// A page may make Chromium connect to any number of hosts.
constexpr size_t kMostHosts = 256;

// The verifier names hosts in lower case and IPv6 addresses without brackets.
std::string VerifierHost(std::string host) {
  if (host.size() > 2 && host.front() == '[' && host.back() == ']') {
    host = host.substr(1, host.size() - 2);
  }
  return Lower(host);
}

}  // namespace

std::unique_ptr<NetLog> NetLog::Start(const std::string& folder, std::string* err) {
  std::unique_ptr<NetLog> log(new NetLog);
  const std::string path = folder + "/netlog";
  if (mkfifo(path.c_str(), 0600) != 0) {
    *err = "cannot make " + path + ": " + strerror(errno);
    return nullptr;
  }
  log->path_ = path;
  // For writing as well, so that opening does not wait for Chromium and its going is no end of
  // file.
  log->fifo_fd_ = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  // No matter if it stays as small as it is.
  fcntl(log->fifo_fd_, F_SETPIPE_SZ, kFifoSize);
  log->stop_fd_ = eventfd(0, EFD_CLOEXEC);
  if (log->fifo_fd_ < 0 || log->stop_fd_ < 0) {
    *err = "cannot open " + path + ": " + strerror(errno);
    return nullptr;
  }
  log->thread_ = StartQuietThread([raw = log.get()] { raw->Drain(); });
  return log;
}

NetLog::~NetLog() {
  if (thread_.joinable()) {
    eventfd_write(stop_fd_, 1);
    thread_.join();
  }
  if (fifo_fd_ >= 0) close(fifo_fd_);
  if (stop_fd_ >= 0) close(stop_fd_);
  if (!path_.empty()) unlink(path_.c_str());
}

std::optional<CertVerdict> NetLog::Fault(const std::string& host, uint32_t fault,
                                         std::chrono::milliseconds wait) {
  const std::string wanted = VerifierHost(host);
  std::unique_lock<std::mutex> lock(mutex_);
  auto found = faults_.end();
  const auto is_there = [&] {
    found = std::find_if(faults_.begin(), faults_.end(),
                         [&](const CertVerdict& known) { return known.host == wanted; });
    return found != faults_.end() && (fault == 0 || (found->status & fault) != 0);
  };
  if (!changed_.wait_for(lock, wait, is_there)) return std::nullopt;
  return *found;
}

void NetLog::Keep(const CertVerdict& verdict) {
  if ((verdict.status & ~kNoFault) == 0) return;
  std::lock_guard<std::mutex> lock(mutex_);
  faults_.erase(std::remove_if(faults_.begin(), faults_.end(),
                               [&](const CertVerdict& old) { return old.host == verdict.host; }),
                faults_.end());
  faults_.push_front(verdict);
  if (faults_.size() > kMostHosts) faults_.pop_back();
  changed_.notify_all();
}

void NetLog::Drain() {
  std::vector<char> piece(kPiece);
  const auto keep = [this](const CertVerdict& verdict) { Keep(verdict); };
  Clock::time_point last_read;
  for (;;) {
    pollfd watched[] = {{fifo_fd_, POLLIN, 0}, {stop_fd_, POLLIN, 0}};
    if (poll(watched, 2, -1) < 0 && errno != EINTR) return;
    if (watched[1].revents != 0) return;
    // A page that loads is written about in many small pieces, and nobody is in a hurry.
    if (Clock::now() < last_read + kBusy && poll(&watched[1], 1, kPauseMs) > 0) return;
    const ssize_t count = read(fifo_fd_, piece.data(), piece.size());
    last_read = Clock::now();
    if (count > 0) parser_.Feed(piece.data(), static_cast<size_t>(count), keep);
  }
}

}  // namespace engine
