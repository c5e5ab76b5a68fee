// From an order to a browser:
//   1. Order() begins to hold signals back, on whatever thread it is called.
//   2. The UI thread carries out one order at a time. A new window does not say which order it is
//      for; with only one that waits, there is no doubt.
//   3. Try() asks Chromium for a window in the first way. A way that fails at once is followed by
//      the next; a window that was promised has three seconds before that.
//   4. The window's target reaches the IO thread, which takes the order with Take(). Giving up goes
//      through Take() too, so an order either gets its browser or fails, never both.
//   5. The browser is announced on the UI thread. Only then does Finish() let signals through, for
//      which there is now a browser to close, and start the next order.
//
// A signal meanwhile cuts this short: no other way is tried. A window that has been asked for
// cannot be called off, however, so it has one more second to appear and be closed in good order.

#include "cef/chromium/browser/BrowserFactory.h"

#include <utility>

#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/base/Say.h"

namespace engine {
namespace {

// Windows come within 100 ms; a machine that needs longer than this will not show one at all.
constexpr int64_t kWindowLimitMs = 3000;
// When the run is to end.
constexpr int64_t kLastWindowLimitMs = 1000;

}  // namespace

void BrowserFactory::SetUp(std::vector<Opener> openers, std::function<void()> on_failure) {
  openers_ = std::move(openers);
  on_failure_ = std::move(on_failure);
  MessageLoop::Get().OnSignalHeld([this] { AwaitWindow(kLastWindowLimitMs, openers_.size()); });
}

void BrowserFactory::Order(BrowserOrder order) {
  MessageLoop::Get().HoldSignals();
  MessageLoop::Get().PostTask([this, order = std::move(order)] {
    queue_.push_back(order);
    if (!busy_) OpenNext();
  });
}

void BrowserFactory::OpenNext() {
  if (queue_.empty()) return;
  busy_ = true;
  ++current_;
  last_error_.clear();
  url_ = queue_.front().url;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    waiting_ = std::move(queue_.front());
  }
  queue_.pop_front();
  Try(0);
}

void BrowserFactory::Try(size_t opener) {
  MessageLoop& loop = MessageLoop::Get();
  while (opener < openers_.size()) {
    const bool opens = openers_[opener++](url_, &last_error_);
    if (loop.SignalWaits()) {
      // Even a way that the signal has disturbed may bring its window.
      AwaitWindow(kLastWindowLimitMs, openers_.size());
      return;
    }
    if (opens) {
      AwaitWindow(kWindowLimitMs, opener);
      return;
    }
  }
  if (!Take()) return;
  if (loop.SignalWaits()) last_error_ = "a signal has ended the wait for it";
  Fail(last_error_.empty() ? "no window has appeared" : last_error_);
}

void BrowserFactory::AwaitWindow(int64_t limit_ms, size_t next_opener) {
  MessageLoop::Get().PostDelayedTask(
      [this, next_opener, order = current_] {
        if (order != current_) return;
        {
          std::lock_guard<std::mutex> lock(mutex_);
          if (!waiting_) return;
        }
        Try(next_opener);
      },
      limit_ms);
}

std::optional<BrowserOrder> BrowserFactory::Take() {
  std::lock_guard<std::mutex> lock(mutex_);
  return std::exchange(waiting_, std::nullopt);
}

void BrowserFactory::Finish() {
  busy_ = false;
  MessageLoop::Get().ReleaseSignals();
  OpenNext();
}

void BrowserFactory::Fail(const std::string& reason) {
  Say("no browser window could be opened: " + reason);
  on_failure_();
  Finish();
}

void BrowserFactory::FailAll() {
  openers_.clear();
  if (Take()) Fail("Chromium has ended");
}

}  // namespace engine
