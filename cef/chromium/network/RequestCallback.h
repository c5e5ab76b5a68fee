// CefRequestCallback: a question that the client answers, now or later.

#ifndef CEF_CHROMIUM_NETWORK_REQUESTCALLBACK_H_
#define CEF_CHROMIUM_NETWORK_REQUESTCALLBACK_H_

#include <atomic>
#include <functional>
#include <utility>

#include "include/cef_request_callback.h"

namespace engine {

// Calls `answer` exactly once, on the thread that answers: with true for Continue(true), else with
// false. The last reference going away unanswered counts as a refusal. Further answers are ignored.
class RequestCallback : public CefRequestCallback {
 public:
  explicit RequestCallback(std::function<void(bool)> answer) : answer_(std::move(answer)) {}

  void Continue(bool allow) override { Answer(allow); }
  void Cancel() override { Answer(false); }

  // Makes the object forget its question: the caller answers otherwise.
  void Disarm() { answered_ = true; }

 private:
  ~RequestCallback() override { Answer(false); }

  void Answer(bool allow) {
    if (!answered_.exchange(true)) answer_(allow);
  }

  std::atomic<bool> answered_{false};
  const std::function<void(bool)> answer_;

  IMPLEMENT_REFCOUNTING(RequestCallback);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_NETWORK_REQUESTCALLBACK_H_
