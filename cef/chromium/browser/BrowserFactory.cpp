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
    const bool opens = openers_[opener++](&last_error_);
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
